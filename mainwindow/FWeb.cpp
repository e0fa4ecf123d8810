#include "FWeb.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QToolButton>

#include "AsciiText.h"
#include "BusyGuard.h"
#include "Caption.h"
#include "CaretBar.h"
#include "Colors.h"
#include "ControlLook.h"
#include "FittedText.h"
#include "FontFaces.h"
#include "OpenHelp.h"
#include "PageFiles.h"
#include "Program.h"
#include "SpecialFolder.h"
#include "Swatch.h"
#include "ToolButton.h"
#include "Twips.h"
#include "WebBrowser.h"
#include "WorkWindow.h"

// Outside of any namespace, as the macro wants it.
static void InitToolResources() {
  Q_INIT_RESOURCE(Tools);
  Q_INIT_RESOURCE(Themes);
}

namespace {

void Place(QWidget* widget, int left, int top, int width, int height) {
  widget->setGeometry(TwipsToPixels(left), TwipsToPixels(top), TwipsToPixels(width), TwipsToPixels(height));
}

constexpr int kDesignWidth = 10725;
constexpr int kDesignHeight = 7305;
constexpr int kStripHeight = 770;

}  // namespace

FWeb::FWeb(Program& program, const WebBrowserFactory& makeBrowser) : program_(program), client_(new QWidget(this)) {
  InitToolResources();  // those of a static library have to be asked for
  setObjectName(QStringLiteral("FWeb"));
  setCentralWidget(client_);
  client_->setObjectName(QStringLiteral("Client"));
  client_->setMouseTracking(true);
  client_->installEventFilter(this);
  BuildMenus();
  BuildStrip();
  BuildFontControls();
  jWB = new WBUC(program_, makeBrowser, client_);
  jWB->setObjectName(QStringLiteral("jWB"));
  jWB->setAccessibleName(QStringLiteral("Page"));
  Place(jWB, 3180, 1740, 6075, 3135);
  FrWork = new WorkWindow(client_);
  FrCaret = new CaretBar(*jWB, client_);
  FrCaret->setObjectName(QStringLiteral("FrCaret"));
  FrCaret->setAccessibleName(QStringLiteral("Insertion point"));
  Place(FrCaret, 780, 3600, 15, 260);
  FrCaret->hide();
  connect(FrWork, &WorkWindow::HeadClicked, this,
          [this] { FrWork->UpCaption() == u"6" ? LowerWorkWindow() : RaiseWorkWindow(); });
  connect(jWB, &WBUC::Click, this, &FWeb::OnClick);
  connect(jWB, &WBUC::RightClick, this, &FWeb::OnRightClick);
  connect(jWB, &WBUC::DoubleClick, this, &FWeb::OnDoubleClick);
  connect(jWB, &WBUC::KeyPress, this, [this](const QString&, int x, int y) { MoveCaret(x, y); });
  connect(jWB, &WBUC::PicturesDropped, this, &FWeb::PicturesDropped);
  connect(jWB, &WBUC::ElementHover, this, &FWeb::OnElementHover);
  for (int index = 0; index < int(FrWork->bSel.size()); ++index)
    connect(FrWork->bSel[std::size_t(index)], &QAbstractButton::clicked, this, [this, index] {
      bSel(index);
      jWB->setFocus();
    });
  connect(FrWork->bProps, &QAbstractButton::clicked, this, &FWeb::bProps);
  connect(BoxPage, &QComboBox::currentIndexChanged, this, &FWeb::OnBoxPage);
  // These react to the user only.
  connect(BoxFace, &QComboBox::activated, this, [this] {
    const QString face = TrimBlanks(BoxFace->currentText());
    jWB->SetSelFontFace(face.isEmpty() ? FontFaces().first() : face);
    jWB->setFocus();
  });
  connect(BoxSize, &QComboBox::activated, this, [this](int index) {
    jWB->SetSelFontSize(QString::number(index + 1));
    jWB->setFocus();
  });
  connect(bBold, &QAbstractButton::clicked, this, [this] {
    jWB->ToggleBold();
    jWB->setFocus();
  });
  for (int index = 0; index < int(BoxColor.size()); ++index)
    connect(BoxColor[std::size_t(index)], &QAbstractButton::clicked, this, [this, index] {
      OnBoxColor(index);
      jWB->setFocus();
    });
  resize(TwipsToPixels(kDesignWidth), TwipsToPixels(kDesignHeight) + menuBar()->sizeHint().height());
  setWindowState(Qt::WindowMaximized);
  Load();
}

FWeb::~FWeb() = default;

void FWeb::BuildMenus() {
  std::array<QMenu*, 3> menus{};  // the open one of each depth
  const std::span<const MenuRow> rows = MenuRows();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const MenuRow& row = rows[i];
    const auto depth = std::size_t(row.depth);
    const QString caption = QString::fromLatin1(row.caption);
    QAction* action = nullptr;
    if (depth == 0 || (i + 1 < rows.size() && rows[i + 1].depth > row.depth)) {
      QMenu* const menu = depth == 0 ? menuBar()->addMenu(caption) : menus[depth - 1]->addMenu(caption);
      menu->setObjectName(QString::fromLatin1(row.name) + QLatin1String("Menu"));
      menus[depth] = menu;
      action = menu->menuAction();
    } else if (caption == u"-") {
      action = menus[depth - 1]->addSeparator();
    } else {
      action = menus[depth - 1]->addAction(caption);
    }
    action->setObjectName(QString::fromLatin1(row.name));
    if (row.key) action->setShortcut(QKeySequence(row.key));
    if (row.command) connect(action, &QAction::triggered, this, row.command);
    if (row.indexed) connect(action, &QAction::triggered, this, [this, &row] { (this->*row.indexed)(row.index); });
  }
  mPop = Entry("mPop")->menu();
  mPop2 = Entry("mPop2")->menu();
  for (QMenu* const popup : {mPop, mPop2}) popup->menuAction()->setVisible(false);
  connect(Entry("mEdit")->menu(), &QMenu::aboutToShow, this, [this] { EnableEditEntries(false); });
}

void FWeb::BuildStrip() {
  const auto frame = [this](const char* name, QWidget* parent) {
    auto* made = new QFrame(parent);
    made->setObjectName(QLatin1String(name));
    made->setMouseTracking(true);
    made->installEventFilter(this);
    return made;
  };
  FrTool2 = frame("FrTool2", client_);
  FrFont = frame("FrFont", FrTool2);
  FrTool = frame("FrTool", client_);
  FrTool->setAutoFillBackground(true);  // in a narrow window it lies over the font controls
  Place(FrTool2, 840, 300, 10695, kStripHeight);
  Place(FrFont, 3960, 60, 6795, 750);
  Place(FrTool, 240, 120, 3735, 435);
  LnTool2 = new QFrame(FrTool2);
  LnTool2->setObjectName(QStringLiteral("LnTool2"));
  LnTool2->setFrameShape(QFrame::HLine);
  LnTool2->setFrameShadow(QFrame::Sunken);
  for (const int left : {780, 2060}) {
    auto* line = new QFrame(FrTool);
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Sunken);
    Place(line, left, 75, 30, 300);
  }
  for (const ToolRow& row : ToolRows()) {
    auto* tool = new ToolButton(FrTool);
    ImTool[std::size_t(row.index)] = tool;
    tool->setObjectName(QStringLiteral("ImTool%1").arg(row.index));
    tool->setIcon(QIcon(QStringLiteral(":/tools/%1.svg").arg(QLatin1String(row.icon))));
    tool->setToolTip(QString::fromLatin1(row.toolTip));
    tool->setAccessibleName(QString::fromLatin1(row.toolTip));
    // The frame that lights up needs room round the picture, which keeps its place and size.
    Place(tool, row.left - 30, row.top - 30, kToolSize + 60, kToolSize + 60);
    connect(tool, &QAbstractButton::clicked, this, row.command);
    connect(tool, &ToolButton::MouseMoved, this, [this, tool, index = row.index] {
      if (HoverTool != index) ClearToolHover();
      tool->SetLook(ToolButton::Look::Framed);  // also while it is pressed
      HoverTool = index;
    });
    connect(tool, &ToolButton::MouseWentDown, this, [tool] { tool->SetLook(ToolButton::Look::Raised); });
    connect(tool, &ToolButton::MouseWentUp, this, [tool] { tool->SetLook(ToolButton::Look::Plain); });
  }
}

void FWeb::BuildFontControls() {
  std::array<QComboBox**, 3> lists = {&BoxPage, &BoxFace, &BoxSize};
  std::size_t list = 0;
  std::size_t swatch = 0;
  QLabel* caption = nullptr;
  for (const FontRow& row : FontRows()) {
    QWidget* control = nullptr;
    const QString text = QString::fromLatin1(row.text);
    switch (row.kind) {
      case FontRow::Kind::Label:
        control = caption = new FittedLabel(text, FrFont);
        caption->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
        break;
      case FontRow::Kind::List: {
        auto* box = new FittedList(FrFont);
        box->addItems(text.split(u'|'));
        control = *lists[list++] = box;
        break;
      }
      case FontRow::Kind::Swatch: {
        auto* box = new Swatch(FrFont);
        box->SetColor(HtmlToColor(text));
        control = BoxColor[swatch++] = box;
        break;
      }
      case FontRow::Kind::Button:
        control = bBold = new QPushButton(text, FrFont);
        break;
    }
    control->setObjectName(QString::fromLatin1(row.name));
    Place(control, row.left, row.top, row.width, row.height);
    if (row.kind != FontRow::Kind::Label) {
      control->setFont(FontForHeight(control, control->height(), 3));
      control->setToolTip(QString::fromLatin1(row.toolTip));
      control->setAccessibleName(row.kind == FontRow::Kind::Button || !caption ? QString::fromLatin1(row.toolTip)
                                                                               : caption->text());
    }
  }
  QFont bold = bBold->font();
  bold.setBold(true);
  bBold->setFont(bold);
}

void FWeb::Load() {
  program_.DesktopPath = GetSpecialFolder(program_.platform, 0);
  if (!program_.Files.FolderExists(program_.DesktopPath)) program_.DesktopPath.clear();
  // What a run that crashed left behind goes without a word; ModMain has put aside what there was to keep.
  program_.project.StartNew();
  Busy = false;
  LoadPage(program_.project.CurPageFile());
  SetCaption();
  SetControlLook(FrWork, QStringLiteral("framed"));
  BoxFace->setCurrentIndex(0);
  BoxSize->setCurrentIndex(2);
  BoxPage->setCurrentIndex(0);
  SetThemeBitmaps();
  jWB->setFocus();
}

void FWeb::SetCaption() {
  caption_ = QStringLiteral("Corvane - ") + program_.project.ProjectName();
  ShowCaption();
}

void FWeb::SavePage(int PageNo, bool Strip) {
  if (const auto isWritten = ::SavePage(program_, *jWB, PageNo, Strip)) TellPageWritten(*isWritten);
}
void FWeb::TellPageWritten(bool isWritten) {
  isPageWritten_ = isWritten;
  ShowCaption();
  if (!isWritten) emit PageNotWritten();
}
void FWeb::ShowCaption() {
  setWindowTitle(CaptionOf(isPageWritten_ ? caption_ : caption_ + QStringLiteral(" (page not written)")));
}
void FWeb::LoadPage(const QString& PagePath) {
  ::LoadPage(program_, *jWB, PagePath);
}

// Steps of the resize rules. There is no smallest size, and the Work Window comes up again without its caption knowing.
void FWeb::LayOut() {
  if (isMinimized()) return;
  const int width = PixelsToTwips(client_->width());
  const int height = PixelsToTwips(client_->height());
  const auto moveTo = [](QWidget* widget, int left, int top) { widget->move(TwipsToPixels(left), TwipsToPixels(top)); };
  moveTo(FrTool, 0, 20);
  Place(FrTool2, 0, 0, width, kStripHeight);
  LnTool2->setGeometry(0, FrTool2->height() - 2, FrTool2->width(), 2);
  FrFont->move(FrTool2->width() - FrFont->width(), TwipsToPixels(20));
  const int top = PixelsToTwips(FrTool2->height());
  Place(jWB, 0, top, width, std::max(0, height - top));
  moveTo(FrWork, (width - WorkWindow::kWidth) / 2, height - WorkWindow::kHeight);
  FreeTheTools();
  FrTool->raise();
  FrWork->raise();
  FrCaret->StackUnder(FrWork);
  TellWhatIsCovered();
}

// In a narrow window the tools lie over the upper left of the font controls: over captions, which go there rather than
// show in pieces, and not over the lists below.
void FWeb::FreeTheTools() {
  const int end = FrTool->x() + ImTool[kToolCount - 1]->geometry().right();
  for (QLabel* const caption : FrFont->findChildren<QLabel*>()) caption->setVisible(FrFont->x() + caption->x() > end);
  FrTool->clearMask();
  if (FrFont->x() > end) return;
  const int free = FrTool2->y() + FrFont->y() + BoxFace->y() - FrTool->y();
  FrTool->setMask(QRect(0, 0, FrTool->width(), std::min(FrTool->height(), free)));
}

void FWeb::TellWhatIsCovered() {
  jWB->Browser().SetCovered(std::clamp(jWB->geometry().bottom() + 1 - FrWork->y(), 0, jWB->height()));
}

void FWeb::RaiseWorkWindow() {
  if (isMinimized()) return;
  FrWork->move(TwipsToPixels((PixelsToTwips(client_->width()) - WorkWindow::kWidth) / 2),
               client_->height() - FrWork->height());
  FrWork->SetUpCaption(QStringLiteral("6"));
  TellWhatIsCovered();
  update();
}

void FWeb::LowerWorkWindow() {
  if (isMinimized()) return;
  FrWork->move(TwipsToPixels((PixelsToTwips(client_->width()) - WorkWindow::kWidth) / 2),
               client_->height() - TwipsToPixels(WorkWindow::kLowered));
  FrWork->SetUpCaption(QStringLiteral("5"));
  TellWhatIsCovered();
  update();
}

void FWeb::ClearToolHover() {
  if (HoverTool >= 0 && HoverTool < kToolCount) ImTool[std::size_t(HoverTool)]->SetLook(ToolButton::Look::Plain);
  HoverTool = -1;
}

bool FWeb::eventFilter(QObject* watched, QEvent* event) {
  if (watched == client_ && event->type() == QEvent::Resize && FrCaret) LayOut();
  if (event->type() == QEvent::MouseMove || event->type() == QEvent::Leave) ClearToolHover();
  return QMainWindow::eventFilter(watched, event);
}

// Coming back from the task bar is a resize too, although the size is that of before.
void FWeb::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange && FrCaret &&
      static_cast<QWindowStateChangeEvent*>(event)->oldState().testFlag(Qt::WindowMinimized))
    LayOut();
}

void FWeb::closeEvent(QCloseEvent* event) {
  event->setAccepted(closing_);
  if (!closing_) emit ExitRequested();
}

void FWeb::mExit() {
  emit ExitRequested();
}
void FWeb::mPicEditor() {
  emit PicEditorRequested();
}
void FWeb::mOpenIcoEd() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  emit HideToolsRequested();
  emit IconEditorRequested();
}

void FWeb::mSettings() {
  emit HideToolsRequested();
  emit SettingsRequested();
}
void FWeb::mViewSource() {
  emit SourceRequested();
}
void FWeb::mCVNHelp() {
  OpenHelp(program_, this);
}
void FWeb::mAboutCVN() {
  emit AboutRequested();
}
void FWeb::mQuik(int Index) {
  emit TipRequested(Index, WithoutKeyMarks(Entry(qPrintable(QStringLiteral("mQuik%1").arg(Index)))->text()));
}

void FWeb::mMakePack() {
  emit HideToolsRequested();
  SavePage(program_.project.CurPageNo(), false);
  emit OpsRequested(OpsTask::WebPack);
}

void FWeb::mEmail() {
  SavePage(program_.project.CurPageNo(), false);
  emit OpsRequested(OpsTask::Email);
}
