// A loaded page: its tree, its ranges, its selection and its events.
// The model is complete and synchronous. Everything that changes it goes through gateway(), which keeps ranges and the
// live page in step; the classes named after DOM interfaces (HTMLElement, HTMLTxtRange, ...) are handles on it.
#pragma once

#include <QString>
#include <memory>
#include <unordered_set>
#include <vector>

#include "Gateway.h"
#include "HTMLElement.h"
#include "HTMLSelectionObject.h"
#include "HTMLWindow2.h"
#include "TreeOrder.h"

class HTMLDocumentEvents;
class LivePage;

class HTMLDocument {
 public:
  HTMLDocument();
  ~HTMLDocument();
  HTMLDocument(const HTMLDocument&) = delete;
  HTMLDocument& operator=(const HTMLDocument&) = delete;

  // The page, as the DOM and its predecessors name it.
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

  // The model's inside, for the rest of this folder.
  Node* root() const { return root_; }
  Node* htmlNode() const;
  Node* bodyNode() const;
  Node* headNode() const;
  Gateway& gateway() { return gateway_; }
  const TreeOrder& order() const { return order_; }
  LivePage* page() const { return page_; }
  void SetPage(LivePage* page) { page_ = page; }
  bool scripting() const { return scripting_; }
  void SetScripting(bool on) { scripting_ = on; }
  const QString& encoding() const { return encoding_; }  // that the page was loaded in, "" where it isn't known
  void SetEncoding(const QString& name) { encoding_ = name; }
  bool quirks() const { return quirks_; }
  void SetQuirks(bool on) { quirks_ = on; }

  Node* CreateElement(const Tag* tag);
  Node* CreateText(const QString& data);
  Node* CreateComment(const QString& data);
  Node* FindNode(NodeId id) const;  // attached nodes only; null when there is none

  // The tree was built by hand under root(): numbers the nodes and sets up the order.
  void TreeBuilt();

  // For the Gateway: enters a subtree that has just been linked, takes one out of the order, lets go of it.
  void Attach(Node* subtree);
  void Detach(Node* subtree);
  void Discard(Node* subtree);
  void AttachAlone(Node* element);  // what is inside it has been in the tree before
  void DetachAlone(Node* element);

  void AddRange(LiveRange* range) { ranges_.insert(range); }
  void RemoveRange(LiveRange* range) { ranges_.erase(range); }
  template <typename Change>
  void ForEachPoint(Change change) {
    for (LiveRange* range : ranges_) {
      change(range->start);
      change(range->end);
    }
  }

  // A token that expires with the document; ranges hold it.
  std::weak_ptr<HTMLDocument*> Alive() const { return alive_; }

 private:
  void Enter(Node* node);
  void Leave(Node* node);
  void SweepDiscarded();

  Node* root_;
  TreeOrder order_;
  Gateway gateway_;
  LivePage* page_ = nullptr;
  HTMLDocumentEvents* events_ = nullptr;
  bool scripting_ = false;
  bool quirks_ = true;
  QString encoding_;
  std::unordered_set<LiveRange*> ranges_;
  std::vector<Node*> pageNodes_;   // by id
  std::vector<Node*> modelNodes_;  // by -id
  std::vector<Node*> discarded_;   // detached trees that somebody may still refer to
  std::size_t sweepAt_ = 64;
  std::shared_ptr<HTMLDocument*> alive_;
  std::unique_ptr<HTMLSelectionObject> selection_;
  HTMLWindow2 window_;
};
