// The main window's half of editing: what it does with the events of the page view, and its editing controls. It holds
// no state of its own: all that it knows comes from the page view at the moment of the command.
#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QMimeData>

#include "AsciiText.h"
#include "BusyGuard.h"
#include "CaretBar.h"
#include "Colors.h"
#include "ElementKind.h"
#include "FWeb.h"
#include "FontFaces.h"
#include "ListIndex.h"
#include "ModBrowse.h"
#include "Numbers.h"
#include "Program.h"
#include "StringTable.h"
#include "Swatch.h"
#include "Twips.h"
#include "WorkWindow.h"

namespace {

bool ClipboardHasText() {
  const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
  return data && data->hasText();
}

// The colour of a page as a swatch takes it: "#RRGGBB", or a number 0x00BBGGRR.
std::optional<qint32> ColorOf(const QString& told) {
  if (told.isEmpty()) return std::nullopt;
  return told.startsWith(u'#') ? HtmlToColor(told) : ToInteger32(told);
}

}  // namespace

QAction* FWeb::Entry(const char* name) const {
  return findChild<QAction*>(QLatin1String(name));
}

// --- events of the page view

void FWeb::MoveCaret(int x, int y) {
  FrCaret->move(jWB->x() + TwipsToPixels(x), jWB->y() + TwipsToPixels(y));
}

void FWeb::OnClick(const QString& sTag, int, int, int MouseXtr, int MouseYtr) {
  const BusyGuard guard(Busy);
  if (!guard) return;
  FrCaret->hide();
  const ElementKind kind = KindOf(sTag);
  if (!IsText(kind) && kind != ElementKind::Page) return;
  FrCaret->show();
  MoveCaret(MouseXtr, MouseYtr);
  if (kind != ElementKind::Link) ShowFontAtPoint();
}

void FWeb::ShowFontAtPoint() {
  const auto font = jWB->CurFontProps();
  if (font[4] != u"*") return;
  if (const auto color = ColorOf(font[0])) BoxColor[0]->SetColor(*color);
  if (const auto color = ColorOf(font[3])) BoxColor[1]->SetColor(*color);
  SetIndex(BoxFace, FaceIndex(font[1]));
  if (const auto size = ToInteger16(font[2])) SetIndex(BoxSize, *size - 1);
}

// The only place where the moving buttons are switched.
void FWeb::OnDoubleClick(const QString& sTag) {
  FrCaret->hide();
  ShowSelFrame(jWB->IfSelection() == WBUC::ElementSelected && IsMovable(KindOf(sTag)));
}

void FWeb::ShowSelFrame(bool On) {
  FrWork->FrSel->setEnabled(On);
  FrWork->LabSel->setEnabled(On);
}

void FWeb::OnRightClick() {
  {
    const BusyGuard guard(Busy);
    if (!guard) return;
    FrCaret->hide();
    EnableEditEntries(true);
  }
  const QPoint mouse = QCursor::pos();
  mPop->popup({mouse.x() - mPop->sizeHint().width() / 2, mouse.y()});
}

// The entries of the menu that pops up, or those of the menu bar, by what the page view has at this moment.
void FWeb::EnableEditEntries(bool popup) {
  const auto enable = [&](const char* ofPopup, const char* ofBar, bool on) {
    Entry(popup ? ofPopup : ofBar)->setEnabled(on);
  };
  const auto selection = jWB->IfSelection();
  enable("mCutPop", "mCut", selection >= WBUC::TextSelected);
  enable("mCopyPop", "mCopy", selection >= WBUC::TextSelected);
  enable("mSelTextP", "mSelText", selection == WBUC::TextSelected);
  enable("mPasteP0", "mPaste0", jWB->HasCurrentTextRange() && jWB->HasTextClip());
  enable("mPasteP1", "mPaste1", jWB->HasTagClip());
  enable("mPasteP2", "mPaste2", ClipboardHasText());
  // By the tag of the last click, not by what is under the mouse. A row has no table properties.
  const ElementKind kind = KindOf(jWB->CurrentElementTag());
  enable("mAlignPic", "mAlignPic1", kind == ElementKind::Picture);
  enable("mTableProps", "mTableProps1", kind == ElementKind::Cell || kind == ElementKind::Table);
  ShowUndoEntries();
}

// What would be undone stands behind the word.
void FWeb::ShowUndoEntries() {
  const EditHistory& history = jWB->History();
  const auto show = [&](const char* name, const QString& word, bool on, const QString& what) {
    Entry(name)->setEnabled(on);
    Entry(name)->setText(what.isEmpty() ? word : word + u' ' + what);
  };
  show("mUndo", QStringLiteral("&Undo"), history.CanUndo(), history.UndoName());
  show("mRedo", QStringLiteral("&Redo"), history.CanRedo(), history.RedoName());
}

void FWeb::ShowPaste2Menu() {
  Entry("mPasteP20")->setEnabled(jWB->HasTextClip() && jWB->HasCurrentTextRange());
  Entry("mPasteP21")->setEnabled(jWB->HasTagClip());
  Entry("mPasteP22")->setEnabled(ClipboardHasText());
  const QPoint mouse = QCursor::pos();
  mPop2->exec({mouse.x() - mPop2->sizeHint().width() / 2, mouse.y()});
}

void FWeb::OnElementHover(const QString& sTag) {
  QString caption;
  switch (KindOf(UpperAscii(sTag))) {
    case ElementKind::TextBlock:
    case ElementKind::TextPart:
      caption = QStringLiteral("Text Block");
      break;
    case ElementKind::Picture:
      caption = QStringLiteral("Picture");
      break;
    case ElementKind::Table:
    case ElementKind::Row:
    case ElementKind::Cell:
      caption = QStringLiteral("Table");
      break;
    case ElementKind::Page:
      caption = QStringLiteral("Page");
      break;
    case ElementKind::Link:
      // The current element's address, which isn't always that of the link under the mouse.
      caption = jWB->CurrentElement().getAttribute(QStringLiteral("href"), 0);
      break;
    case ElementKind::None:
      break;
  }
  FrWork->LabHover->setText(caption);
}

// --- the Work Window

void FWeb::bProps() {
  emit PagePropsRequested();
}

void FWeb::bSel(int Index) {
  const BusyGuard guard(Busy);
  if (!guard) return;
  const WorkRow& row = WorkRows()[std::size_t(Index)];
  if (row.needsElement && !jWB->HasCurrentElement()) {
    program_.platform.dialogs.ShowMessage(this, StringText(TextNumber::NoElementSelected));
  } else if (row.command) {
    (this->*row.command)();
  } else {
    (this->*row.directed)(row.direction);
  }
}

void FWeb::AddPicture() {
  emit AddPictureRequested();
}

void FWeb::AddTable() {
  emit ToolRequested(ToolTask::NewTable, QString());
}

void FWeb::SwitchPlaces(int direction) {
  ReportMoveResult(jWB->MoveElementOneElement(direction));
}

void FWeb::MoveOneSpace(int direction) {
  jWB->MoveElementOneSpace(direction);
}

// The answer that is offered is taken as well.
void FWeb::AddLink() {
  Dialogs& dialogs = program_.platform.dialogs;
  if (jWB->SelText().isEmpty()) {
    dialogs.ShowMessage(this, StringText(TextNumber::NoTextForLink));
    return;
  }
  const QString url = dialogs.AskText(this, StringText(FixedText::EnterUrl), StringText(FixedText::CreateLinkTitle),
                                      QStringLiteral("http://"));
  if (!url.isEmpty()) jWB->CreateLinkSel(url);
}

void FWeb::ReportMoveResult(int code) {
  static constexpr int numbers[] = {0, TextNumber::NoElementSelected, TextNumber::NotMovable, TextNumber::NoNeighbour};
  if (code < WBUC::NoElementSelected || code > WBUC::NoNeighbour) return;
  program_.platform.dialogs.ShowMessage(this, StringText(numbers[code]), MessageIcon::None);
}

// --- the font controls

void FWeb::OnBoxColor(int index) {
  const BusyGuard guard(Busy);
  if (!guard) return;
  Swatch* const box = BoxColor[std::size_t(index)];
  QWidget* const owner = tools_ && tools_->isVisible() ? tools_ : this;
  const qint32 color = ShowColorDialog(program_, owner, box->Color());
  if (color == -1) return;
  box->SetColor(color);
  if (index == 0) {
    jWB->SetSelColor(ColorToHtml(color));
  } else {
    jWB->SetSelBackColor(ColorToHtml(color));
  }
}

// --- entries of the menus

void FWeb::mCut() {
  jWB->Cut();
}
void FWeb::mCopy() {
  jWB->Copy();
}
void FWeb::mPaste(int Index) {
  jWB->Paste(Index);
}

// The page's own text colour changes nothing to the eye, but the text gets a FONT of its own.
void FWeb::mMakeTBlock() {
  const auto step = jWB->UndoStep(QStringLiteral("Make Text Block"));
  jWB->SetSelColor(jWB->BodyFontColor());
}

void FWeb::mApplyFont() {
  const auto step = jWB->UndoStep(QStringLiteral("Apply Current Font"));
  jWB->SetSelFontFace(BoxFace->currentText());
  jWB->SetSelFontSize(QString::number(BoxSize->currentIndex() + 1));
  jWB->SetSelColor(ColorToHtml(BoxColor[0]->Color()));
}

void FWeb::mAlign(int Index) {
  static const QStringList values = {QStringLiteral("left"), QStringLiteral("right"), QStringLiteral("center")};
  const auto step = jWB->UndoStep(QStringLiteral("Align Image"));
  if (jWB->HasCurrentElement() && KindOf(jWB->CurrentElementTag()) == ElementKind::Picture)
    jWB->CurrentElement().setAttribute(QStringLiteral("align"), values.value(Index));
}

void FWeb::mUndo() {
  jWB->Undo();
  ShowWhatIsInHand();
}

void FWeb::mRedo() {
  jWB->Redo();
  ShowWhatIsInHand();
}

void FWeb::ShowWhatIsInHand() {
  const bool isElement = jWB->IfSelection() == WBUC::ElementSelected;
  ShowSelFrame(isElement && IsMovable(KindOf(jWB->CurrentElementTag())));
  FrCaret->setVisible(jWB->HasCurrentTextRange() && !isElement);
}

void FWeb::mTableProps() {
  if (!jWB->HasCurrentElement()) return;
  switch (KindOf(jWB->CurrentElementTag())) {
    case ElementKind::Table:
      emit TablePropsRequested(jWB->CurrentElement());
      break;
    case ElementKind::Row:
    case ElementKind::Cell:
      if (const HTMLElement table = TableAround(jWB->CurrentElement())) emit TablePropsRequested(table);
      break;
    default:
      break;
  }
}
