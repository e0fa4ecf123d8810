#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

#include "Dialogs.h"

// Dialogs that answer at once, from queues that the test fills, and keep what was asked. A dialog for which no answer
// is left is cancelled and counted in `Unanswered`, except a box with nothing but OK, which needs none.
class ScriptedDialogs : public Dialogs {
 public:
  // A message box as it was shown.
  struct Box {
    QString text;
    MessageIcon icon;
    MessageButtons buttons;
    QString title;
    QWidget* owner;
  };
  // An input or path dialog as it was shown; what the kind hasn't got is empty.
  struct Question {
    enum class Kind { Text, Folder, OpenFile, SaveFile } kind;
    QString title;
    QString prompt;
    QString given;
    QList<FileFilter> filters;
    QWidget* owner;
    TextCheck check;  // nobody holds an answer of the test's against it
  };

  // A colour dialog as it was shown.
  struct ColorQuestion {
    qint32 start;
    CustomColors custom;  // before the user stored anything
    QWidget* owner;
  };

  // Answers to come, first one first: for boxes with more than OK, and for all others ("" is Cancel).
  QList<MessageAnswer> Answers;
  QStringList Texts;
  QList<std::optional<qint32>> Colors;  // nothing is Cancel
  // What the user stores while a colour dialog is up, before the answer.
  std::function<void(CustomColors&)> StoreColors;
  // Runs while a box is up, as a nested message loop would.
  std::function<void()> WhileShown;

  QList<Box> Boxes;
  QList<Question> Questions;
  QList<ColorQuestion> ColorQuestions;
  int Unanswered = 0;
  // Set at the end of the program; nothing is kept or answered from then on.
  bool Cancelled = false;

  // The texts of all boxes shown so far.
  QStringList Messages() const;

  void CancelAll() override { Cancelled = true; }
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
  QString NextText();
};
