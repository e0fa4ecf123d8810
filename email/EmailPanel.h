#pragma once

#include <QFrame>
#include <array>

class MailUC;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
struct Program;

// The panel "Send Page as HTML Email": eight boxes, a status line, and the buttons that send, close and save a copy.
// What it remembers between two runs is written only after a message has been sent. Its window must be 6780 by 5940
// twips at least.
class EmailPanel : public QFrame {
  Q_OBJECT

 public:
  // All must outlive the panel; `Busy` is the guard of the window around it, shared by all its panels. `main` owns
  // the file dialog and may be null.
  EmailPanel(Program& program, MailUC& MUC, bool& Busy, QWidget* main, QWidget* parent = nullptr);

  // Fills lists and boxes with what is remembered, else with the defaults of the mail account.
  void LoadEmailDefaults();
  // Empties the status line and readies the network; a failure is told there. The keys go to the first box.
  void StartUp();

  // 0 "To:", 1 "From:".
  std::array<QComboBox*, 2> ComboMail{};
  // 0 the recipient's name, 1 the sender's, 2 server, 3 subject, 4 user name, 5 password.
  std::array<QLineEdit*, 6> TMail{};
  // 0 "Send", 1 "Close", 2 "Save Copy".
  std::array<QPushButton*, 3> bEmail{};
  // Every text in it begins with a blank. Its tool tip tells more: the server's last words, and when it hung up.
  QLineEdit* TStat = nullptr;
  QLabel* Label6 = nullptr;

 signals:
  // The window around the panel is to be hidden.
  void HideRequested();

 private:
  void LayOut();
  void LayOutBoxes(QGridLayout* grid);
  void AddBox(QGridLayout* grid, int place, QWidget* box, const QString& label);
  void OnEmailClick(int Index);
  void Send();
  bool ReadAddresses(QString& to, QString& from, QString& server) const;
  void OnSendComplete(bool Success, const QByteArray& sErr);
  void SaveEmailDefaults();
  void SaveEmailCopy();
  void ShowStatus(const QString& text);
  void ShowTip();
  void ForgetTalk();

  Program& program_;
  MailUC& MUC_;
  bool& busy_;
  QWidget* const main_;
  QString serverSaid_, serverClosed_;
};
