#include "InputInFlight.h"

#include <algorithm>

#include "KeyCodes.h"

void InputInFlight::MouseReported(Kind kind) {
  const auto reported =
      std::find_if(handed_.begin(), handed_.end(), [kind](const Handed& one) { return one.kind == kind; });
  if (reported == handed_.end()) return;
  pressed_ = kind == Kind::Press ? std::move(reported->event) : nullptr;
  handed_.erase(handed_.begin(), reported + 1);
}

bool InputInFlight::KeyReported(int keyCode) {
  const auto fits = [keyCode](const Handed& one) {
    return one.kind == Kind::Key && (one.keyCode == keyCode || one.keyCode == 0);
  };
  const auto reported = std::find_if(handed_.begin(), handed_.end(), fits);
  if (reported == handed_.end()) return false;
  const bool isNews = !reported->isAnswered;
  handed_.erase(handed_.begin(), reported + 1);
  return isNews;
}

bool InputInFlight::IsWaiting() const {
  return std::any_of(handed_.begin(), handed_.end(), [](const Handed& one) { return !one.isAnswered; });
}

std::vector<std::unique_ptr<QEvent>> InputInFlight::TakeUnanswered() {
  std::vector<std::unique_ptr<QEvent>> events;
  if (pressed_) events.push_back(std::move(pressed_));
  for (Handed& one : handed_)
    if (!one.isAnswered) events.push_back(std::move(one.event));
  handed_.clear();
  return events;
}

void InputInFlight::ForgetAnswered() {
  std::erase_if(handed_, [](const Handed& one) { return one.isAnswered; });
}
