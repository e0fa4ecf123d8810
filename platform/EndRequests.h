// Hears that somebody outside wants the program to end: the system, a terminal that closes, or another program.
#pragma once

#include <QObject>
#include <memory>

class QSocketNotifier;

// SIGTERM, SIGINT and SIGHUP as a signal of Qt's, in the thread of the object. One that was switched off for the
// program stays so, and a second one of the same kind ends the process at once, for when the first one came to nothing.
// There is one such object at a time. On Windows it never tells anything: there an end comes as the end of the desktop.
class EndRequests : public QObject {
  Q_OBJECT

 public:
  EndRequests();
  ~EndRequests() override;

 signals:
  void Asked();

 private:
  std::unique_ptr<QSocketNotifier> notifier_;
};
