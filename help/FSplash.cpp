#include "FSplash.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QVBoxLayout>

#include "HotLink.h"
#include "Program.h"

// Outside of any namespace, as the macro wants it.
static void InitHelpResources() {
  Q_INIT_RESOURCE(Help);
}

namespace {

constexpr char kHomePage[] = CORVANE_HOME_PAGE;

constexpr const char* kTexts[] = {
    "Send a website packed into a single, self-opening \"web-pack\" file.",
    "Click the logo to open Corvane's web site.",
    "Use it for:",
    "Greeting cards",
    "Personal Correspondence",
    "Business brochures",
    "Newsletters",
    "Love Letters",
    "Sales Brochures",
    "Resumes",
    "Photo Albums",
    "Catalogs",
    "Price Lists",
};
constexpr int kHeading = 2;
constexpr int kListColumns = 2;

constexpr const char* kAboutTexts[] = {
    "Version " CORVANE_VERSION,
    "Corvane 2, the page maker for people who know no HTML",
    "Thank you to the author of the JPEG library and to the Independent JPEG Group for the JPG format functionality.",
    "Thank you to Info-ZIP for the use of their compression code and library. (The Info-ZIP license can be found in "
    "the Corvane program folder.)",
};

constexpr int kLogoSide = 96;     // pixels
constexpr int kPointerSide = 32;  // pixels; its tip is at the corner
constexpr double kNameSize = 2;   // times the desktop's letters
constexpr int kLettersWide = 64;

QLabel* NewText(const QString& name, const char* text) {
  auto* label = new QLabel(QLatin1String(text));
  label->setObjectName(name);
  label->setWordWrap(true);
  return label;
}

}  // namespace

FSplash::FSplash(Program& program)
    : HelpWindow(QStringLiteral("FSplash"), QStringLiteral("About Corvane")), program_(program) {
  InitHelpResources();  // those of a static library have to be asked for
  setMouseTracking(true);
  pointer_ = QCursor(QIcon(QStringLiteral(":/help/BLUEA.svg")).pixmap(kPointerSide), 1, 1);
  for (std::size_t i = 0; i < Label2.size(); ++i) Label2[i] = NewText(QStringLiteral("Label2_%1").arg(i), kTexts[i]);
  QFont bold = Label2[kHeading]->font();
  bold.setBold(true);
  Label2[kHeading]->setFont(bold);

  Image1 = new HotLink(QStringLiteral("Image1"), Logo(), kLogoSide);
  Image1->setAccessibleName(QStringLiteral("Corvane's web site"));
  Label3 = new HotLink(QStringLiteral("Label3"), QStringLiteral("Corvane 2"), kNameSize);
  for (HotLink* const link : {Image1, Label3}) {
    connect(link, &HotLink::MouseMoved, this, &FSplash::TakePointer);
    connect(link, &QAbstractButton::clicked, this, &FSplash::OpenHomePage);
  }

  auto* texts = new QVBoxLayout;
  texts->addWidget(Label3, 0, Qt::AlignLeft);
  for (QLabel* const label : {Label2[0], Label2[1]}) {
    label->setIndent(HotLink::kRoom);
    texts->addWidget(label);
  }
  texts->addStretch(1);
  auto* head = new QHBoxLayout;
  head->setSpacing(14);
  head->addWidget(Image1, 0, Qt::AlignTop);
  head->addLayout(texts, 1);

  FrAbout = NewAboutFrame();

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(16, 14, 16, 12);
  column->setSpacing(10);
  column->addLayout(head);
  column->addWidget(NewList());
  column->addWidget(FrAbout);
  column->addLayout(NewButtonRow());
  column->addStrut(kLettersWide * fontMetrics().averageCharWidth());
  column->setSizeConstraint(QLayout::SetFixedSize);
}

// The heading and two columns under it.
QWidget* FSplash::NewList() {
  auto* list = new QWidget;
  auto* grid = new QGridLayout(list);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setVerticalSpacing(3);
  grid->addWidget(Label2[kHeading], 0, 0, 1, kListColumns);
  const int first = kHeading + 1;
  const int rows = (int(Label2.size()) - first) / kListColumns;
  for (int i = first; i < int(Label2.size()); ++i) {
    Label2[std::size_t(i)]->setIndent(14);
    grid->addWidget(Label2[std::size_t(i)], 1 + (i - first) % rows, (i - first) / rows);
  }
  return list;
}

QFrame* FSplash::NewAboutFrame() {
  auto* frame = new QFrame;
  frame->setObjectName(QStringLiteral("FrAbout"));
  frame->setAccessibleName(QStringLiteral("Version and thanks"));
  frame->setFrameStyle(int(QFrame::StyledPanel) | int(QFrame::Sunken));
  auto* column = new QVBoxLayout(frame);
  for (std::size_t i = 0; i < std::size(kAboutTexts); ++i)
    column->addWidget(NewText(QStringLiteral("LabAbout%1").arg(i), kAboutTexts[i]));
  frame->hide();
  return frame;
}

QIcon FSplash::Logo() {
  InitHelpResources();
  return QIcon(QStringLiteral(":/help/logo.svg"));
}

void FSplash::ShowAbout() {
  FrAbout->show();
  ComeUp();
}

void FSplash::OpenHomePage() {
  program_.platform.shell.OpenFile(nullptr, QString::fromLatin1(kHomePage), QString(), ShowMode::Normal);
}

void FSplash::TakePointer() {
  setCursor(pointer_);
}

// The other labels leave the pointer as it is; only the bare window gives the desktop's own back, and that is meant.
void FSplash::mouseMoveEvent(QMouseEvent* event) {
  if (!childAt(event->position().toPoint())) unsetCursor();
  HelpWindow::mouseMoveEvent(event);
}
