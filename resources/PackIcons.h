// The names of the built-in icons of web-packs, in the order in which the settings show them. Each is that of a block
// and of a drawing in `icons`; the build reads the names from here, so no other word in capitals stands in double
// quotes here.
#pragma once

#include <iterator>

inline constexpr const char* kPackIcons[] = {"WP",   "MAIL", "HEART", "ROCKET", "LTNING",
                                             "ROSE", "HAND", "CARD",  "TRAY",   "FOLDER"};

// The number that stands for the user's own icon.
inline constexpr int kCustomIcon = int(std::size(kPackIcons));

// What a number from 0 to kCustomIcon stands for.
inline const char* PackIconName(int number) {
  return number == kCustomIcon ? "Custom" : kPackIcons[number];
}
