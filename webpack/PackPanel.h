#pragma once

#include <QFrame>
#include <array>

class QLabel;
class QLineEdit;
class QPushButton;
struct Program;

// The panel "Create Web-Pack File": two boxes for folder and name, and the buttons that build, browse and close. It
// holds nothing of its own but what stands in the boxes. Its window must be 6780 by 4140 twips at least.
class PackPanel : public QFrame {
  Q_OBJECT

 public:
  // Both must outlive the panel; `Busy` is the guard of the window around it, shared by all its panels.
  PackPanel(Program& program, bool& Busy, QWidget* parent = nullptr);

  // Fills the boxes: the folder for web-packs and the last file name.
  void LoadBoxes();

  // 0 "OK", 1 "Browse", 2 "Close".
  std::array<QPushButton*, 3> bCreate{};
  QLineEdit* tMakePath = nullptr;
  QLineEdit* tMakeFileName = nullptr;
  QLabel* Label4 = nullptr;

 signals:
  // The window around the panel is to be hidden.
  void HideRequested();
  // The user chose another folder for web-packs; it is stored already.
  void CardFolderChosen(const QString& folder);

 private:
  void LayOut();
  void OnCreateClick(int Index);
  void Build();
  void OfferTestRun(const QString& makePath, const QString& makeName, const QString& workPath, qint32 sizeBytes);
  void Browse();

  Program& program_;
  bool& busy_;
};
