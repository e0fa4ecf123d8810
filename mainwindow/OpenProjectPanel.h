// The panel "Open Existing Project": the saved projects, with buttons to open and delete one.
#pragma once

#include <QFrame>
#include <array>

class FWeb;
class QListWidget;
class QPushButton;
struct Program;

class OpenProjectPanel : public QFrame {
  Q_OBJECT

 public:
  // All must outlive the panel; `Busy` is the guard of the window around it.
  OpenProjectPanel(Program& program, FWeb& web, bool& Busy, QWidget* parent = nullptr);

  // Fills the list with the saved projects, in the order of the listing.
  void LoadList();

  QListWidget* BoxProj = nullptr;
  std::array<QPushButton*, 3> bOpenProj{};  // OK, Cancel, Delete Project

 signals:
  void HideRequested();

 private:
  void OnClick(int Index);
  void Open();
  void Delete();
  bool HasSelection() const;
  QString SelectedPath(QString& name) const;

  Program& program_;
  FWeb& web_;
  bool& busy_;
};
