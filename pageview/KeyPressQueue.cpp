#include "KeyPressQueue.h"

#include "HTMLTxtRange.h"

KeyPressQueue::KeyPressQueue(QObject* parent) : QObject(parent) {
  patience_.setSingleShot(true);
  patience_.setInterval(patienceMs);
  connect(&patience_, &QTimer::timeout, this, &KeyPressQueue::Flush);
}

void KeyPressQueue::Push(const QString& sKey, const std::shared_ptr<HTMLTxtRange>& range) {
  const int number = ++number_;
  entries_.push_back({number, sKey, false, false, {}});
  if (!patience_.isActive()) patience_.start();
  range->Measure([this, number, range = std::weak_ptr(range)] { Answered(number, range.lock().get()); });
}

void KeyPressQueue::PushNowhere() {
  entries_.push_back({++number_, QString(), true, true, {}});
  Raise();
}

void KeyPressQueue::Answered(int number, const HTMLTxtRange* range) {
  for (Entry& entry : entries_) {
    if (entry.number != number) continue;
    entry.answered = true;
    if (range && range->offsetLeft() && range->offsetTop()) position_ = {*range->offsetLeft(), *range->offsetTop()};
    entry.position = position_;
  }
  Raise();
  // A slow page that does answer is given its time anew.
  if (!entries_.empty()) patience_.start();
}

void KeyPressQueue::Raise() {
  while (!entries_.empty() && entries_.front().answered) {
    const Entry entry = entries_.front();
    entries_.pop_front();
    if (entries_.empty()) patience_.stop();
    emit KeyPress(entry.sKey, entry.nowhere ? QPoint(0, 0) : entry.position);
  }
}

void KeyPressQueue::Flush() {
  for (Entry& entry : entries_) {
    if (!entry.answered) entry.position = position_;
    entry.answered = true;
  }
  Raise();
}
