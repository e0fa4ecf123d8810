#include "KeyPressQueue.h"

#include <optional>
#include <utility>

#include "HTMLTxtRange.h"

namespace {

// As the page told last; none where the range is gone or the page has never told.
std::optional<QPoint> PositionOf(const HTMLTxtRange* range) {
  if (!range || !range->offsetLeft() || !range->offsetTop()) return std::nullopt;
  return QPoint(*range->offsetLeft(), *range->offsetTop());
}

}  // namespace

KeyPressQueue::KeyPressQueue(QObject* parent) : QObject(parent) {
  patience_.setSingleShot(true);
  patience_.setInterval(patienceMs);
  connect(&patience_, &QTimer::timeout, this, &KeyPressQueue::RunOutOfPatience);
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
    position_ = PositionOf(range).value_or(position_);
    entry.position = position_;
  }
  if (number == overdue_ && number == number_) {
    overdue_ = 0;
    const QPoint told = std::exchange(position_, PositionOf(range).value_or(position_));
    if (position_ != told) emit KeyPress(QString(), position_);
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

void KeyPressQueue::SetPosition(QPoint position) {
  position_ = position;
  overdue_ = 0;
}

void KeyPressQueue::RunOutOfPatience() {
  const int last = number_;
  Flush();
  overdue_ = last;
}

void KeyPressQueue::Flush() {
  overdue_ = 0;
  for (Entry& entry : entries_) {
    if (!entry.answered) entry.position = position_;
    entry.answered = true;
  }
  Raise();
}
