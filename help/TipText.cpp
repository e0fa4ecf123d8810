#include "TipText.h"

#include <QStringList>
#include <array>

#include "StringTable.h"

namespace {

// Texts by number, in the order in which they stand, 0 for none. That of the first is meant: the welcome comes before
// what follows from it.
constexpr std::array<std::array<int, 3>, 12> kAnswers = {
    {{170, 169}, {171, 172, 173}, {174}, {175}, {176}, {177}, {178}, {179}, {180}, {181}, {182}, {183}}};

}  // namespace

QString TipText(int Index) {
  if (Index < 0 || Index >= int(kAnswers.size())) return {};
  QStringList paragraphs;
  for (const int number : kAnswers[std::size_t(Index)])
    if (number != 0) paragraphs += QStringLiteral("  ") + StringText(number);
  return paragraphs.join(QStringLiteral("\r\n\r\n"));
}
