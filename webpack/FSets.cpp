// What the settings window does; how it looks stands in FSetsLayout.cpp.
#include "FSets.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>

#include "AsciiText.h"
#include "CheckIconFile.h"
#include "ModBrowse.h"
#include "PackIcons.h"
#include "PathRules.h"
#include "Program.h"
#include "Settings.h"
#include "StringTable.h"

// One panel in front; a button can't ask for the one that is there.
void FSets::ShowPanel(int index) {
  for (int panel = 0; panel < 3; ++panel) FrSets[std::size_t(panel)]->setVisible(panel == index);
  if (index > 1) return;
  bSetWins[std::size_t(index)]->setEnabled(false);
  bSetWins[std::size_t(1 - index)]->setEnabled(true);
}

void FSets::BrowseForPath() {
  const QString folder = BrowseForFolder(program_, this, StringText(TextNumber::ChooseDefaultPackFolder));
  if (folder.isEmpty() || !program_.Files.FolderExists(folder)) {
    program_.platform.dialogs.ShowMessage(this, StringText(TextNumber::NoSuchFolder));
    return;
  }
  tPath->setText(folder);
}

void FSets::ApplyPath() {
  if (!program_.Files.FolderExists(tPath->text())) {
    program_.platform.dialogs.ShowMessage(this, StringText(TextNumber::NoSuchFolder));
    return;
  }
  program_.CardFolder = tPath->text();
  Settings::Save(program_.platform.settings, Settings::CardFol, program_.CardFolder);
}

// An empty text is passed over without a word.
void FSets::ApplyLink() {
  const QString text = TrimBlanks(tLink->text());
  if (text.isEmpty()) return;
  Settings::Save(program_.platform.settings, Settings::LinkText, text);
  program_.LinkTextValue = text;
}

// Off works at once; on works when the next page has been loaded.
void FSets::OnCompat4() {
  program_.Compat4On = Ck4->isChecked();
  Settings::Save(program_.platform.settings, Settings::Compat4,
                 program_.Compat4On ? QStringLiteral("yes") : QStringLiteral("no"));
  if (!program_.Compat4On) emit UnHookRequested();
}

// The choice is stored first; only then comes the complaint about a custom icon that isn't there.
void FSets::ApplyIcon() {
  int index = 0;
  while (index < int(OpIco.size()) && !OpIco[std::size_t(index)]->isChecked()) ++index;
  if (index == int(OpIco.size())) return;
  SettingsStore& store = program_.platform.settings;
  // Not the caption, into which a desktop may put marks of its own.
  program_.CurIconName = QLatin1String(PackIconName(index));
  Settings::Save(store, Settings::CurIcon, program_.CurIconName);
  Settings::Save(store, Settings::CurIconNum, QString::number(index));
  if (index != kCustomIcon) return;
  const QString icon = PathRules::Join(program_.IconFolder(), Settings::Get(store, Settings::CustomIcon));
  if (!program_.Files.FileExists(icon))
    program_.platform.dialogs.ShowMessage(this, StringText(TextNumber::NoCustomIcon));
}

void FSets::OpenCustomIcons() {
  ListCustomIcons();
  tIcoPath->clear();
  ShowPanel(2);
}

void FSets::ListCustomIcons() {
  BoxIcons->clear();
  const QString folder = program_.IconFolder();
  if (!program_.Files.FolderExists(folder)) {
    program_.Files.EnsureFolder(folder);
    return;
  }
  QString list;
  program_.Files.ListFiles(folder, QString(), list);
  for (const QString& name : list.split(u'*', Qt::SkipEmptyParts))
    if (UpperAscii(name.right(3)) == u"ICO") BoxIcons->addItem(name);
}

void FSets::BrowseForIcon() {
  const QString folder = program_.IconFolder();
  program_.Files.EnsureFolder(folder);
  const QString path = ShowOpenDialog(program_, this, QStringLiteral("Select Icon File"),
                                      QStringLiteral("Icon Files(*.ico)"), QStringLiteral("*.ico"), folder);
  if (!program_.Files.FileExists(path)) return;
  tIcoPath->setText(path);
  bCustomIco[1]->setEnabled(true);
}

void FSets::AddIcon() {
  ModFileOps& files = program_.Files;
  Dialogs& dialogs = program_.platform.dialogs;
  const QString path = TrimBlanks(tIcoPath->text());
  if (!files.FileExists(path)) {
    dialogs.ShowMessage(this, StringText(FixedText::FileNotFound) + QStringLiteral("\r\n") + path);
    return;
  }
  QString message;
  if (CheckIconFile(files, path, message) != 0) {
    dialogs.ShowMessage(this, message);
    return;
  }
  files.EnsureFolder(program_.IconFolder());
  const QString target = PathRules::Join(program_.IconFolder(), FileNameOf(path));
  // One that is in the list already stays as it is.
  if (QFileInfo(path) != QFileInfo(target)) {
    files.DeleteFileIfAny(target);
    files.CopyFileOver(path, target);
  }
  ListCustomIcons();
  bCustomIco[1]->setEnabled(false);
}

void FSets::UseIcon() {
  Dialogs& dialogs = program_.platform.dialogs;
  const auto selected = BoxIcons->selectedItems();
  if (selected.isEmpty()) {
    dialogs.ShowMessage(this, StringText(FixedText::NoIconSelected));
    return;
  }
  const QString name = selected.first()->text();
  const QString path = PathRules::Join(program_.IconFolder(), name);
  QString message;
  if (CheckIconFile(program_.Files, path, message) != 0) {
    dialogs.ShowMessage(this, message);
    return;
  }
  const QPixmap picture(path);
  if (!picture.isNull()) ImCustom->setPixmap(picture);
  Settings::Save(program_.platform.settings, Settings::CustomIcon, name);
  dialogs.ShowMessage(this, StringText(TextNumber::IconIsForCustom));
}

void FSets::CloseCustomIcons() {
  ShowPanel(1);
  bCustomIco[2]->setEnabled(false);
}

void FSets::closeEvent(QCloseEvent* event) {
  event->ignore();
  hide();
}

void FSets::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) hide();
  QWidget::keyPressEvent(event);
}
