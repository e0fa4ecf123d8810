#include "HostDialogs.h"

#include <QBoxLayout>
#include <QColorDialog>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QStandardPaths>

namespace {

// Characters of an address that a box for one line shows without scrolling.
constexpr int kTypicalAddress = 60;

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

bool IsForPictures(const QList<FileFilter>& filters) {
  for (const FileFilter& filter : filters)
    for (const char* const ending : {".gif", ".jpg", ".bmp", ".png"})
      if (filter.pattern.contains(QLatin1String(ending))) return true;
  return false;
}

// The program's folders are no place for the user's files.
bool IsOfProgram(const QString& folder) {
  for (const QString& own :
       {QCoreApplication::applicationDirPath(), QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)})
    if (!own.isEmpty() && (folder + u'/').startsWith(own + u'/')) return true;
  return false;
}

QColor ToQt(qint32 color) {
  if (color < 0) color = 0;
  return {color & 0xff, color >> 8 & 0xff, color >> 16 & 0xff};
}

qint32 FromQt(const QColor& color) {
  return color.red() | color.green() << 8 | color.blue() << 16;
}

void CaptionTheStoreButton(QColorDialog& dialog) {
  const QString given = QColorDialog::tr("&Add to Custom Colors");
  for (QPushButton* button : dialog.findChildren<QPushButton*>())
    if (button->text() == given) button->setText(QStringLiteral("Save This Color"));
}

// The dialog has no frame yet; it gets one like its owner's.
void CenterOnScreen(QDialog& dialog, const QWidget* owner) {
  dialog.adjustSize();
  const QWidget* const framed = owner ? owner->window() : &dialog;
  const QSize whole = dialog.size() + framed->frameGeometry().size() - framed->size();
  const QRect screen = framed->screen()->geometry();
  dialog.move(screen.x() + (screen.width() - whole.width()) / 2, screen.y() + (screen.height() - whole.height()) / 2);
}

// Under the field, in room that is there from the start: a box that grows while somebody types would jump.
void TakeOnly(const Dialogs::TextCheck& check, QLineEdit& line, QInputDialog& box) {
  auto* const reason = new QLabel;
  reason->setObjectName(QStringLiteral("Reason"));
  reason->setTextFormat(Qt::PlainText);
  reason->setMinimumHeight(reason->fontMetrics().height());
  auto* const column = qobject_cast<QBoxLayout*>(box.layout());
  auto* const buttons = box.findChild<QDialogButtonBox*>();
  if (!column || !buttons) return;
  column->insertWidget(column->indexOf(buttons), reason);
  const auto look = [&check, &line, reason, ok = buttons->button(QDialogButtonBox::Ok)] {
    const QString why = check(line.text());
    reason->setText(why);
    line.setAccessibleDescription(why);
    ok->setEnabled(why.isEmpty());
  };
  QObject::connect(&line, &QLineEdit::textChanged, reason, look);
  look();
}

}  // namespace

QString NameFilter(const FileFilter& filter) {
  const qsizetype patternList = filter.description.indexOf(u'(');
  QStringList patterns = filter.pattern.split(u';');
  patterns.replaceInStrings(QRegularExpression(QStringLiteral("^\\*\\.\\*$")),
                            QStringLiteral("*"));  // names without a dot too
  return filter.description.left(patternList) + u'(' + patterns.join(u' ') + u')';
}

MessageAnswer HostDialogs::ShowMessage(QWidget* owner, const QString& text, MessageIcon icon, MessageButtons buttons,
                                       const QString& title) {
  if (cancelled_) return BoxAnswer(QMessageBox::NoButton, buttons);
  QMessageBox box(owner);
  box.setWindowTitle(title);
  box.setTextFormat(Qt::PlainText);
  box.setText(text);
  box.setIcon(BoxIcon(icon));
  box.setStandardButtons(BoxButtons(buttons));
  return BoxAnswer(box.exec(), buttons);
}

QString HostDialogs::AskText(QWidget* owner, const QString& prompt, const QString& title, const QString& defaultText,
                             const TextCheck& check) {
  if (cancelled_) return QString();
  QInputDialog box(owner);
  box.setWindowTitle(title);
  box.setLabelText(prompt);
  box.setTextValue(defaultText);
  // What is offered is there to be gone on with, and Qt would select it when the box opens.
  if (auto* const line = box.findChild<QLineEdit*>()) {
    line->setMinimumWidth(line->fontMetrics().averageCharWidth() * kTypicalAddress);
    QMetaObject::invokeMethod(line, [line] { line->end(false); }, Qt::QueuedConnection);
    box.sizeHint();  // makes the layout
    if (check) TakeOnly(check, *line, box);
  }
  return box.exec() == QDialog::Accepted ? box.textValue() : QString();
}

QString HostDialogs::StartFor(const QString& title, const QList<FileFilter>& filters) const {
  const auto last = lastFolders_.constFind(title);
  if (last != lastFolders_.constEnd() && QFileInfo(*last).isDir()) return *last;
  const auto kind = IsForPictures(filters) ? QStandardPaths::PicturesLocation : QStandardPaths::DocumentsLocation;
  const QString folder = QStandardPaths::writableLocation(kind);
  return QFileInfo(folder).isDir() ? folder : QDir::homePath();
}

QString HostDialogs::RunFileDialog(QFileDialog& dialog) {
  if (dialog.exec() != QDialog::Accepted) return QString();
  const QStringList files = dialog.selectedFiles();
  if (files.isEmpty()) return QString();
  const bool isFolder = dialog.fileMode() == QFileDialog::Directory;
  const QString folder = isFolder ? files.first() : QFileInfo(files.first()).absolutePath();
  if (!IsOfProgram(folder)) lastFolders_[dialog.windowTitle()] = folder;
  return QDir::toNativeSeparators(files.first());
}

QString HostDialogs::ChooseFolder(QWidget* owner, const QString& title) {
  if (cancelled_) return QString();
  QFileDialog dialog(owner, title, StartFor(title, {}));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  return RunFileDialog(dialog);
}

QString HostDialogs::ChooseOpenFile(QWidget* owner, const QString& title, const QList<FileFilter>& filters,
                                    const QString& startFolder) {
  if (cancelled_) return QString();
  QFileDialog dialog(owner, title, startFolder.isEmpty() ? StartFor(title, filters) : startFolder);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  dialog.setFileMode(QFileDialog::ExistingFile);
  dialog.setNameFilters(NameFilters(filters));
  return RunFileDialog(dialog);
}

QString HostDialogs::ChooseSaveFile(QWidget* owner, const QString& title, const QList<FileFilter>& filters,
                                    const QString& defaultSuffix) {
  if (cancelled_) return QString();
  QFileDialog dialog(owner, title, StartFor(title, filters));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  dialog.setNameFilters(NameFilters(filters));
  dialog.setDefaultSuffix(defaultSuffix);
  return RunFileDialog(dialog);
}

// Always Qt's own dialog: that of a desktop neither lets its button be captioned nor shows the caller's colours.
std::optional<qint32> HostDialogs::ChooseColor(QWidget* owner, qint32 start, CustomColors& custom) {
  if (cancelled_) return std::nullopt;
  // Qt has one list for all its programs, and writes it into a file of the user's when the dialog goes.
  std::array<QColor, std::tuple_size_v<CustomColors>> ofUser;
  for (std::size_t i = 0; i < custom.size(); ++i) {
    ofUser[i] = QColorDialog::customColor(int(i));
    QColorDialog::setCustomColor(int(i), ToQt(custom[i]));
  }
  QColorDialog dialog(ToQt(start), owner);
  dialog.setOption(QColorDialog::DontUseNativeDialog);
  CaptionTheStoreButton(dialog);
  CenterOnScreen(dialog, owner);
  const bool accepted = dialog.exec() == QDialog::Accepted;
  for (std::size_t i = 0; i < custom.size(); ++i) {
    const QColor color = QColorDialog::customColor(int(i));
    // A number that is no colour stays as it was until another one is stored there.
    if (color.rgb() != ToQt(custom[i]).rgb()) custom[i] = FromQt(color);
    QColorDialog::setCustomColor(int(i), ofUser[i]);
  }
  if (!accepted) return std::nullopt;
  return FromQt(dialog.selectedColor());
}
