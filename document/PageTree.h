// The tree of a page: its nodes by number and in order, and the ranges that keep their places in it.
// Everybody may read it; its content is changed by the Gateway alone, or loaded as a whole.
#pragma once

#include <QString>
#include <memory>
#include <unordered_set>
#include <utility>
#include <vector>

#include "BoundaryPoint.h"
#include "TreeLease.h"
#include "TreeOrder.h"

class HTMLDocument;
class LivePage;

class PageTree {
 public:
  // `document` is the face that handles of nodes ask for; null where there is none.
  explicit PageTree(HTMLDocument* document = nullptr);
  ~PageTree();
  PageTree(const PageTree&) = delete;
  PageTree& operator=(const PageTree&) = delete;

  HTMLDocument* document() const { return document_; }

  const Node* root() const { return root_; }
  const Node* htmlNode() const;  // null when the page has none, and so on
  const Node* headNode() const;
  const Node* bodyNode() const;
  const TreeOrder& order() const { return order_; }
  const Node* FindNode(NodeId id) const;                           // attached nodes only; null when there is none
  NodeId FreePageId() const { return NodeId(pageNodes_.size()); }  // from here on the page has never named a node

  // Takes a tree that was built by hand, with a document at its top, in place of the one that is there.
  void Load(Node* root);

  // The page that the user sees; null for none.
  LivePage* page() const { return page_; }
  void SetPage(LivePage* page) { page_ = page; }

  // Whether scripts run, so that NOSCRIPT holds text.
  bool scripting() const { return scripting_; }
  void SetScripting(bool on) {
    EndLease();
    scripting_ = on;
  }
  // The encoding that the page was loaded in, "" where it isn't known.
  const QString& encoding() const { return encoding_; }
  void SetEncoding(const QString& name) {
    EndLease();
    encoding_ = name;
  }
  // The mode of pages without a document type.
  bool quirks() const { return quirks_; }
  void SetQuirks(bool on) { quirks_ = on; }

  // Moves the points of the range along with every change until it is taken away. Part of reading: the page stays as
  // it is.
  void AddRange(LiveRange* range) const { ranges_.insert(range); }
  void RemoveRange(LiveRange* range) const { ranges_.erase(range); }
  template <typename Visit>
  void ForEachPoint(Visit visit) const {
    for (LiveRange* range : ranges_) {
      visit(range->start);
      visit(range->end);
    }
  }

  // For another thread, until something changes. A second one ends the first.
  std::shared_ptr<TreeLease> Lend() const;

 private:
  friend class Gateway;

  // In front of every change.
  void EndLease() const {
    if (lease_) std::exchange(lease_, nullptr)->End();
  }

  // Enters a subtree that has just been linked; takes one out of the order that is still linked; lets go of one that
  // is out, once nobody refers to a node of it.
  void Attach(Node* subtree);
  void Detach(Node* subtree);
  void Discard(Node* subtree);
  void AttachAlone(Node* element);  // what is inside it has been in the tree before
  void DetachAlone(Node* element);

  void Enter(Node* node);
  void Leave(const Node* node);
  void SweepDiscarded();

  HTMLDocument* document_;
  Node* root_;
  TreeOrder order_;
  LivePage* page_ = nullptr;
  bool scripting_ = false;
  bool quirks_ = true;
  QString encoding_;
  mutable std::unordered_set<LiveRange*> ranges_;
  std::vector<Node*> pageNodes_;         // by id
  std::vector<Node*> modelNodes_;        // by -id
  std::unordered_set<Node*> discarded_;  // detached trees that somebody may still refer to
  std::size_t sweepAt_ = 64;
  mutable std::shared_ptr<TreeLease> lease_;  // null for none
};
