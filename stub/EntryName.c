#include "EntryName.h"

static int IsUtf8(const uint8_t* text, uint32_t length) {
  static const uint32_t lowest[4] = {0, 0x80, 0x800, 0x10000};
  uint32_t index = 0;
  while (index < length) {
    uint32_t lead = text[index++], more, value, count;
    if (lead < 0x80) continue;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    more = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    value = lead & (0x3Fu >> more);
    for (count = 0; count < more; count++) {
      if (index == length || (text[index] & 0xC0) != 0x80) return 0;
      value = value << 6 | (text[index++] & 0x3F);
    }
    if (value < lowest[more] || value > 0x10FFFF || (value >= 0xD800 && value < 0xE000)) return 0;
  }
  return 1;
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

/* A device answers to its name with any extension, and with spaces before the dot. COM and LPT take a digit, which may
   be one of the three raised ones of Latin-1. */
static int IsDevice(const char* name, uint32_t length, int isUtf8) {
  static const char* const devices[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$", "CLOCK$"};
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
  return (index >= '0' && index <= '9') || index == 0xB9 || index == 0xB2 || index == 0xB3;
}

int IsPlainFileName(const char* name, uint32_t length, int isUtf8) {
  uint32_t index;
  int onlyDots = 1;
  for (index = 0; index < length; index++) {
    switch (name[index]) {
      case '/':
      case '\\':
      case ':':
      case '*':
      case '?':
      case '"':
      case '<':
      case '>':
      case '|':
      case 0x7F:
        return 0;
      default:
        if ((uint8_t)name[index] < ' ') return 0;
    }
    if (name[index] != '.' && name[index] != ' ') onlyDots = 0;
  }
  /* Windows drops dots and spaces at the end, so nothing would be left of such a name. */
  if (onlyDots) return 0;
  return (!isUtf8 || IsUtf8((const uint8_t*)name, length)) && !IsDevice(name, length, isUtf8);
}
