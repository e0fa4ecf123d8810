#include "EmailPanel.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "AsciiText.h"
#include "BusyGuard.h"
#include "CodePage.h"
#include "EmailDefaults.h"
#include "FewLinesLabel.h"
#include "MailUC.h"
#include "ModBrowse.h"
#include "ModEmail.h"
#include "OneLine.h"
#include "PlainTip.h"
#include "Program.h"
#include "Settings.h"
#include "StringTable.h"
#include "Twips.h"

namespace {

constexpr char kNote[] =
    "Fill in relevant fields and click \"Send\". Note that large pictures are not suitable for email. See Help for "
    "more info.";

constexpr char kServerTip[] =
    "For an ordinary mailbox type smtps:// and the name of the provider's outgoing server, like "
    "smtps://mail.example.org.";

// Twips of the window around.
constexpr int kWidth = 6780;
constexpr int kHeight = 5940;

struct ButtonText {
  const char* caption;
  const char* toolTip;
};

constexpr ButtonText kButtons[] = {
    {"Send", "Send current page as email."},
    {"Close", "Close window."},
    {"Save Copy", "Save a copy of this email as a file."},
};

constexpr const char* kComboLabels[] = {"To:", "From:"};
constexpr const char* kBoxLabels[] = {
    "Optional \"To\" name:",
    "Optional \"From\" name:",
    "Server:",
    "Subject:",
    "Username if not same as \"From\" email name:",
    "Password if necessary:",
};

// The remembered text, or `other` where there is none.
QString StoredOr(const SettingsStore& store, const Settings::Key& key, const QString& other) {
  const QString text = Settings::Get(store, key);
  return text.isEmpty() ? other : text;
}

QStringList ItemsOf(const QComboBox& box) {
  QStringList items;
  for (int i = 0; i < box.count(); ++i) items += box.itemText(i);
  return items;
}

// Puts the items of a stored list into the box, and leaves its text as it is.
void FillList(QComboBox& box, const QString& stored) {
  const QString text = box.currentText();
  box.clear();
  if (!stored.isEmpty()) box.addItems(stored.split(u'*'));
  // So that the arrow down comes to the first one.
  box.setCurrentIndex(-1);
  box.setEditText(text);
}

}  // namespace

EmailPanel::EmailPanel(Program& program, MailUC& MUC, bool& Busy, QWidget* main, QWidget* parent)
    : QFrame(parent), program_(program), MUC_(MUC), busy_(Busy), main_(main) {
  setObjectName(QStringLiteral("FrOps2"));
  LayOut();
  for (int index = 0; index < 3; ++index) {
    connect(bEmail[index], &QPushButton::clicked, this, [this, index] { OnEmailClick(index); });
  }
  connect(&MUC_, &MailUC::OnSendComplete, this, &EmailPanel::OnSendComplete);
  connect(&MUC_, &MailUC::ServerSaid, this, [this](const QByteArray& text) {
    serverSaid_ = StringText(FixedText::ServerSaid) + FromCodePage(text).trimmed();
    ShowTip();
  });
  connect(&MUC_, &MailUC::ServerClosed, this, [this] {
    const QString time = program_.platform.stamps.Now().toLocalTime().toString(QStringLiteral("HH:mm:ss"));
    serverClosed_ = StringText(FixedText::ServerClosed) + time + u'.';
    ShowTip();
  });
}

void EmailPanel::LayOut() {
  auto* group = new QGroupBox(QStringLiteral("  Send Page as HTML Email  "));
  auto* around = new QVBoxLayout(this);
  around->setContentsMargins(8, 4, 8, 6);
  around->addWidget(group);

  auto* column = new QVBoxLayout(group);
  column->setContentsMargins(12, 4, 12, 6);
  column->setSpacing(2);
  Label6 = new FewLinesLabel(QLatin1String(kNote), 3);
  Label6->setObjectName(QStringLiteral("Label6"));
  column->addWidget(Label6);

  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(14);
  grid->setVerticalSpacing(2);
  LayOutBoxes(grid);
  column->addLayout(grid, 1);

  TStat = new QLineEdit;
  TStat->setObjectName(QStringLiteral("TStat"));
  TStat->setAccessibleName(QStringLiteral("Status"));
  TStat->setReadOnly(true);
  TStat->setFocusPolicy(Qt::ClickFocus);
  QPalette quiet = TStat->palette();
  quiet.setColor(QPalette::Base, quiet.color(QPalette::Window));
  TStat->setPalette(quiet);
  column->addWidget(TStat);
  column->addSpacing(4);

  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  row->addStretch();
  for (int index = 0; index < 3; ++index) {
    auto* button = new QPushButton(QLatin1String(kButtons[index].caption));
    button->setObjectName(QStringLiteral("bEmail%1").arg(index));
    button->setToolTip(QLatin1String(kButtons[index].toolTip));
    button->setAccessibleName(QLatin1String(kButtons[index].caption));
    button->setAutoDefault(false);
    row->addWidget(button);
    bEmail[index] = button;
  }
  bEmail[2]->setEnabled(false);
  column->addLayout(row);
  // A large font leaves less room for labels.
  for (int lines = 2; lines > 0; --lines) {
    if (around->totalMinimumHeightForWidth(TwipsToPixels(kWidth)) <= TwipsToPixels(kHeight)) return;
    for (FewLinesLabel* const label : findChildren<FewLinesLabel*>()) label->BoundLines(lines);
  }
}

// Two columns, in the order in which the keyboard goes through them.
void EmailPanel::LayOutBoxes(QGridLayout* grid) {
  for (int index = 0; index < 2; ++index) {
    auto* combo = new QComboBox;
    combo->setObjectName(QStringLiteral("ComboMail%1").arg(index));
    combo->setEditable(true);
    // Nothing gets into the list, or from the list into the text, but by the user's choice.
    combo->setInsertPolicy(QComboBox::NoInsert);
    combo->setCompleter(nullptr);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    KeepOneLine(combo->lineEdit());
    ComboMail[index] = combo;
  }
  for (int index = 0; index < 6; ++index) {
    auto* box = new QLineEdit;
    box->setObjectName(QStringLiteral("TMail%1").arg(index));
    KeepOneLine(box);
    TMail[index] = box;
  }
  TMail[5]->setEchoMode(QLineEdit::Password);
  TMail[5]->setStyleSheet(QStringLiteral("lineedit-password-character: %1").arg(int('*')));

  int place = 0;
  for (int index = 0; index < 2; ++index) {
    AddBox(grid, place++, ComboMail[index], QLatin1String(kComboLabels[index]));
    AddBox(grid, place++, TMail[index], QLatin1String(kBoxLabels[index]));
  }
  TMail[2]->setToolTip(QLatin1String(kServerTip));
  for (int index = 2; index < 6; ++index) AddBox(grid, place++, TMail[index], QLatin1String(kBoxLabels[index]));
  for (int column : {0, 1}) grid->setColumnStretch(column, 1);
}

void EmailPanel::AddBox(QGridLayout* grid, int place, QWidget* box, const QString& label) {
  constexpr int longest = 25;  // characters that are sure to find room on one line
  auto* caption = new FewLinesLabel(label, label.size() > longest ? 2 : 1);
  caption->setAlignment(Qt::AlignBottom);
  caption->setBuddy(box);
  box->setAccessibleName(label.chopped(1));
  box->setMinimumWidth(1);
  // The room that is left lies above each pair, and below the last one.
  const int row = place / 2 * 3;
  grid->setRowStretch(row, 1);
  grid->addWidget(caption, row + 1, place % 2);
  grid->addWidget(box, row + 2, place % 2);
  grid->setRowStretch(row + 3, 1);
}

void EmailPanel::LoadEmailDefaults() {
  const SettingsStore& store = program_.platform.settings;
  using namespace Settings;
  const QString recipients = Get(store, To10), senders = Get(store, From10);
  FillList(*ComboMail[0], recipients);
  FillList(*ComboMail[1], senders);
  ComboMail[1]->setEditText(StoredOr(store, DefEmail, MUC_.DefEmail()));
  TMail[1]->setText(StoredOr(store, DefName, MUC_.DefFrom()));
  TMail[2]->setText(StoredOr(store, DefServ, MUC_.DefServer()));
  TMail[4]->setText(Get(store, DefUser));
  // Without a stored password the box keeps what it held, and that is meant.
  const QString password = Get(store, DefPass);
  if (!password.isEmpty()) TMail[5]->setText(PasswordOf(password));
  if (!senders.isEmpty()) ComboMail[1]->setEditText(ItemsOf(*ComboMail[1]).first());
}

void EmailPanel::StartUp() {
  ComboMail[0]->setFocus();
  ForgetTalk();
  TStat->clear();
  TStat->setToolTip(QString());
  QString error;
  if (MUC_.StartUp(error) != MailUC::kGood) ShowStatus(u' ' + error);
}

void EmailPanel::ShowStatus(const QString& text) {
  TStat->setText(text);
  TStat->setCursorPosition(0);
  ShowTip();
}

void EmailPanel::ShowTip() {
  QStringList lines = {TStat->text().trimmed(), serverSaid_, serverClosed_};
  lines.removeAll(QString());
  TStat->setToolTip(PlainTip(lines.join(u'\n')));
}

void EmailPanel::ForgetTalk() {
  serverSaid_.clear();
  serverClosed_.clear();
}

void EmailPanel::OnEmailClick(int Index) {
  const BusyGuard guard(busy_);
  if (!guard) return;
  switch (Index) {
    case 0:
      Send();
      break;
    case 1:
      bEmail[2]->setEnabled(false);
      MUC_.CloseDown();
      emit HideRequested();
      break;
    default:
      if (MUC_.EmailAvailable()) {
        SaveEmailCopy();
      } else {
        program_.platform.dialogs.ShowMessage(window(), StringText(TextNumber::NoFinishedEmail));
      }
      break;
  }
}

// False when one of the three can't be right.
bool EmailPanel::ReadAddresses(QString& to, QString& from, QString& server) const {
  to = TrimBlanks(ComboMail[0]->currentText());
  from = TrimBlanks(ComboMail[1]->currentText());
  server = TrimBlanks(TMail[2]->text());
  return IsValidAddress(to) && IsValidAddress(from) && !TMail[2]->text().isEmpty();
}

void EmailPanel::Send() {
  Dialogs& dialogs = program_.platform.dialogs;
  if (!MUC_.IsOnline()) {
    dialogs.ShowMessage(window(), StringText(TextNumber::NotOnline));
    return;
  }
  bEmail[2]->setEnabled(false);
  QString to, from, server;
  if (!ReadAddresses(to, from, server)) {
    dialogs.ShowMessage(window(), StringText(TextNumber::EmailFieldsMissing));
    return;
  }
  ForgetTalk();
  ShowStatus(StringText(FixedText::PreparingEmail));
  MUC_.SetFromEmail(from);
  MUC_.SetToEmail(to);
  MUC_.SetServer(server);
  // A box that has been emptied leaves the earlier value in force, and that is meant.
  using Setter = void (MailUC::*)(const QString&);
  const std::pair<QLineEdit*, Setter> optional[] = {{TMail[0], &MailUC::SetToName},
                                                    {TMail[1], &MailUC::SetFromName},
                                                    {TMail[3], &MailUC::SetSubject},
                                                    {TMail[4], &MailUC::SetUserName},
                                                    {TMail[5], &MailUC::SetPassword}};
  for (const auto& [box, setter] : optional) {
    if (!box->text().isEmpty()) (MUC_.*setter)(box->text());
  }
  QString text = PrepareCurrentEmail(program_, MUC_);
  if (!text.isEmpty()) {
    ShowStatus(u' ' + text);
    return;
  }
  ShowStatus(StringText(FixedText::SendingEmail));
  // The window stands still while the server is looked for.
  TStat->repaint();
  QApplication::setOverrideCursor(Qt::WaitCursor);
  const int code = MUC_.ConnectAndSend(text);
  QApplication::restoreOverrideCursor();
  if (code != MailUC::kGood) ShowStatus(u' ' + text);
}

void EmailPanel::OnSendComplete(bool Success, const QByteArray& sErr) {
  if (Success) {
    ShowStatus(StringText(FixedText::EmailSent));
    if (window()->isVisible()) SaveEmailDefaults();
  } else {
    ShowStatus(u' ' + FromCodePage(sErr));
  }
  if (MUC_.EmailAvailable()) bEmail[2]->setEnabled(true);
}

// The lists in the boxes change only when they are loaded again.
void EmailPanel::SaveEmailDefaults() {
  SettingsStore& store = program_.platform.settings;
  using namespace Settings;
  Save(store, To10, RecentRecipients(ItemsOf(*ComboMail[0]), ComboMail[0]->currentText()));
  Save(store, From10, RecentSenders(ItemsOf(*ComboMail[1]), ComboMail[1]->currentText()));
  const std::pair<Key, QLineEdit*> texts[] = {{DefName, TMail[1]}, {DefServ, TMail[2]}, {DefUser, TMail[4]}};
  for (const auto& [key, box] : texts) {
    if (!box->text().isEmpty()) Save(store, key, box->text());
  }
  Save(store, DefPass, StoredPassword(TMail[5]->text()));
}

void EmailPanel::SaveEmailCopy() {
  const QString path = ShowSaveEmailDialog(program_, main_, QStringLiteral("Save Email"));
  // The desktop gave the keys to the dialog's owner, which may cover this window.
  window()->raise();
  window()->activateWindow();
  if (path.isEmpty()) return;
  if (program_.Files.FileExists(path)) {
    const MessageAnswer answer = program_.platform.dialogs.ShowMessage(window(), StringText(TextNumber::ReplaceFile),
                                                                       MessageIcon::None, MessageButtons::OkCancel);
    if (answer != MessageAnswer::Ok) return;
    program_.Files.DeleteFileIfAny(path);
  }
  program_.Files.WriteTextFile(path, MUC_.EmailFileText());
}
