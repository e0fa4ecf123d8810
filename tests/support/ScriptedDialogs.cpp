#include "ScriptedDialogs.h"

QStringList ScriptedDialogs::Messages() const {
  QStringList texts;
  for (const Box& box : Boxes) texts.append(box.text);
  return texts;
}

MessageAnswer ScriptedDialogs::ShowMessage(QWidget* owner, const QString& text, MessageIcon icon,
                                           MessageButtons buttons, const QString& title) {
  const auto none = buttons == MessageButtons::Ok      ? MessageAnswer::Ok
                    : buttons == MessageButtons::YesNo ? MessageAnswer::No
                                                       : MessageAnswer::Cancel;
  if (Cancelled) return none;
  Boxes.append({text, icon, buttons, title, owner});
  if (WhileShown) WhileShown();
  // As a real box, whose loop the end of the program ends.
  if (Cancelled || buttons == MessageButtons::Ok) return none;
  if (!Answers.isEmpty()) return Answers.takeFirst();
  ++Unanswered;
  return none;
}

QString ScriptedDialogs::NextText() {
  if (WhileShown) WhileShown();
  if (Cancelled) return QString();
  if (!Texts.isEmpty()) return Texts.takeFirst();
  ++Unanswered;
  return QString();
}

QString ScriptedDialogs::AskText(QWidget* owner, const QString& prompt, const QString& title,
                                 const QString& defaultText, const TextCheck& check) {
  if (Cancelled) return QString();
  Questions.append({Question::Kind::Text, title, prompt, defaultText, {}, owner, check});
  return NextText();
}

QString ScriptedDialogs::ChooseFolder(QWidget* owner, const QString& title) {
  if (Cancelled) return QString();
  Questions.append({Question::Kind::Folder, title, QString(), QString(), {}, owner, {}});
  return NextText();
}

QString ScriptedDialogs::ChooseOpenFile(QWidget* owner, const QString& title, const QList<FileFilter>& filters,
                                        const QString& startFolder) {
  if (Cancelled) return QString();
  Questions.append({Question::Kind::OpenFile, title, QString(), startFolder, filters, owner, {}});
  return NextText();
}

QString ScriptedDialogs::ChooseSaveFile(QWidget* owner, const QString& title, const QList<FileFilter>& filters,
                                        const QString& defaultSuffix) {
  if (Cancelled) return QString();
  Questions.append({Question::Kind::SaveFile, title, QString(), defaultSuffix, filters, owner, {}});
  return NextText();
}

std::optional<qint32> ScriptedDialogs::ChooseColor(QWidget* owner, qint32 start, CustomColors& custom) {
  if (Cancelled) return std::nullopt;
  ColorQuestions.append({start, custom, owner});
  if (WhileShown) WhileShown();
  if (Cancelled) return std::nullopt;
  if (StoreColors) StoreColors(custom);
  if (!Colors.isEmpty()) return Colors.takeFirst();
  ++Unanswered;
  return std::nullopt;
}
