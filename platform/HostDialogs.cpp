#include "HostDialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

namespace {

QMessageBox::Icon BoxIcon(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::None:
      return QMessageBox::NoIcon;
    case MessageIcon::Information:
      return QMessageBox::Information;
    case MessageIcon::Question:
      return QMessageBox::Question;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons BoxButtons(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::Ok:
      return QMessageBox::Ok;
    case MessageButtons::OkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case MessageButtons::YesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case MessageButtons::YesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
  }
  return QMessageBox::Ok;
}

MessageAnswer BoxAnswer(int button, MessageButtons buttons) {
  switch (button) {
    case QMessageBox::Ok:
      return MessageAnswer::Ok;
    case QMessageBox::Yes:
      return MessageAnswer::Yes;
    case QMessageBox::No:
      return MessageAnswer::No;
    case QMessageBox::Cancel:
      return MessageAnswer::Cancel;
    default:
      break;
  }
  if (buttons == MessageButtons::Ok) return MessageAnswer::Ok;
  return buttons == MessageButtons::YesNo ? MessageAnswer::No : MessageAnswer::Cancel;
}

QStringList NameFilters(const QList<FileFilter>& filters) {
  QStringList names;
  for (const FileFilter& filter : filters) names.append(NameFilter(filter));
  return names;
}

QString RunFileDialog(QFileDialog& dialog) {
  if (dialog.exec() != QDialog::Accepted) return QString();
  const QStringList files = dialog.selectedFiles();
  return files.isEmpty() ? QString() : QDir::toNativeSeparators(files.first());
}

}  // namespace

QString NameFilter(const FileFilter& filter) {
  const qsizetype patternList = filter.description.indexOf(u'(');
  QString pattern = filter.pattern;
  return filter.description.left(patternList) + u'(' + pattern.replace(u';', u' ') + u')';
}

MessageAnswer HostDialogs::ShowMessage(QWidget* owner, const QString& text, MessageIcon icon, MessageButtons buttons,
                                       const QString& title) {
  QMessageBox box(owner);
  box.setWindowTitle(title);
  box.setTextFormat(Qt::PlainText);
  box.setText(text);
  box.setIcon(BoxIcon(icon));
  box.setStandardButtons(BoxButtons(buttons));
  return BoxAnswer(box.exec(), buttons);
}

QString HostDialogs::AskText(QWidget* owner, const QString& prompt, const QString& title, const QString& defaultText) {
  QInputDialog box(owner);
  box.setWindowTitle(title);
  box.setLabelText(prompt);
  box.setTextValue(defaultText);
  return box.exec() == QDialog::Accepted ? box.textValue() : QString();
}

QString HostDialogs::ChooseFolder(QWidget* owner, const QString& title) {
  return QDir::toNativeSeparators(QFileDialog::getExistingDirectory(owner, title));
}

QString HostDialogs::ChooseOpenFile(QWidget* owner, const QString& title, const QList<FileFilter>& filters,
                                    const QString& startFolder) {
  QFileDialog dialog(owner, title, startFolder);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  dialog.setFileMode(QFileDialog::ExistingFile);
  dialog.setNameFilters(NameFilters(filters));
  return RunFileDialog(dialog);
}

QString HostDialogs::ChooseSaveFile(QWidget* owner, const QString& title, const QList<FileFilter>& filters,
                                    const QString& defaultSuffix) {
  QFileDialog dialog(owner, title);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  dialog.setNameFilters(NameFilters(filters));
  dialog.setDefaultSuffix(defaultSuffix);
  return RunFileDialog(dialog);
}
