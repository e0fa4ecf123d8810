// What new pages get, and what the open page had when it was opened; kept apart from the document, which page scripts
// may change.
#pragma once

#include <QString>

struct PageValues {
  QString BodyFontName;
  QString BodyFontSize;   // "1" to "6", but kept as given
  QString BodyFontColor;  // "#RRGGBB"
  QString LinkColor;
  QString BGColor;

  bool operator==(const PageValues&) const = default;
};

inline constexpr QString PageValues::* kPageValues[] = {&PageValues::BodyFontName, &PageValues::BodyFontSize,
                                                        &PageValues::BodyFontColor, &PageValues::LinkColor,
                                                        &PageValues::BGColor};
