/* The memory routines that the compiler takes for granted, since the stub has no C runtime. */
#include <stddef.h>

/* Else the compiler would turn these loops into calls of themselves. */
#pragma GCC optimize("no-tree-loop-distribute-patterns")

void* memcpy(void* to, const void* from, size_t count) {
  unsigned char* target = to;
  const unsigned char* source = from;
  while (count-- > 0) *target++ = *source++;
  return to;
}

void* memset(void* to, int value, size_t count) {
  unsigned char* target = to;
  while (count-- > 0) *target++ = (unsigned char)value;
  return to;
}

int memcmp(const void* left, const void* right, size_t count) {
  const unsigned char* first = left;
  const unsigned char* second = right;
  for (; count > 0; count--, first++, second++)
    if (*first != *second) return *first - *second;
  return 0;
}
