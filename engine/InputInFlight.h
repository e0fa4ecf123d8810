// What the user's hands have done to the page and the page has not yet reported back, in order. As the page takes its
// input in order, a report shows that whatever was handed over before it will not be reported any more.
#pragma once

#include <QEvent>
#include <deque>
#include <memory>
#include <vector>

class InputInFlight {
 public:
  enum class Kind { Press, Release, Key };  // the first two of a mouse button, the third a key's release

  struct Handed {
    Kind kind;
    int keyCode = 0;          // of a key that has one in KeyCodes.h
    bool isAnswered = false;  // the model has it already, and the report changes nothing
    std::unique_ptr<QEvent> event;
  };

  void Add(Handed handed) { handed_.push_back(std::move(handed)); }

  // The page reports a press; or that it has done with a release and the click that came of it.
  void MouseReported(Kind kind);
  // The page reports a key. Whether the model has to hear of it: not if it has already, nor if the key's release was
  // never handed to the page.
  bool KeyReported(int keyCode);

  // Whether the model may still hear of something that was done before this moment.
  bool IsWaiting() const;

  // Takes out what has to be done again in another page: what the model has not heard of, and a press that it has, for
  // the sake of its release.
  std::vector<std::unique_ptr<QEvent>> TakeUnanswered();
  // No more reports are to come of what the model has heard of.
  void ForgetAnswered();

 private:
  std::deque<Handed> handed_;
  std::unique_ptr<QEvent> pressed_;  // reported, while its release is not
};
