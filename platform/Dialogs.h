#pragma once

#include <QList>
#include <QString>
#include <array>
#include <functional>
#include <optional>

class QWidget;

enum class MessageIcon { None, Information, Question };
enum class MessageButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class MessageAnswer { Ok, Cancel, Yes, No };

// One entry of a file dialog's type list: what it is called, and patterns with ";" between them, "*.gif;*.jpg".
struct FileFilter {
  QString description;
  QString pattern;

  bool operator==(const FileFilter&) const = default;
};

// Colours as 0x00BBGGRR that a colour dialog shows and the user may store into.
using CustomColors = std::array<qint32, 16>;

// The system's modal dialogs. Each call returns when the user has answered; an owner may be null.
class Dialogs {
 public:
  // Title of a message box for which no other is told.
  static QString StandardTitle() { return QStringLiteral("Corvane"); }

  virtual ~Dialogs() = default;

  // From now on each dialog counts as cancelled and none is shown, as the program ends.
  virtual void CancelAll() = 0;

  // Closing the box counts as Cancel, or as No where there is no Cancel, or as Ok where there is nothing else.
  virtual MessageAnswer ShowMessage(QWidget* owner, const QString& text, MessageIcon icon = MessageIcon::Information,
                                    MessageButtons buttons = MessageButtons::Ok,
                                    const QString& title = StandardTitle()) = 0;

  // Why a text can't be the answer, as a sentence for the user; "" for one that can.
  using TextCheck = std::function<QString(const QString& text)>;

  // One line of text from the user; "" for Cancel and for an empty answer alike. Where a check is given the box takes
  // no text that it finds wrong, and tells beside the field why.
  virtual QString AskText(QWidget* owner, const QString& prompt, const QString& title,
                          const QString& defaultText = QString(), const TextCheck& check = TextCheck()) = 0;

  // A folder that is there, in native form, or "" on Cancel.
  virtual QString ChooseFolder(QWidget* owner, const QString& title) = 0;

  // A file that is there, in native form, or "" on Cancel. "" as start folder leaves the place to the system.
  virtual QString ChooseOpenFile(QWidget* owner, const QString& title, const QList<FileFilter>& filters,
                                 const QString& startFolder = QString()) = 0;

  // A path to write to, in native form, or "" on Cancel. Nobody asks about a file that is there already. The suffix,
  // without a dot, is added only where the user typed none.
  virtual QString ChooseSaveFile(QWidget* owner, const QString& title, const QList<FileFilter>& filters,
                                 const QString& defaultSuffix) = 0;

  // A colour as 0x00BBGGRR, or nothing on Cancel. A negative start is black. What the user stores in `custom` stays
  // there, after Cancel too.
  virtual std::optional<qint32> ChooseColor(QWidget* owner, qint32 start, CustomColors& custom) = 0;
};
