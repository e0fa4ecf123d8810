// The main window: menu bar, tool strip, the page view, and the Work Window floating over it.
// Positions are the system's own, in twips; a control's objectName is its member name.
#pragma once

#include <QMainWindow>
#include <array>
#include <memory>

#include "FWebTables.h"
#include "WBUC.h"
#include "WindowTasks.h"

class CaretBar;
class QAction;
class QComboBox;
class QFrame;
class QMenu;
class QPushButton;
class Swatch;
class ToolButton;
class WorkWindow;
struct Program;

class FWeb : public QMainWindow {
  Q_OBJECT

 public:
  // Makes the window and runs its load steps: the workspace is wiped and made afresh, and page 1 opens.
  FWeb(Program& program, const WebBrowserFactory& makeBrowser);
  ~FWeb() override;

  // Guard against re-entry of the commands that change pages or projects.
  bool Busy = false;

  WBUC* jWB = nullptr;
  QFrame* FrTool2 = nullptr;
  QFrame* FrTool = nullptr;
  QFrame* FrFont = nullptr;
  QFrame* LnTool2 = nullptr;
  CaretBar* FrCaret = nullptr;
  WorkWindow* FrWork = nullptr;
  QComboBox* BoxPage = nullptr;
  QComboBox* BoxFace = nullptr;
  QComboBox* BoxSize = nullptr;
  std::array<Swatch*, 2> BoxColor{};
  QPushButton* bBold = nullptr;
  std::array<ToolButton*, kToolCount> ImTool{};
  int HoverTool = -1;      // -1: no button is lit
  QMenu* mPop = nullptr;   // of a right click
  QMenu* mPop2 = nullptr;  // of the Paste button

  // The open page to disk; see PageFiles.h.
  void SavePage(int PageNo, bool Strip);
  void LoadPage(const QString& PagePath);
  // Whether the last write of a page was good; the caption bears a mark while it wasn't.
  void TellPageWritten(bool isWritten);
  bool IsPageWritten() const { return isPageWritten_; }

  // Commands.
  void mNewPage();
  void mSavePage();
  void mDelPage();
  void mRefresh();
  void mViewSource();
  void mOpenFile();
  void mSavePageFil();
  void mSaveOneFile();
  void mNewProject();
  void mOpenProject();
  void SaveProject();
  void mMakePack();
  void mEmail();
  void mPicEditor();
  void mOpenIcoEd();
  void mExit();
  void mSettings();
  void mCVNHelp();
  void mAboutCVN();
  void mQuik(int Index);
  void mmtheme(int Index);
  void mmthemeS(int Index);

  // Editing commands; see FWebEditing.cpp.
  void mCut();
  void mCopy();
  void mPaste(int Index);
  void mMakeTBlock();
  void mApplyFont();
  void mAlign(int Index);
  void mTableProps();
  void mUndo();
  void mRedo();
  // A button of the Work Window; what it does is told by its row.
  void bSel(int Index);
  void AddLink();
  void AddPicture();
  void AddTable();
  void SwitchPlaces(int direction);  // 1 with the next text block or picture, -1 with the one before
  void MoveOneSpace(int direction);  // 0 left, 1 up, 2 right, 3 down
  void bProps();
  void ShowSelFrame(bool On);
  void ShowPaste2Menu();

  // Opens the project in that folder, whatever was open before; the unsaved one is thrown away.
  void OpenProject(const QString& Name, const QString& Path);

  // The tool window owns the colour dialog while it is on show.
  void SetTools(QWidget* tools) { tools_ = tools; }

  void ClearToolHover();
  // The small pictures of the themes' entries.
  void SetThemeBitmaps();
  void RaiseWorkWindow();
  void LowerWorkWindow();
  void SetCaption();

  // From now on a close request is accepted.
  void LetClose() { closing_ = true; }

  QWidget* Client() const { return client_; }

 signals:
  void PageNotWritten();        // and it still is in view
  void UnwrittenPageGivenUp();  // another project follows, with whose pages it has nothing to do
  void ExitRequested();
  void HideToolsRequested();
  void ToolRequested(ToolTask iOp, const QString& sArg);
  void AddPictureRequested();
  void PicturesDropped(const QStringList& paths);
  void TablePropsRequested(const HTMLElement& table);
  void PagePropsRequested();
  void SourceRequested();
  void PageTextColorChanged(qint32 color);
  void SettingsRequested();
  void TipRequested(int Index, const QString& Caption);
  void AboutRequested();
  void OpsRequested(OpsTask Kind);
  void PicEditorRequested();
  void IconEditorRequested();

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BuildMenus();
  void BuildStrip();
  void BuildFontControls();
  void Load();
  void LayOut();
  void FreeTheTools();
  void ShowPage(int number);
  void OnBoxPage();
  void OnClick(const QString& sTag, int MouseX, int MouseY, int MouseXtr, int MouseYtr);
  void OnDoubleClick(const QString& sTag);
  void OnRightClick();
  void OnElementHover(const QString& sTag);
  void OnBoxColor(int index);
  void ShowFontAtPoint();
  void ShowUndoEntries();
  void ShowCaption();
  void ShowWhatIsInHand();
  void EnableEditEntries(bool popup);
  QAction* Entry(const char* name) const;
  void ReportMoveResult(int code);
  bool ApplyTheme(const QString& picture, const QString& color, bool removesHeartFirst);
  void RemoveHeartPic();
  void MoveCaret(int x, int y);
  void TellWhatIsCovered();
  void ExportPage(const QString& chosen);

  Program& program_;
  QWidget* client_;
  QWidget* tools_ = nullptr;
  bool closing_ = false;
  bool isPageWritten_ = true;
  QString caption_;  // without the mark of a page that wasn't written
};
