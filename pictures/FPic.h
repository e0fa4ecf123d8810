// The picture editor's control window: one frame at its bottom holds all its controls, and the viewer shows the picture
// above that frame. It lives from start to exit; its close box hides it and the viewer.
#pragma once

#include <QWidget>

class ModPics;
class fBitmap;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
struct Program;

class FPic : public QWidget {
  Q_OBJECT

 public:
  // The program must outlive the window.
  explicit FPic(Program& program);

  // What shows the picture and what works on it, which live as long as the window is used; to be called once, before it
  // is.
  void SetPictures(ModPics& pics, fBitmap& viewer);

  // Shows the window after the scratch files of the last time have gone. A picture that is still on show stays.
  void Open();

  // Hides the viewer, and this window too where the whole editor is to close.
  void ClosePicture(bool CloseEditor);

  // True while a command runs; a second one does nothing then.
  bool Busy = false;

  QGroupBox* FrPicEdit = nullptr;
  QLabel* Label10 = nullptr;
  QPushButton* bQPicEdit = nullptr;

  QGroupBox* Frame2 = nullptr;
  QPushButton* bGetPic = nullptr;
  QPushButton* bSaveJPG = nullptr;
  QPushButton* bClosePicEdit = nullptr;

  QGroupBox* Frame1 = nullptr;
  QLineEdit* tWd = nullptr;
  QLineEdit* tHt = nullptr;
  QLineEdit* tSz = nullptr;
  QLineEdit* tJSz = nullptr;
  QPushButton* bCloseIm = nullptr;

  QGroupBox* FrPicOps = nullptr;
  QLineEdit* tPercSize = nullptr;
  QPushButton* bResize = nullptr;
  QLineEdit* tPercComp = nullptr;
  QPushButton* bCompress = nullptr;
  QLabel* LabCropSize = nullptr;
  QPushButton* bCrop = nullptr;
  QPushButton* bUnDo = nullptr;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  // Controls and their places, in FPic.cpp.
  void BuildOptions();
  void BuildImage();
  void BuildOperations();
  void BuildFrame();
  void OrderTabs();
  // Gives the frame the largest letters, up to the desktop's own, with which it is no wider than `room` pixels.
  void FitFrame(int room);
  void PlaceFrame();

  // What the buttons do, in FPicCommands.cpp.
  void ConnectButtons();
  void OnGetPic();
  void OnDrop(const QString& path);
  void OpenFile(const QString& name);
  void OnSaveJPG();
  void OnCrop();
  void OnResize();
  void OnCompress();
  void OnUnDo();
  void OnCloseIm();
  bool IsViewerVisible() const;
  bool HasPicture();
  bool MayWrite(const QString& path);
  QWidget* BoxOwner();
  void Tell(int message);
  void TakeKeysBack();

  Program& program_;
  ModPics* pics_ = nullptr;
  fBitmap* viewer_ = nullptr;
  // A click on Close has come while a command ran.
  bool closedMeanwhile_ = false;
};
