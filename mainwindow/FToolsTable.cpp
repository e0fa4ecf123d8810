// The panel that makes a table or changes one.
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "AsciiText.h"
#include "BusyGuard.h"
#include "Caption.h"
#include "Colors.h"
#include "ElementKind.h"
#include "FTools.h"
#include "FWeb.h"
#include "ListIndex.h"
#include "Numbers.h"
#include "Program.h"
#include "StringTable.h"
#include "Swatch.h"
#include "ToolPanel.h"
#include "WorkOps.h"

namespace {

constexpr ButtonRow kButtons[] = {{"OK", "Apply table choices and close."},
                                  {"Cancel", "Close without applting changes."}};
constexpr const char* kSizeLabels[] = {" Width (pixels):", "Height (pixels):"};
constexpr qint32 kLightGrey = 0xe0e0e0;

// Caption of the option that is on; "" when none is.
QString Chosen(const ThreeOptions& options) {
  for (const QRadioButton* option : options)
    if (option->isChecked()) return WithoutKeyMarks(option->text());
  return {};
}

// Switches on the option of that caption, in any case; all stay as they are where there is none.
void Choose(const ThreeOptions& options, const QString& caption) {
  for (QRadioButton* option : options)
    if (EqualsNoCase(WithoutKeyMarks(option->text()), caption)) option->setChecked(true);
}

}  // namespace

void FTools::BuildTablePanel() {
  LabNewTable = new QLabel(
      QStringLiteral("Create a new table (rectangular frame area) in page. Tables can contain text and/or pictures."));
  SetName(LabNewTable, "LabNewTable");
  LabNewTable->setWordWrap(true);

  auto* values = new QGridLayout;
  values->setHorizontalSpacing(6);
  values->setVerticalSpacing(5);
  for (std::size_t index = 0; index < std::size(kSizeLabels); ++index) {
    TTable[index] = NewNumberBox("TTable", int(index));
    AddRow(values, int(index), 0, kSizeLabels[index], TTable[index]);
  }
  // The tip is that of the page's text colour.
  BoxColor[3] = NewSwatch(3, "Select body text color.");
  BoxColor[3]->SetColor(kLightGrey);
  AddRow(values, 2, 0, "Background color:", BoxColor[3]);
  CkBorder = new QCheckBox(QStringLiteral("Table has border."));
  SetName(CkBorder, "CkBorder");
  values->addWidget(CkBorder, 3, 0, 1, 2);
  BoxBorder = NewList("BoxBorder", QStringLiteral("1 2 3 4 5 6 7 8 9 10 11 12").split(u' '));
  AddRow(values, 4, 0, "Border width (pixels):", BoxBorder);
  BoxPadding = NewList("BoxPadding", QStringLiteral("0 5 10 15 20 25 30 35 40").split(u' '));
  AddRow(values, 5, 0, "Inside margin (pixels):", BoxPadding);
  values->setColumnStretch(1, 1);
  BoxBorder->setCurrentIndex(0);
  BoxPadding->setCurrentIndex(0);

  auto* alignments = new QVBoxLayout;
  alignments->setSpacing(5);
  alignments->addWidget(NewOptions(" Page Alignment ", "OpH", {"Left", "Center", "Right"}, true, OpH));
  alignments->addWidget(NewOptions(" Internal Horiz. Alignment ", "OpHTD", {"Left", "Center", "Right"}, true, OpHTD));
  alignments->addWidget(NewOptions(" Internal Vert. Alignment ", "OpVTD", {"Top", "Center", "Bottom"}, true, OpVTD));

  auto* middle = new QHBoxLayout;
  middle->setSpacing(8);
  middle->addLayout(values, 1);
  middle->addLayout(alignments);
  for (std::size_t index = 0; index < std::size(kButtons); ++index) {
    bOKTable[index] = NewButton("bOKTable", int(index), kButtons[index]);
    connect(bOKTable[index], &QPushButton::clicked, this, [this, index] { OnOKTable(int(index)); });
  }
  QVBoxLayout* const column = FrTool[3]->Column();
  column->addWidget(LabNewTable);
  column->addLayout(middle, 1);
  column->addLayout(RowAtRight({bOKTable[0], bOKTable[1]}));
  connect(BoxColor[3], &QAbstractButton::clicked, this, [this] { OnBoxColor(3); });
}

void FTools::LoadTableProps(const HTMLElement& el) {
  const TableProps props = ReadTableProps(el);
  TTable[0]->setText(props.Width);
  TTable[1]->setText(props.Height);
  if (props.HasNoBorder) {
    CkBorder->setChecked(false);
  } else if (props.Border) {
    CkBorder->setChecked(true);
    if (*props.Border > 0) SetIndex(BoxBorder, *props.Border - 1);
  }
  BoxColor[3]->SetColor(props.Color);
  SetIndex(BoxPadding, props.PaddingIndex);
  Choose(OpH, props.Align);
  Choose(OpHTD, props.CellAlign);
  Choose(OpVTD, props.CellVAlign);
  ShowTool(ToolTask::TableProperties, QString());
}

// Unlike the other panels it goes without leaving the layer above all others.
void FTools::OnOKTable(int Index) {
  const BusyGuard guard(Busy);
  if (!guard) return;
  if (Index == 0) {
    if (!IsNumeric(TTable[0]->text()) || !IsNumeric(TTable[1]->text())) {
      program_.platform.dialogs.ShowMessage(this, StringText(TextNumber::BadTableSize), MessageIcon::Information);
      return;
    }
    ApplyToTable();
  }
  hide();
}

// A table is changed only where it is the current element itself; from one of its cells nothing happens.
void FTools::ApplyToTable() {
  WBUC& view = *web_.jWB;
  const QString width = TTable[0]->text();
  const QString height = TTable[1]->text();
  const QString color = ColorToHtml(BoxColor[3]->Color());
  const QString border = CkBorder->isChecked() ? QString::number(BoxBorder->currentIndex() + 1) : QStringLiteral("0");
  const QString chosenPadding = BoxPadding->currentText();
  const QString padding = chosenPadding.isEmpty() ? QStringLiteral("0") : chosenPadding;
  const QString align = Chosen(OpH);
  const QString cellAlign = Chosen(OpHTD);
  const QString cellVAlign = Chosen(OpVTD);
  if (!LabNewTable->isHidden()) {
    view.AddTable(width, height, border, color, align, cellAlign, cellVAlign, padding);
    return;
  }
  if (!view.HasCurrentElement() || KindOf(view.CurrentElementTag()) != ElementKind::Table) return;
  const auto step = view.UndoStep(QStringLiteral("Table Properties"));
  HTMLElement table = view.CurrentElement();
  const std::pair<const char*, QString> attributes[] = {{"width", width},   {"height", height},
                                                        {"bgColor", color}, {"border", border},
                                                        {"align", align},   {"cellpadding", padding}};
  for (const auto& [name, value] : attributes) table.setAttribute(QLatin1String(name), value);
  // Cells of tables inside this one are among them.
  for (const Node* node = table.node(); node; node = NextInTree(node, table.node())) {
    if (!node->IsElement()) continue;
    HTMLElement cell(node);
    if (KindOf(cell) != ElementKind::Cell) continue;
    cell.setAttribute(QStringLiteral("vAlign"), cellVAlign);
    cell.setAttribute(QStringLiteral("align"), cellAlign);
  }
}
