#pragma once

#include <QHash>

#include "Dialogs.h"

class QFileDialog;

// The desktop's own dialogs, where it offers them, and Qt's elsewhere. A dialog for files or folders opens where its
// purpose, told by its title, last led in this run; at first where the user keeps such files.
class HostDialogs : public Dialogs {
 public:
  void CancelAll() override { cancelled_ = true; }
  MessageAnswer ShowMessage(QWidget* owner, const QString& text, MessageIcon icon, MessageButtons buttons,
                            const QString& title) override;
  QString AskText(QWidget* owner, const QString& prompt, const QString& title, const QString& defaultText,
                  const TextCheck& check) override;
  QString ChooseFolder(QWidget* owner, const QString& title) override;
  QString ChooseOpenFile(QWidget* owner, const QString& title, const QList<FileFilter>& filters,
                         const QString& startFolder) override;
  QString ChooseSaveFile(QWidget* owner, const QString& title, const QList<FileFilter>& filters,
                         const QString& defaultSuffix) override;
  std::optional<qint32> ChooseColor(QWidget* owner, qint32 start, CustomColors& custom) override;

 private:
  QString RunFileDialog(QFileDialog& dialog);
  QString StartFor(const QString& title, const QList<FileFilter>& filters) const;

  QHash<QString, QString> lastFolders_;  // by title
  bool cancelled_ = false;
};

// The form in which Qt's file dialog takes a type: "Pictures(*.gif *.jpg)". A list with ";" would match no file.
QString NameFilter(const FileFilter& filter);
