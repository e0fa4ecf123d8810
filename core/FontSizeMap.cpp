#include "FontSizeMap.h"

namespace {

struct Row {
  const char16_t* digit;
  const char16_t* word;
};

// There is no seventh row.
constexpr Row rows[] = {{u"1", u"xx-small"}, {u"2", u"x-small"}, {u"3", u"small"},
                        {u"4", u"medium"},   {u"5", u"large"},   {u"6", u"x-large"}};

}  // namespace

QString FontSizeMap(const QString& value) {
  for (const Row& row : rows) {
    if (value == QStringView(row.digit)) return QStringView(row.word).toString();
    if (value == QStringView(row.word)) return QStringView(row.digit).toString();
  }
  return QStringLiteral("2");  // the digit, also where a word was asked for
}
