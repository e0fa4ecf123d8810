// The page view: hosts the browser component, owns the open document, and makes it editable by its own handlers.
// The page is never put into an editing mode. A click places a text range of our own, a released key is turned into
// HTML and pasted there, a double click selects an element. Coordinates that it reports are twips. No routine shows a
// message or reports failure: a step that can't be done is passed over.
#pragma once

#include <QString>
#include <QWidget>
#include <array>
#include <memory>

#include "EditHistory.h"
#include "HTMLDocument.h"
#include "HTMLDocumentEvents.h"
#include "HTMLTxtRange.h"
#include "KeyPressQueue.h"
#include "RightButtonHook.h"
#include "WebBrowser.h"

struct Program;

class WBUC : public QWidget, private HTMLDocumentEvents {
  Q_OBJECT

 public:
  using Values = PageValues;

  WBUC(Program& program, const WebBrowserFactory& makeBrowser, QWidget* parent = nullptr);
  ~WBUC() override;

  WId Handle() const { return winId(); }
  HTMLDocument* WBDocument() const;  // null while no document is ready

  // Opens a file. `isNew`: the stored values are stamped on the page; otherwise they are read from it. What was cut or
  // copied survives.
  void Navo(const QString& sPath, bool isNew);

  // Takes the hook of the right mouse button away; safe at any time.
  void UnHook();
  bool IsHooked() const { return hook_.IsInstalled(); }

  // Properties of the page. While no document is ready, writing does nothing and reading gives "", except where a line
  // says otherwise.
  QString Title() const;  // of the page before, too, until the next one is there
  void SetTitle(const QString& title);
  QString Location() const { return Location_; }       // path last given to Navo
  QString BGColor() const { return values_.BGColor; }  // always the stored one, never that of an opened page
  void SetBGColor(const QString& color);
  QString BackPic() const;
  void SetBackPic(const QString& picture);  // "" removes it
  QString BodyFontName() const;
  void SetBodyFontName(const QString& name);
  QString BodyFontSize() const;
  void SetBodyFontSize(const QString& size);  // stored unchanged; the page gets FontSizeMap of it
  QString BodyFontColor() const;
  void SetBodyFontColor(const QString& color);             // stored even while no document is ready
  QString LinkColor() const { return values_.LinkColor; }  // the stored one
  void SetLinkColor(const QString& color);                 // for visited links too
  QString Source() const;                                  // the whole live page as HTML
  QByteArray SourceForFile() const;                        // the same as bytes of a page file: what is saved
  QByteArray FileOfSource(const QString& source) const;    // of what was typed in place of the page's source

  bool HasTextClip() const { return !TextClip_.isEmpty(); }
  bool HasTagClip() const { return !TagClip_.isEmpty(); }

  // What the user works on.
  HTMLElement CurrentElement() const { return CurrentElement_; }
  void SetCurrentElement(const HTMLElement& ObEl);                  // none is ignored; SelElement isn't touched
  QString CurrentElementTag() const { return CurrentElementTag_; }  // upper case
  QString CurrentSelElementTag() const { return SelElement_.tagName(); }
  bool HasCurrentElement() const { return bool(CurrentElement_); }
  std::shared_ptr<HTMLTxtRange> CurrentTextRange() const { return CurrentTextRange_; }  // null for none
  bool HasCurrentTextRange() const { return bool(CurrentTextRange_); }
  void SetCurrentTextRange(std::shared_ptr<HTMLTxtRange> range);

  enum Selection { NothingSelected = 0, TextSelected = 1, ElementSelected = 2 };
  // An element selected by double click counts as long as it is set, whatever is highlighted.
  Selection IfSelection() const;

  // Changing elements. Everything is taken out and put in as HTML text, so that what was there before is stale
  // afterwards; nothing happens to a stale element. The clipboards are the control's own and live as long as it does;
  // the system's is only read.
  enum Origin { FromTextClip = 0, FromTagClip = 1, FromSystem = 2 };
  void Cut();
  void Copy();
  void Paste(int iOrigin);  // SelElement is dropped in any case
  void DeleteElement(const HTMLElement& ObSel);
  void ReplaceElemHTML(const HTMLElement& Element1, const QString& sNewText);
  void AddNewElement(const QString& sText);  // HTML, at the end of the page
  void AddTable(const QString& sWide, const QString& sHigh, const QString& sBorder, const QString& sColor,
                const QString& sHPos, const QString& sTDHPos, const QString& sTDVPos, const QString& sPadding);
  void CreateLinkSel(const QString& sURL);

  // What the user does to the page while the value lives is undone in one; `name` is what the menu calls it.
  [[nodiscard]] EditHistory::Command UndoStep(const QString& name) { return {history_, name}; }
  EditHistory& History() { return history_; }
  // Back to before the user's last command, or on again, with what was selected then.
  void Undo();
  void Redo();

  enum MoveResult { Moved = 0, NoElementSelected = 1, NotMovable = 2, NoNeighbour = 3 };
  // Changes SelElement, a text block or picture, with the next one before (-1) or behind (1) it.
  int MoveElementOneElement(int iDirection);
  // Moves CurrentElement: 0 one space left, 1 one line up, 2 one space right, 3 one line down.
  void MoveElementOneSpace(int iDirection);

  // The font of text selected with the mouse. Nothing happens where an element is selected as a whole.
  void SetSelColor(const QString& color);
  void SetSelBackColor(const QString& color);
  void SetSelFontFace(const QString& face);
  void SetSelFontSize(const QString& size);  // "1" to "6"
  void ToggleBold();
  // Colour, face, size and background at the insertion point, and "*"; five empty texts where text is selected.
  std::array<QString, 5> CurFontProps() const;
  QString SelText() const;
  void SetSelText(const QString& sNewText);  // HTML

  // Handlers of the document's events.
  bool Doc_onclick();
  bool Doc_ondblclick();
  void Doc_onkeyup();
  void Doc_onmousedown();
  void Doc_onmouseup();
  void Doc_onmouseout();
  void Doc_onmouseover();
  bool Doc_oncontextmenu();

  bool DocReady() const { return DocReady_; }
  Values& StoredValues() { return values_; }
  WebBrowser& Browser() { return *WB2_; }

 signals:
  // -1 as MouseXtr and MouseYtr: no text range was placed.
  void Click(const QString& sTag, int MouseX, int MouseY, int MouseXtr, int MouseYtr);
  void RightClick();
  void DoubleClick(const QString& sTag);
  void KeyPress(const QString& sKey, int EventX, int EventY);
  void DocComplete();
  void ElementHover(const QString& sTag);
  // The page isn't what it was: the user, or one of its scripts, has changed something.
  void Edited();
  // Files of pictures that were dropped on the page.
  void PicturesDropped(const QStringList& paths);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  bool onclick() override { return Doc_onclick(); }
  bool ondblclick() override { return Doc_ondblclick(); }
  void onkeyup() override { Doc_onkeyup(); }
  void onmousedown() override { Doc_onmousedown(); }
  void onmouseup() override { Doc_onmouseup(); }
  void onmouseout() override { Doc_onmouseout(); }
  void onmouseover() override { Doc_onmouseover(); }
  bool oncontextmenu() override { return Doc_oncontextmenu(); }

  void InitControl();
  void OnDocumentComplete();
  void StampValues();
  void ReadValues();
  void HookBrowserWindow();
  // Lets go of all that is in the page. The page itself still tells its title, and the tag of the element that was
  // current stays.
  void ForgetPage();
  // The page's BODY; another one after a script has written the page anew.
  HTMLBodyElement Body() const;
  void LayOverAll();

  const HTMLEventObj& Event() const { return Doc_->parentWindow().event(); }
  // Puts CurrentTextRange at the mouse of the current event and gives its position in twips.
  QPoint PlaceTextRange();
  void SelectElementText(const HTMLElement& el);
  bool IsHighlighted(const HTMLElement& el) const;
  void SelectAsElement(const HTMLElement& el);
  void SetSelElement(const HTMLElement& element);
  void ClearSelection();

  void FormatSelection(const QString& command, const QString& value, const QString& name);
  EditState StateOfEditing() const;
  void Restore(const EditState& state);
  void TellInsertionPoint();

  void BackspaceChar();
  void DeleteChar();

  Program& program_;
  std::unique_ptr<WebBrowser> WB2_;
  HTMLDocument* Doc_ = nullptr;
  bool DocReady_ = false;
  HTMLBodyElement Body_;
  HTMLElement CurrentElement_;
  HTMLElement SelElement_;  // set by SetSelElement
  std::shared_ptr<HTMLTxtRange> CurrentTextRange_;
  QString CurrentElementTag_;
  QString Location_;
  Values values_;
  QString TextClip_;
  QString TagClip_;
  bool IfNew_ = true;
  RightButtonHook hook_;
  KeyPressQueue keyPresses_;
  EditHistory history_;
};
