// The tool window: four panels, of which one shows at a time, for a picture to add, the page's source, the page's
// properties and a table. It holds no values of its own: what its controls show is read from the page view before they
// open, and what the user does goes to the page view, at once or on OK.
#pragma once

#include <QWidget>
#include <array>
#include <optional>

#include "ToolControls.h"
#include "WindowTasks.h"

class HTMLElement;
class ModPics;
class QCheckBox;
class SourceText;
class ToolPanel;
class FWeb;
struct Program;

class FTools : public QWidget {
  Q_OBJECT

 public:
  // Both must live as long as the window is used.
  FTools(Program& program, FWeb& web);

  // Where pictures are looked at before they are added. It must live as long as the window is used.
  void SetPictures(ModPics& pictures) { pictures_ = &pictures; }

  // Shows a panel at the bottom of the main window and above all others; `sArg` is the path of the
  // picture to add. Any other number shows the window as it is.
  void ShowTool(ToolTask iOp, const QString& sArg);

  // Lets the user choose a picture. A GIF or JPG is looked at first, a PNG goes straight into the page.
  void AddPicture(QWidget* owner);
  // Takes pictures one by one as if each had been chosen.
  void AddPictures(const QStringList& paths);

  // Opens the panel with the values of a TABLE, which doesn't become the current element by that.
  void LoadTableProps(const HTMLElement& el);

  void OpenPageProps();
  void ShowSource();

  // Guard against re-entry of the handlers that open dialogs or change the page.
  bool Busy = false;

  std::array<ToolPanel*, 4> FrTool{};

  QGroupBox* Frame1 = nullptr;
  QLineEdit* TPicPath = nullptr;
  std::array<QLineEdit*, 3> TSpec{};     // width, height, KB
  std::array<QPushButton*, 2> bOKPic{};  // OK, Cancel

  SourceText* T1 = nullptr;
  std::array<QPushButton*, 2> bCloseText{};  // OK, Save Changes

  QLineEdit* TTitle = nullptr;
  QPushButton* bTitle = nullptr;
  std::array<Swatch*, 4> BoxColor{};       // links, page background, body text; background of the table
  std::array<QPushButton*, 2> bBackPic{};  // Browse, Remove
  QComboBox* BoxFace = nullptr;
  QComboBox* BoxSize = nullptr;
  ThreeOptions OpBod{};
  QPushButton* bOKProps = nullptr;

  QLabel* LabNewTable = nullptr;       // hidden while a table is edited: that is the panel's mode
  std::array<QLineEdit*, 2> TTable{};  // width, height
  QCheckBox* CkBorder = nullptr;
  QComboBox* BoxBorder = nullptr;
  QComboBox* BoxPadding = nullptr;
  ThreeOptions OpH{};
  ThreeOptions OpHTD{};
  ThreeOptions OpVTD{};
  std::array<QPushButton*, 2> bOKTable{};  // OK, Cancel

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  // Return is the panel's OK and Escape its way out; of the page's source Escape alone, while nothing is unsaved there.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void BuildPicturePanel();
  void BuildSourcePanel();
  void BuildPagePanel();
  void BuildTablePanel();

  void OnOKPic(int Index);
  void OnCloseText(int Index);
  void OnBoxColor(int Index);
  void OnBackPic(int Index);
  void OnBoxFace();
  void OnOpBod();
  void OnOKTable(int Index);
  void ApplyToTable();

  void ShowPanel(std::size_t index);
  void PlaceAtBottom();
  void LearnEdges();
  void HideFromTop();
  void HideViewer();
  void TakePicture(const QString& path);
  void TakeNextPicture();

  Program& program_;
  FWeb& web_;
  ModPics* pictures_ = nullptr;
  QStringList waitingPictures_;
  std::optional<QMargins> edges_;  // that the desktop draws round the window, once they are known
  int tries_ = 0;                  // at learning them
};
