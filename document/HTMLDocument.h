// A loaded page, as the DOM and its predecessors name it: title, colours, elements, selection and events.
// The model is complete and synchronous. Its tree is read through tree() and changed through gateway(), which keeps
// ranges and the live page in step; the classes named after DOM interfaces (HTMLElement, HTMLTxtRange, ...) are handles
// on it.
#pragma once

#include <QString>
#include <memory>

#include "Gateway.h"
#include "HTMLElement.h"
#include "HTMLSelectionObject.h"
#include "HTMLWindow2.h"

class HTMLDocumentEvents;

class HTMLDocument {
 public:
  HTMLDocument();
  ~HTMLDocument();
  HTMLDocument(const HTMLDocument&) = delete;
  HTMLDocument& operator=(const HTMLDocument&) = delete;

  HTMLElement documentElement() const;  // none in an empty document
  HTMLBodyElement body() const;         // none when the page has no BODY (a frameset, an image)
  HTMLElementCollection all() const;    // every element in document order; HTML is item 0
  QString title() const;                // text of TITLE; "" when there is none
  void setTitle(const QString& title);  // makes TITLE in HEAD where it is missing
  QString bgColor() const;              // "#RRGGBB", or "" when absent or invalid
  void setBgColor(const QString& color);
  HTMLSelectionObject& selection() { return *selection_; }
  HTMLWindow2& parentWindow() { return window_; }

  // Who hears of events; null for nobody.
  void ConnectEvents(HTMLDocumentEvents* events) { events_ = events; }

  // Makes `event` the current one and calls its handler. Returns what the handler returned; true without a handler.
  bool Dispatch(HTMLEventObj event);

  // Whether released keys go into the page's text.
  void TakeKeys(bool on);

  // The element that has a line round it on screen, which is no part of the page; none for no element.
  void Outline(const HTMLElement& element);

  PageTree& tree() { return tree_; }
  const PageTree& tree() const { return tree_; }
  Gateway& gateway() { return gateway_; }

  // A token that expires with the document; ranges hold it.
  std::weak_ptr<HTMLDocument*> Alive() const { return alive_; }

 private:
  PageTree tree_;
  Gateway gateway_;
  HTMLDocumentEvents* events_ = nullptr;
  std::shared_ptr<HTMLDocument*> alive_;
  std::unique_ptr<HTMLSelectionObject> selection_;
  HTMLWindow2 window_;
};
