// Raises one KeyPress for each released key, in order, as soon as the page has told where the insertion point is. A
// page that takes longer than half a second isn't waited for: the last position known is told, and where nothing has
// come since, a KeyPress without a key tells the true one when the answer is there.
#pragma once

#include <QObject>
#include <QPoint>
#include <QString>
#include <QTimer>
#include <deque>
#include <memory>

class HTMLTxtRange;

class KeyPressQueue : public QObject {
  Q_OBJECT

 public:
  explicit KeyPressQueue(QObject* parent = nullptr);

  // A key that was released with `range` as insertion point; its position is asked for.
  void Push(const QString& sKey, const std::shared_ptr<HTMLTxtRange>& range);

  // A key that was released without an insertion point: position 0, 0.
  void PushNowhere();

  // Raises what is still waiting with the last position known, so that no old answer moves the caret later.
  void Flush();

  // The insertion point has been placed here, in pixels.
  void SetPosition(QPoint position);

 signals:
  void KeyPress(const QString& sKey, QPoint position);

 private:
  struct Entry {
    int number;
    QString sKey;
    bool answered;
    bool nowhere;
    QPoint position;
  };
  void Answered(int number, const HTMLTxtRange* range);
  void Raise();
  void RunOutOfPatience();

  static constexpr int patienceMs = 500;
  std::deque<Entry> entries_;
  int number_ = 0;
  int overdue_ = 0;  // the last key, where it was raised without its answer; 0 for none
  QPoint position_;
  QTimer patience_;
};
