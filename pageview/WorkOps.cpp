#include "WorkOps.h"

#include <limits>

#include "Colors.h"
#include "ElementKind.h"
#include "Numbers.h"
#include "WBUC.h"

namespace {

const QString beforeEnd = QStringLiteral("BeforeEnd");
const QString afterEnd = QStringLiteral("AfterEnd");

// Difference of two values in the list of paddings.
constexpr int paddingStep = 5;

// Stands for a number that doesn't fit.
constexpr int beyondAnyList = std::numeric_limits<int>::max();

QString Read(const HTMLElement& element, const char* name) {
  return element.getAttribute(QString::fromLatin1(name), 0);
}

}  // namespace

void InsertPageHTML(WBUC& view, const QString& Html) {
  const auto step = view.UndoStep(QStringLiteral("Add Picture"));
  HTMLElement current = view.CurrentElement();
  const ElementKind kind = KindOf(view.CurrentElementTag());
  if (!view.HasCurrentElement()) {
    view.AddNewElement(Html);
  } else if (IsMovable(kind)) {
    current.insertAdjacentHTML(afterEnd, Html);
  } else if (kind == ElementKind::Cell) {
    current.insertAdjacentHTML(beforeEnd, Html);
  } else if (kind == ElementKind::Table) {
    HTMLElement cell = FirstCell(current);
    (cell ? cell : current).insertAdjacentHTML(beforeEnd, Html);
  } else {
    view.AddNewElement(Html);
  }
}

HTMLElement FirstCell(const HTMLElement& table) {
  const Node* const top = table.node();
  for (const Node* node = top ? NextInTree(top, top) : nullptr; node; node = NextInTree(node, top))
    if (node->IsElement() && KindOf(HTMLElement(node)) == ElementKind::Cell) return HTMLElement(node);
  return {};
}

TableProps ReadTableProps(const HTMLElement& table) {
  TableProps props;
  props.Width = Read(table, "width");
  props.Height = Read(table, "height");
  const QString border = Read(table, "border");
  props.HasNoBorder = border == u"0";
  if (!props.HasNoBorder && IsNumeric(border)) props.Border = ToInteger32(border).value_or(beyondAnyList);
  props.Color = HtmlToColor(Read(table, "bgColor"));
  // Whole division cuts what is left over: the list has no 7, so 7 shows as 5.
  const QString padding = Read(table, "cellpadding");
  if (IsNumeric(padding)) props.PaddingIndex = ToInteger32(padding).value_or(beyondAnyList) / paddingStep;
  props.Align = Read(table, "align");
  if (const HTMLElement cell = FirstCell(table)) {
    props.CellAlign = Read(cell, "align");
    props.CellVAlign = Read(cell, "vAlign");
  }
  return props;
}
