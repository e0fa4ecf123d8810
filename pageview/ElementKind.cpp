#include "ElementKind.h"

namespace {

struct KindRow {
  const char16_t* tag;
  ElementKind kind;
};

constexpr KindRow kinds[] = {
    {u"FONT", ElementKind::TextBlock}, {u"B", ElementKind::TextPart},  {u"STRONG", ElementKind::TextPart},
    {u"A", ElementKind::Link},         {u"IMG", ElementKind::Picture}, {u"TABLE", ElementKind::Table},
    {u"TR", ElementKind::Row},         {u"TD", ElementKind::Cell},     {u"BODY", ElementKind::Page},
};

// A cell stands in a row, that in a TBODY, and that in the table.
constexpr int stepsToTable = 3;

}  // namespace

ElementKind KindOf(QStringView tag) {
  for (const KindRow& row : kinds)
    if (tag == QStringView(row.tag)) return row.kind;
  return ElementKind::None;
}

HTMLElement TableAround(const HTMLElement& part) {
  HTMLElement up = part;
  for (int step = 0; step < stepsToTable && up; ++step) {
    up = up.parentElement();
    if (KindOf(up) == ElementKind::Table) return up;
  }
  return {};
}
