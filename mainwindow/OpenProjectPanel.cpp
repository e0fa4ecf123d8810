#include "OpenProjectPanel.h"

#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "AsciiText.h"
#include "BusyGuard.h"
#include "ControlHabits.h"
#include "Discard.h"
#include "FWeb.h"
#include "PathRules.h"
#include "Program.h"
#include "StringTable.h"

namespace {

struct ButtonText {
  const char* caption;
  const char* toolTip;
};

constexpr ButtonText kButtons[] = {{"OK", "Open selected project."},
                                   {"Cancel", "Cancel and close window."},
                                   {"Delete Project", "Delete selected project."}};

// The list of Qt makes its first row the current one as soon as it gets the keys, and the arrow down then passes it by.
class ProjectList : public QListWidget {
 protected:
  void focusInEvent(QFocusEvent* event) override {
    const bool hadRow = currentIndex().isValid();
    QListWidget::focusInEvent(event);
    if (!hadRow) selectionModel()->clearCurrentIndex();
  }
};

}  // namespace

OpenProjectPanel::OpenProjectPanel(Program& program, FWeb& web, bool& Busy, QWidget* parent)
    : QFrame(parent), program_(program), web_(web), busy_(Busy) {
  setObjectName(QStringLiteral("FrOps1"));
  auto* around = new QVBoxLayout(this);
  around->setContentsMargins(8, 6, 8, 8);
  auto* group = new QGroupBox(QStringLiteral("  Open Existing Project  "));
  around->addWidget(group);
  auto* column = new QVBoxLayout(group);
  auto* label = new QLabel(QStringLiteral("Select project to open and click OK."));
  BoxProj = new ProjectList;
  BoxProj->setObjectName(QStringLiteral("BoxProj"));
  BoxProj->setAccessibleName(QStringLiteral("Saved projects"));
  label->setBuddy(BoxProj);
  column->addWidget(label);
  column->addWidget(BoxProj, 1);
  auto* row = new QHBoxLayout;
  column->addLayout(row);
  row->addStretch(1);
  for (int index = 0; index < 3; ++index) {
    auto* button = new QPushButton(QString::fromLatin1(kButtons[index].caption));
    bOpenProj[std::size_t(index)] = button;
    button->setObjectName(QStringLiteral("bOpenProj%1").arg(index));
    button->setToolTip(QString::fromLatin1(kButtons[index].toolTip));
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, [this, index] { OnClick(index); });
  }
  connect(BoxProj, &QListWidget::itemDoubleClicked, this, [this] { OnClick(0); });
  RunOnReturn(*BoxProj, [this] { OnClick(0); });
}

void OpenProjectPanel::LoadList() {
  BoxProj->clear();
  QString saved = program_.project.SavedFolder();
  int count = 0;
  BoxProj->addItems(program_.Files.ListFolders(saved, count));
  BoxProj->setFocus();
}

void OpenProjectPanel::OnClick(int Index) {
  const BusyGuard guard(busy_);
  if (!guard) return;
  switch (Index) {
    case 0:
      Open();
      break;
    case 1:
      emit HideRequested();
      break;
    case 2:
      Delete();
      break;
  }
}

// A row can be the current one without being selected.
bool OpenProjectPanel::HasSelection() const {
  return !BoxProj->selectedItems().isEmpty();
}

// What is left of a name without its blanks may be no folder, or one that isn't a project: "" for both.
QString OpenProjectPanel::SelectedPath(QString& name) const {
  name = TrimBlanks(BoxProj->selectedItems().first()->text());
  const QString saved = program_.project.SavedFolder();
  const QString path = PathRules::Join(saved, name);
  return PathRules::StaysBelow(saved, name) && program_.Files.FolderExists(path) ? path : QString();
}

void OpenProjectPanel::Open() {
  Dialogs& dialogs = program_.platform.dialogs;
  QString name;
  const QString path = HasSelection() ? SelectedPath(name) : QString();
  if (path.isEmpty()) {
    dialogs.ShowMessage(this, StringText(TextNumber::NoProjectSelected), MessageIcon::Information);
    return;
  }
  web_.OpenProject(name, path);
  emit HideRequested();
}

void OpenProjectPanel::Delete() {
  Dialogs& dialogs = program_.platform.dialogs;
  if (!HasSelection()) {
    dialogs.ShowMessage(this, StringText(TextNumber::NoProjectSelected), MessageIcon::Information);
    return;
  }
  QString name;
  const QString path = SelectedPath(name);
  if (path.isEmpty()) return;
  if (dialogs.ShowMessage(this,
                          StringText(FixedText::DeleteProjectBefore) + name + StringText(FixedText::DeleteProjectAfter),
                          MessageIcon::Question, MessageButtons::OkCancel) != MessageAnswer::Ok)
    return;
  program_.Files.Attributes().Clear(path);
  DiscardFolder(program_, path);
  delete BoxProj->selectedItems().first();
  // The list of Qt selects the next one, which nobody has chosen.
  BoxProj->setCurrentRow(-1);
}
