#include "PackPanel.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "BusyGuard.h"
#include "ModBrowse.h"
#include "ModPackage.h"
#include "PackCheck.h"
#include "PathRules.h"
#include "Program.h"
#include "Settings.h"
#include "StringTable.h"
#include "WaitCursor.h"

namespace {

struct ButtonText {
  const char* caption;
  const char* toolTip;
};

constexpr ButtonText kButtons[] = {
    {"OK", "Make package file now - in folder and with name as entered here."},
    {"Browse", "Browse to choose location for making package file."},
    {"Close", "Close window."},
};

QLineEdit* NewBox(QVBoxLayout* column, const char* name, const char* label) {
  auto* box = new QLineEdit;
  box->setObjectName(QLatin1String(name));
  auto* caption = new QLabel(QLatin1String(label));
  caption->setBuddy(box);
  box->setAccessibleName(QString::fromLatin1(label).chopped(1));
  column->addWidget(caption);
  column->addWidget(box);
  return box;
}

}  // namespace

PackPanel::PackPanel(Program& program, bool& Busy, QWidget* parent) : QFrame(parent), program_(program), busy_(Busy) {
  setObjectName(QStringLiteral("FrOps0"));
  LayOut();
  for (int index = 0; index < 3; ++index) {
    connect(bCreate[index], &QPushButton::clicked, this, [this, index] { OnCreateClick(index); });
  }
}

void PackPanel::LayOut() {
  auto* group = new QGroupBox(QStringLiteral("  Create Web-Pack File  "));
  auto* around = new QVBoxLayout(this);
  around->setContentsMargins(8, 6, 8, 8);
  around->addWidget(group);

  auto* column = new QVBoxLayout(group);
  column->setContentsMargins(12, 6, 12, 8);
  column->setSpacing(3);
  Label4 = new QLabel(QStringLiteral("Create web-pack file"));
  Label4->setObjectName(QStringLiteral("Label4"));
  QFont heading = Label4->font();
  heading.setBold(true);
  Label4->setFont(heading);
  column->addStretch(1);
  column->addWidget(Label4);
  column->addStretch(2);
  tMakePath = NewBox(column, "tMakePath", "Make web-pack file in:");
  column->addStretch(2);
  tMakeFileName = NewBox(column, "tMakeFileName", "File name:");
  tMakeFileName->setText(QStringLiteral("Greeting.exe"));
  column->addStretch(4);

  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  row->addStretch();
  for (int index = 0; index < 3; ++index) {
    auto* button = new QPushButton(QLatin1String(kButtons[index].caption));
    button->setObjectName(QStringLiteral("bCreate%1").arg(index));
    button->setToolTip(QLatin1String(kButtons[index].toolTip));
    button->setAccessibleName(QLatin1String(kButtons[index].caption));
    button->setAutoDefault(false);
    row->addWidget(button);
    bCreate[index] = button;
  }
  column->addLayout(row);
  for (QLineEdit* const box : {tMakePath, tMakeFileName})
    connect(box, &QLineEdit::returnPressed, bCreate[0], &QAbstractButton::click);
}

void PackPanel::LoadBoxes() {
  tMakePath->setText(program_.CardFolder);
  tMakeFileName->setText(Settings::Get(program_.platform.settings, Settings::GreetName));
}

void PackPanel::OnCreateClick(int Index) {
  const BusyGuard guard(busy_);
  if (!guard) return;
  switch (Index) {
    case 0:
      Build();
      break;
    case 1:
      Browse();
      break;
    default:
      emit HideRequested();
      break;
  }
}

void PackPanel::Build() {
  Dialogs& dialogs = program_.platform.dialogs;
  const auto [makePath, makeName] = ReadyPackFileNames(tMakePath->text(), tMakeFileName->text());
  if (!program_.Files.FolderExists(makePath)) {
    dialogs.ShowMessage(window(), StringText(TextNumber::BadPackFolder));
    return;
  }
  program_.Files.DeleteFileIfAny(PathRules::Join(program_.project.WorkPath(), QStringLiteral("card.zip")));
  const QString target = PathRules::Join(makePath, makeName);
  if (program_.Files.FileExists(target)) {
    const MessageAnswer answer = dialogs.ShowMessage(window(), StringText(TextNumber::ReplaceFile),
                                                     MessageIcon::Question, MessageButtons::OkCancel);
    if (answer != MessageAnswer::Ok) return;
    program_.Files.DeleteFileIfAny(target);
  }
  const QString workPath = program_.project.WorkPath();
  qint32 sizeBytes = 0;
  PackResult result{};
  {
    const WaitCursor cursor;
    result = CreateWebPack(program_, makePath, makeName, sizeBytes);
  }
  if (result != PackResult::Made) {
    dialogs.ShowMessage(window(), StringText(TextNumber::BadPackFolder + int(result)));
    return;
  }
  OfferTestRun(makePath, makeName, workPath, sizeBytes);
  Settings::Save(program_.platform.settings, Settings::GreetName, makeName);
}

void PackPanel::OfferTestRun(const QString& makePath, const QString& makeName, const QString& workPath,
                             qint32 sizeBytes) {
  Dialogs& dialogs = program_.platform.dialogs;
  const QString target = PathRules::Join(makePath, makeName);
  const QStringList lines = {
      StringText(FixedText::WebPackCreated),
      target,
      StringText(FixedText::SizeOfFileIs) + QString::number(sizeBytes / 1024) + StringText(FixedText::SizeUnit),
      StringText(FixedText::TestThisPackage),
  };
  const MessageAnswer answer =
      dialogs.ShowMessage(window(), lines.join(QStringLiteral("\r\n")), MessageIcon::Question, MessageButtons::YesNo);
  if (answer != MessageAnswer::Yes) return;
  Shell& shell = program_.platform.shell;
  FixedText last = FixedText::TestOfFileFailed;
  if (!shell.RunsWindowsPrograms()) {
    const QString different = CheckPack(target, workPath);
    if (!different.isEmpty()) {
      dialogs.ShowMessage(window(), StringText(last) + QStringLiteral("\r\n") + different);
      return;
    }
    last = FixedText::PackageIsWhole;
  }
  if (shell.OpenFile(window(), makeName, makePath, ShowMode::Maximised) >= Shell::kFirstSuccess) return;
  if (shell.StartProgram(target, ShowMode::Maximised)) return;
  dialogs.ShowMessage(window(), StringText(last));
}

void PackPanel::Browse() {
  const QString folder = BrowseForFolder(program_, window(), StringText(TextNumber::ChoosePackFolder));
  if (!program_.Files.FolderExists(folder)) {
    program_.platform.dialogs.ShowMessage(window(), StringText(TextNumber::NoSuchFolder));
    return;
  }
  tMakePath->setText(folder);
  program_.CardFolder = folder;
  Settings::Save(program_.platform.settings, Settings::CardFol, folder);
  emit CardFolderChosen(folder);
}
