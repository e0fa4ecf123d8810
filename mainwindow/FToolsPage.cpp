// The panel with the page's properties. What is done here goes to the page at once.
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
#include "CopyBesidePages.h"
#include "FTools.h"
#include "FWeb.h"
#include "FontFaces.h"
#include "ListIndex.h"
#include "ModBrowse.h"
#include "Numbers.h"
#include "Program.h"
#include "Swatch.h"
#include "ToolPanel.h"

namespace {

constexpr ButtonRow kTitleButton = {"OK", "Use this page title."};
constexpr ButtonRow kCloseButton = {"OK", "Close."};
constexpr ButtonRow kPictureButtons[] = {{"Browse", "Select background picture."},
                                         {"Remove", "Remove background picture."}};
constexpr const char* kPictureLabels[] = {"Select back picture:", "Remove back picture:"};
constexpr const char* kPictureLabelTip = "Browse for background image (JPG, GIF)";
constexpr const char* kSwatchTips[] = {"Select color for links.", "Select page background color.",
                                       "Select default body text color."};

QGridLayout* NewGrid(QWidget* frame) {
  auto* grid = new QGridLayout(frame);
  grid->setContentsMargins(7, 4, 7, 6);
  grid->setHorizontalSpacing(6);
  grid->setVerticalSpacing(5);
  return grid;
}

}  // namespace

void FTools::BuildPagePanel() {
  for (std::size_t index = 0; index < std::size(kSwatchTips); ++index)
    BoxColor[index] = NewSwatch(int(index), kSwatchTips[index]);
  for (std::size_t index = 0; index < bBackPic.size(); ++index)
    bBackPic[index] = NewButton("bBackPic", int(index), kPictureButtons[index]);
  TTitle = NewBox("TTitle");
  bTitle = NewButton("bTitle", kNoIndex, kTitleButton);

  QGroupBox* const general = NewFrame("  General page properties  ");
  QGridLayout* grid = NewGrid(general);
  grid->addWidget(NewLabel("Page title:", TTitle), 0, 0);
  grid->addWidget(TTitle, 0, 1, 1, 2);
  grid->addWidget(bTitle, 0, 3);
  AddRow(grid, 1, 0, "Select link color:", BoxColor[0]);
  AddRow(grid, 2, 0, "Select back color:", BoxColor[1]);
  AddRow(grid, 1, 2, kPictureLabels[0], bBackPic[0], kPictureLabelTip);
  AddRow(grid, 2, 2, kPictureLabels[1], bBackPic[1], kPictureLabelTip);
  grid->setColumnStretch(1, 1);

  BoxFace = NewList("BoxFace", FontFaces(), "Select body font face.");
  BoxSize = NewList("BoxSize", QStringLiteral("1 2 3 4 5 6").split(u' '), "Select body font size.");
  // Nothing is chosen until the user does: the face isn't read from the page.
  BoxFace->setCurrentIndex(-1);
  BoxSize->setCurrentIndex(-1);
  QGroupBox* const fonts = NewFrame("  Default font properties  ");
  grid = NewGrid(fonts);
  AddRow(grid, 0, 0, "Body text color:", BoxColor[2]);
  AddRow(grid, 0, 2, "Body font size:", BoxSize);
  grid->addWidget(NewLabel("Body font face:", BoxFace), 1, 0);
  grid->addWidget(BoxFace, 1, 1, 1, 3);
  grid->setColumnStretch(1, 1);

  bOKProps = NewButton("bOKProps", kNoIndex, kCloseButton);
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(NewOptions(" General Page Alignment ", "OpBod", {"Left", "Center", "Right"}, false, OpBod));
  bottom->addStretch(1);
  bottom->addWidget(bOKProps, 0, Qt::AlignBottom);

  QVBoxLayout* const column = FrTool[2]->Column();
  column->addWidget(general);
  column->addWidget(fonts);
  column->addLayout(bottom);

  connect(bTitle, &QPushButton::clicked, this, [this] { web_.jWB->SetTitle(TTitle->text()); });
  for (std::size_t index = 0; index < std::size(kSwatchTips); ++index)
    connect(BoxColor[index], &QAbstractButton::clicked, this, [this, index] { OnBoxColor(int(index)); });
  for (std::size_t index = 0; index < bBackPic.size(); ++index)
    connect(bBackPic[index], &QPushButton::clicked, this, [this, index] { OnBackPic(int(index)); });
  connect(BoxFace, &QComboBox::activated, this, &FTools::OnBoxFace);
  connect(BoxSize, &QComboBox::activated, this,
          [this] { web_.jWB->SetBodyFontSize(QString::number(BoxSize->currentIndex() + 1)); });
  for (QRadioButton* option : OpBod) connect(option, &QRadioButton::clicked, this, &FTools::OnOpBod);
  connect(bOKProps, &QPushButton::clicked, this, &QWidget::close);
}

// The face isn't set from the page, and the background is the one last given, not that of an opened page.
void FTools::OpenPageProps() {
  const WBUC& view = *web_.jWB;
  TTitle->setText(view.Title());
  BoxColor[1]->SetColor(HtmlToColor(view.BGColor()));
  BoxColor[0]->SetColor(HtmlToColor(view.LinkColor()));
  BoxColor[2]->SetColor(HtmlToColor(view.BodyFontColor()));
  if (const auto size = ToInteger16(view.BodyFontSize())) SetIndex(BoxSize, *size - 1);
  const HTMLDocument* const document = view.WBDocument();
  const QString align = document ? UpperAscii(document->body().style().textAlign()) : QString();
  OpBod[align == u"CENTER" ? 1 : align == u"RIGHT" ? 2 : 0]->setChecked(true);
  ShowTool(ToolTask::PageProperties, QString());
}

void FTools::OnBoxColor(int Index) {
  const BusyGuard guard(Busy);
  if (!guard) return;
  Swatch* const swatch = BoxColor[std::size_t(Index)];
  const qint32 color = ShowColorDialog(program_, this, swatch->Color());
  if (color == -1) return;
  swatch->SetColor(color);
  if (Index == 0) web_.jWB->SetLinkColor(ColorToHtml(color));
  if (Index == 1) web_.jWB->SetBGColor(ColorToHtml(color));
  if (Index == 2) web_.jWB->SetBodyFontColor(ColorToHtml(color));
}

void FTools::OnBackPic(int Index) {
  const BusyGuard guard(Busy);
  if (!guard) return;
  if (Index == 1) {
    web_.jWB->SetBackPic(QString());
    return;
  }
  const QString path =
      ShowOpenDialog(program_, this, QStringLiteral("Select Picture"),
                     QStringLiteral("Web Graphics(*.gif;*.jpg;*.png)"), QStringLiteral("*.gif;*.jpg;*.png"));
  if (path.isEmpty()) return;
  if (program_.Files.FileExists(path)) web_.jWB->SetBackPic(CopyBesidePages(program_, path));
  HideViewer();
}

void FTools::OnBoxFace() {
  const QString face = TrimBlanks(BoxFace->currentText());
  web_.jWB->SetBodyFontName(face.isEmpty() ? FontFaces().first() : face);
}

// The caption is the value.
void FTools::OnOpBod() {
  const HTMLDocument* const document = web_.jWB->WBDocument();
  if (!document) return;
  for (const QRadioButton* option : OpBod) {
    if (!option->isChecked()) continue;
    const auto step = web_.jWB->UndoStep(QStringLiteral("Page Alignment"));
    document->body().style().setTextAlign(WithoutKeyMarks(option->text()));
    return;
  }
}
