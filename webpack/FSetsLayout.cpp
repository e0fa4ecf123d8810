// How the settings window is put together.
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "BusyGuard.h"
#include "ControlHabits.h"
#include "FSets.h"
#include "IconImage.h"
#include "PackIcons.h"
#include "Resource.h"

namespace {

constexpr int kIconColumns = 3;
constexpr QSize kPicture(36, 36);
constexpr int kTextColumns = 68;
constexpr int kIconRows = 8;

QLabel* NewText(const char* name, const char* text) {
  auto* label = new QLabel(QString::fromLatin1(text));
  label->setObjectName(QString::fromLatin1(name));
  label->setWordWrap(true);
  // A width of its own, so that its height is known to the layouts around it.
  label->setFixedWidth(label->fontMetrics().averageCharWidth() * kTextColumns);
  label->setFixedHeight(label->heightForWidth(label->width()));
  return label;
}

// A one-line box under its caption.
QLineEdit* NewBox(QBoxLayout* column, const char* name, const char* caption) {
  auto* box = new QLineEdit;
  box->setObjectName(QString::fromLatin1(name));
  box->setAccessibleName(QString::fromLatin1(caption).chopped(1));
  auto* label = new QLabel(QString::fromLatin1(caption));
  label->setBuddy(box);
  column->addWidget(label);
  column->addWidget(box);
  return box;
}

QHBoxLayout* NewButtonRow(QBoxLayout* column, const QList<QWidget*>& buttons) {
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  for (QWidget* const button : buttons) row->addWidget(button);
  column->addLayout(row);
  return row;
}

QLabel* NewPicture(const QString& name, const QPixmap& picture = QPixmap()) {
  auto* label = new QLabel;
  label->setObjectName(name);
  label->setFixedSize(kPicture);
  label->setAlignment(Qt::AlignCenter);
  label->setPixmap(picture);
  return label;
}

}  // namespace

FSets::FSets(Program& program) : program_(program) {
  setObjectName(QStringLiteral("FSets"));
  setWindowTitle(QStringLiteral("Settings"));
  auto* column = new QVBoxLayout(this);
  auto* row = new QHBoxLayout;
  column->addLayout(row);
  constexpr const char* captions[] = {"General Settings", "Package Icon Settings"};
  for (std::size_t i = 0; i < bSetWins.size(); ++i) {
    bSetWins[i] = new QPushButton(QString::fromLatin1(captions[i]));
    bSetWins[i]->setObjectName(QStringLiteral("bSetWins%1").arg(i));
    bSetWins[i]->setAutoDefault(false);
    row->addWidget(bSetWins[i]);
    connect(bSetWins[i], &QPushButton::clicked, this, [this, i] { ShowPanel(int(i)); });
  }
  FrSets = {NewGeneralPanel(), NewIconPanel(), NewCustomPanel()};
  // One above the other in one cell, so that the window is as large as the largest of them needs.
  auto* pile = new QGridLayout;
  column->addLayout(pile, 1);
  for (std::size_t i = 0; i < FrSets.size(); ++i) {
    FrSets[i]->setObjectName(QStringLiteral("FrSets%1").arg(i));
    QSizePolicy policy = FrSets[i]->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    FrSets[i]->setSizePolicy(policy);
    pile->addWidget(FrSets[i], 0, 0);
  }
  ShowPanel(0);
  column->setSizeConstraint(QLayout::SetFixedSize);
}

QPushButton* FSets::NewButton(const char* name, int index, const char* caption, const char* toolTip,
                              void (FSets::*command)()) {
  auto* button = new QPushButton(QString::fromLatin1(caption));
  button->setObjectName(QString::fromLatin1(name) + QString::number(index));
  button->setToolTip(QString::fromLatin1(toolTip));
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, [this, command] {
    const BusyGuard guard(Busy);
    if (guard) (this->*command)();
  });
  return button;
}

QWidget* FSets::NewGeneralPanel() {
  auto* panel = new QGroupBox(QStringLiteral("  General Settings  "));
  auto* column = new QVBoxLayout(panel);
  auto* frame = new QGroupBox(QStringLiteral("  Page element defaults:  "));
  frame->setObjectName(QStringLiteral("Frame1"));
  column->addWidget(frame);
  auto* defaults = new QVBoxLayout(frame);
  tPath = NewBox(defaults, "tPath", "Default folder where finished web-pack files will be created:");
  bSets[0] = NewButton("bSets", 0, "Browse", "Browse to select folder.", &FSets::BrowseForPath);
  bSets[1] = NewButton("bSets", 1, "Apply", "Apply folder path selection.", &FSets::ApplyPath);
  NewButtonRow(defaults, {bSets[0], bSets[1]});
  tLink = NewBox(defaults, "tLink", "Text of link to next page in multi-page web-pack files:");
  bSets[2] = NewButton("bSets", 2, "Apply", "Set default next-page link text.", &FSets::ApplyLink);
  NewButtonRow(defaults, {bSets[2]});
  connect(tPath, &QLineEdit::returnPressed, bSets[1], &QAbstractButton::click);
  connect(tLink, &QLineEdit::returnPressed, bSets[2], &QAbstractButton::click);
  bSets[1]->setAccessibleName(QStringLiteral("Apply folder"));
  bSets[2]->setAccessibleName(QStringLiteral("Apply link text"));
  column->addStretch(1);
  column->addWidget(
      NewText("Label11",
              "Corvane may not work properly with Internet Explorer 4 installed, particularly in Windows 95. If you "
              "have IE4 installed, check the box below to optimize compatibility."));
  Ck4 = new QCheckBox(QStringLiteral("Check this box if using Internet Explorer 4"));
  Ck4->setObjectName(QStringLiteral("Ck4"));
  // A tick that code sets is no click.
  connect(Ck4, &QCheckBox::clicked, this, &FSets::OnCompat4);
  column->addWidget(Ck4);
  return panel;
}

QWidget* FSets::NewIconPanel() {
  auto* panel = new QGroupBox(QStringLiteral("Select icon for web-pack files:"));
  auto* column = new QVBoxLayout(panel);
  auto* icons = new QGridLayout;
  icons->setHorizontalSpacing(4);
  icons->setVerticalSpacing(10);
  column->addLayout(icons);
  for (std::size_t i = 0; i < OpIco.size(); ++i) {
    const QString name = QString::fromLatin1(PackIconName(int(i)));
    OpIco[i] = new QRadioButton(name);
    OpIco[i]->setObjectName(QStringLiteral("OpIco%1").arg(i));
    QLabel* picture;
    if (i < ImIco.size()) {
      picture = ImIco[i] = NewPicture(QStringLiteral("ImIco%1").arg(i), PictureOfIconImage(Resource(name)));
    } else {
      picture = ImCustom = NewPicture(QStringLiteral("ImCustom"));
      // An empty place until there is one.
      picture->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    }
    const int at = int(i);
    icons->addWidget(picture, at / kIconColumns, at % kIconColumns * 2);
    icons->addWidget(OpIco[i], at / kIconColumns, at % kIconColumns * 2 + 1);
    icons->setColumnStretch(at % kIconColumns * 2 + 1, 1);
  }
  column->addStretch(1);
  bIcoSets[0] = NewButton("bIcoSets", 0, "Apply", "Assign selected icon as web-pack file icon.", &FSets::ApplyIcon);
  bIcoSets[1] = NewButton("bIcoSets", 1, "Custom Icon Options", "Open options to use custom icon for web-pack files.",
                          &FSets::OpenCustomIcons);
  bIcoSets[0]->setAccessibleName(QStringLiteral("Apply icon"));
  NewButtonRow(column, {bIcoSets[0], bIcoSets[1]});
  return panel;
}

QWidget* FSets::NewCustomPanel() {
  auto* panel = new QGroupBox(QStringLiteral("  Custom Icons  "));
  auto* column = new QVBoxLayout(panel);
  column->addWidget(NewText(
      "Label21",
      "Custom icons may be used for web-pack files. Find or make an icon(s) 32 x 32 pixels in size, in 16-color "
      "format (4-bit). Any number of icons may be added to the Custom Icons List and any icon from the list can "
      "be assigned as the icon to be used when the Custom option is selected."));
  tIcoPath = NewBox(column, "tIcoPath", "Browse for icon (ICO) file:");
  bCustomIco[0] = NewButton("bCustomIco", 0, "Browse", "Browse for icon file.", &FSets::BrowseForIcon);
  bCustomIco[1] = NewButton("bCustomIco", 1, "Add To Custom Icons List",
                            "Add icon file to list of icons that may be selected for web-packs.", &FSets::AddIcon);
  bCustomIco[1]->setEnabled(false);
  NewButtonRow(column, {bCustomIco[0], bCustomIco[1]});
  auto* label = new QLabel(QStringLiteral("Custom Icons List:"));
  BoxIcons = new QListWidget;
  BoxIcons->setObjectName(QStringLiteral("BoxIcons"));
  BoxIcons->setAccessibleName(QStringLiteral("Custom Icons List"));
  label->setBuddy(BoxIcons);
  BoxIcons->setFixedHeight(BoxIcons->fontMetrics().lineSpacing() * kIconRows);
  column->addWidget(label);
  column->addWidget(BoxIcons, 1);
  column->addWidget(
      NewText("Label22", "To assign a custom icon select one from list and click \"Use Selected Icon\"."));
  bCustomIco[2] =
      NewButton("bCustomIco", 2, "Use Selected Icon", "Assign selected icon as the custom icon.", &FSets::UseIcon);
  bCustomIco[2]->setEnabled(false);
  connect(BoxIcons, &QListWidget::itemSelectionChanged, this, [this] {
    if (!BoxIcons->selectedItems().isEmpty()) bCustomIco[2]->setEnabled(true);
  });
  connect(tIcoPath, &QLineEdit::returnPressed, bCustomIco[1], &QAbstractButton::click);
  RunOnReturn(*BoxIcons, [this] { bCustomIco[2]->click(); });
  bCustomIco[3] = NewButton("bCustomIco", 3, "OK", "Close custom icon options window.", &FSets::CloseCustomIcons);
  NewButtonRow(column, {bCustomIco[2], bCustomIco[3]});
  return panel;
}
