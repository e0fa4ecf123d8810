#include "ScriptedDialogs.h"

QStringList ScriptedDialogs::Messages() const {
  QStringList texts;
  for (const Box& box : Boxes) texts.append(box.text);
  return texts;
}

MessageAnswer ScriptedDialogs::ShowMessage(QWidget* owner, const QString& text, MessageIcon icon,
                                           MessageButtons buttons, const QString& title) {
  Boxes.append({text, icon, buttons, title, owner});
  if (WhileShown) WhileShown();
  if (buttons == MessageButtons::Ok) return MessageAnswer::Ok;
  if (!Answers.isEmpty()) return Answers.takeFirst();
  ++Unanswered;
  return buttons == MessageButtons::YesNo ? MessageAnswer::No : MessageAnswer::Cancel;
}

QString ScriptedDialogs::NextText() {
  if (WhileShown) WhileShown();
  if (!Texts.isEmpty()) return Texts.takeFirst();
  ++Unanswered;
  return QString();
}

QString ScriptedDialogs::AskText(QWidget* owner, const QString& prompt, const QString& title,
                                 const QString& defaultText) {
  Questions.append({Question::Kind::Text, title, prompt, defaultText, {}, owner});
  return NextText();
}

QString ScriptedDialogs::ChooseFolder(QWidget* owner, const QString& title) {
  Questions.append({Question::Kind::Folder, title, QString(), QString(), {}, owner});
  return NextText();
}

QString ScriptedDialogs::ChooseOpenFile(QWidget* owner, const QString& title, const QList<FileFilter>& filters,
                                        const QString& startFolder) {
  Questions.append({Question::Kind::OpenFile, title, QString(), startFolder, filters, owner});
  return NextText();
}

QString ScriptedDialogs::ChooseSaveFile(QWidget* owner, const QString& title, const QList<FileFilter>& filters,
                                        const QString& defaultSuffix) {
  Questions.append({Question::Kind::SaveFile, title, QString(), defaultSuffix, filters, owner});
  return NextText();
}

std::optional<qint32> ScriptedDialogs::ChooseColor(QWidget* owner, qint32 start, CustomColors& custom) {
  ColorQuestions.append({start, custom, owner});
  if (WhileShown) WhileShown();
  if (StoreColors) StoreColors(custom);
  if (!Colors.isEmpty()) return Colors.takeFirst();
  ++Unanswered;
  return std::nullopt;
}
