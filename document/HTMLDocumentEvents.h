// The events of a document that the page view listens to. What onclick, ondblclick and oncontextmenu return would
// cancel the browser's own action when false; the live page cancels those actions by itself, as it can't wait.
#pragma once

class HTMLDocumentEvents {
 public:
  virtual ~HTMLDocumentEvents() = default;
  virtual bool onclick() = 0;
  virtual bool ondblclick() = 0;
  virtual void onkeyup() = 0;
  virtual void onmousedown() = 0;
  virtual void onmouseup() = 0;
  virtual void onmouseout() = 0;
  virtual void onmouseover() = 0;
  virtual bool oncontextmenu() = 0;
};
