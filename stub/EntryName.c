#include "EntryName.h"

/* Bytes of the character that begins there; 0 when none does. */
static uint32_t Utf8Length(const uint8_t* text, uint32_t left) {
  static const uint32_t lowest[4] = {0, 0x80, 0x800, 0x10000};
  uint32_t lead = text[0], more, value, count;
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  more = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
  value = lead & (0x3Fu >> more);
  for (count = 1; count <= more; count++) {
    if (count == left || (text[count] & 0xC0) != 0x80) return 0;
    value = value << 6 | (text[count] & 0x3F);
  }
  return value < lowest[more] || value > 0x10FFFF || (value >= 0xD800 && value < 0xE000) ? 0 : more + 1;
}

static char UpperCase(char letter) {
  return letter >= 'a' && letter <= 'z' ? (char)(letter - 'a' + 'A') : letter;
}

static int StartsWith(const char* name, uint32_t length, const char* prefix) {
  uint32_t index;
  for (index = 0; prefix[index] != 0; index++)
    if (index == length || UpperCase(name[index]) != prefix[index]) return 0;
  return 1;
}

/* A device answers to its name with any extension, and with spaces before the dot. COM and LPT take a digit from 1 on,
   which may be one of the three raised ones of Latin-1. */
static int IsDevice(const char* name, uint32_t length, int isUtf8) {
  static const char* const devices[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
  uint32_t stem = 0, index, count;
  while (stem < length && name[stem] != '.') stem++;
  while (stem > 0 && name[stem - 1] == ' ') stem--;
  for (index = 0; index < sizeof devices / sizeof devices[0]; index++) {
    for (count = 0; devices[index][count] != 0;) count++;
    if (stem == count && StartsWith(name, stem, devices[index])) return 1;
  }
  if (!StartsWith(name, stem, "COM") && !StartsWith(name, stem, "LPT")) return 0;
  if (stem == 5 && isUtf8 && (uint8_t)name[3] == 0xC2) {
    name++;
    stem--;
  }
  if (stem != 4) return 0;
  index = (uint8_t)name[3];
  return (index >= '1' && index <= '9') || index == 0xB9 || index == 0xB2 || index == 0xB3;
}

static int IsForbidden(char character) {
  switch (character) {
    case ':':
    case '*':
    case '?':
    case '"':
    case '<':
    case '>':
    case '|':
      return 1;
    default:
      return (uint8_t)character < ' ';
  }
}

int MakePlainFileName(const char* name, uint32_t length, int isUtf8, char* plain) {
  uint32_t index, bytes;
  if (length == 0 || (name[0] == '.' && (length == 1 || (length == 2 && name[1] == '.')))) return 0;
  for (index = 0; index < length; index++)
    if (name[index] == '/' || name[index] == '\\' || name[index] == 0) return 0;
  if (IsDevice(name, length, isUtf8)) *plain++ = '_';
  for (index = 0; index < length; index += bytes) {
    bytes = isUtf8 ? Utf8Length((const uint8_t*)name + index, length - index) : 1;
    if (bytes == 0 || IsForbidden(name[index])) {
      bytes = 1;
      *plain++ = '_';
    } else {
      uint32_t count;
      for (count = 0; count < bytes; count++) *plain++ = name[index + count];
    }
  }
  /* Windows would drop it. */
  if (plain[-1] == '.' || plain[-1] == ' ') plain[-1] = '_';
  *plain = 0;
  return 1;
}
