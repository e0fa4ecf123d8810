// The settings window: what governs a web-pack, that is its folder, the text of its links and its icon with the list of
// custom icons, and one box for the page view. Its close box only hides it.
#pragma once

#include <QWidget>
#include <array>

class QBoxLayout;
class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
struct Program;

class FSets : public QWidget {
  Q_OBJECT

 public:
  explicit FSets(Program& program);

  // Fills the list of custom icons from their folder, and makes the folder where there is none.
  void ListCustomIcons();

  bool Busy = false;

  // The panels: general, package icon, custom icons. One of them shows at a time.
  std::array<QWidget*, 3> FrSets{};
  std::array<QPushButton*, 2> bSetWins{};

  QLineEdit* tPath = nullptr;
  QLineEdit* tLink = nullptr;
  // Browse and Apply of the folder, Apply of the link's text.
  std::array<QPushButton*, 3> bSets{};
  QCheckBox* Ck4 = nullptr;

  // The icons by their names, the custom one last, each with its picture.
  std::array<QRadioButton*, 11> OpIco{};
  std::array<QLabel*, 10> ImIco{};
  QLabel* ImCustom = nullptr;
  // Apply, and the way to the custom icons.
  std::array<QPushButton*, 2> bIcoSets{};

  QLineEdit* tIcoPath = nullptr;
  QListWidget* BoxIcons = nullptr;
  // Browse, add, use, OK.
  std::array<QPushButton*, 4> bCustomIco{};

 signals:
  // The page view is to give up its hook on the right mouse button.
  void UnHookRequested();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QWidget* NewGeneralPanel();
  QWidget* NewIconPanel();
  QWidget* NewCustomPanel();
  QPushButton* NewButton(const char* name, int index, const char* caption, const char* toolTip,
                         void (FSets::*command)());
  void ShowPanel(int index);

  void BrowseForPath();
  void ApplyPath();
  void ApplyLink();
  void OnCompat4();
  void ApplyIcon();
  void OpenCustomIcons();
  void BrowseForIcon();
  void AddIcon();
  void UseIcon();
  void CloseCustomIcons();

  Program& program_;
};
