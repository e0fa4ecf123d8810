// The window of a document: gives the event that is being dispatched.
#pragma once

#include <QPoint>
#include <optional>

#include "BoundaryPoint.h"
#include "HTMLElement.h"

enum class EventType { Click, DoubleClick, KeyUp, MouseDown, MouseUp, MouseOut, MouseOver, ContextMenu };

// What happened, as one message of the page tells it: everything that a handler may ask is in it.
class HTMLEventObj {
 public:
  HTMLEventObj() = default;
  explicit HTMLEventObj(EventType type) : type_(type) {}

  EventType type() const { return type_; }
  int clientX() const { return client_.x(); }  // pixels from the view's left edge
  int clientY() const { return client_.y(); }
  HTMLElement srcElement() const { return source_; }  // BODY where the page itself was hit
  int keyCode() const { return keyCode_; }            // virtual key code
  bool shiftKey() const { return shift_; }            // at the moment of the event
  int button() const { return button_; }              // 1 left, 2 right, 4 middle, 0 none

  // The place in the text nearest to the mouse, and its left and top in the view; none where the page has no answer.
  const BoundaryPoint& caret() const { return caret_.start; }
  std::optional<QPoint> caretPosition() const { return caretPosition_; }

  HTMLEventObj& At(int x, int y) { return client_ = {x, y}, *this; }
  HTMLEventObj& On(HTMLElement source) { return source_ = std::move(source), *this; }
  HTMLEventObj& Key(int code, bool shift) { return keyCode_ = code, shift_ = shift, *this; }
  HTMLEventObj& Button(int button) { return button_ = button, *this; }
  HTMLEventObj& Caret(const BoundaryPoint& point, std::optional<QPoint> position) {
    caret_ = {point, point};
    caretPosition_ = position;
    return *this;
  }

 private:
  friend class HTMLDocument;
  EventType type_ = EventType::MouseOver;
  QPoint client_;
  HTMLElement source_;
  int keyCode_ = 0;
  bool shift_ = false;
  int button_ = 0;
  LiveRange caret_;  // live while the event is the current one
  std::optional<QPoint> caretPosition_;
};

class HTMLWindow2 {
 public:
  const HTMLEventObj& event() const { return event_; }

 private:
  friend class HTMLDocument;
  HTMLEventObj event_;
};
