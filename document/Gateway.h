// The only way to change the tree of a page.
// Each change is a TreeStep: it is played on the model, moves every live range by the rules of the DOM standard
// (https://www.w3.org/TR/dom/#concept-live-range), and, when it is the program's own, is told to the live page. A
// change that the page's scripts made is played in the same way, but not told back.
#pragma once

#include "PageTree.h"
#include "TreeStep.h"

class StepListener;

class Gateway {
 public:
  enum class Origin { Program, Page };

  explicit Gateway(PageTree& tree) : tree_(tree) {}
  const PageTree& tree() const { return tree_; }

  // Puts a detached subtree, which becomes the page's, before the child `before` of `parent`, or at its end. Nodes
  // without an id get one. https://www.w3.org/TR/dom/#concept-node-insert
  void Insert(const Node* parent, const Node* before, Node* subtree, Origin origin = Origin::Program);

  // Takes an attached subtree out. It is deleted unless somebody refers to one of its nodes.
  // https://www.w3.org/TR/dom/#concept-node-remove
  void Remove(const Node* subtree);

  // The same by the page, and the subtree isn't deleted, because it will be put in again elsewhere or discarded.
  Node* Take(const Node* subtree);
  void Discard(Node* subtree);

  // Puts a new element around siblings, or takes an element away and leaves what is in it. Ranges keep the text that
  // they span. Nothing in the DOM standard does that in one.
  void Wrap(const Node* first, const Node* last, Node* wrapper);
  void Unwrap(const Node* element);

  // Nothing happens when nothing would change. https://www.w3.org/TR/dom/#concept-element-attributes-set-value and
  // https://www.w3.org/TR/dom/#concept-element-attributes-remove
  void SetAttribute(const Node* element, const QString& name, const QString& value);
  void RemoveAttribute(const Node* element, const QString& name);

  // By the page: these are the element's attributes now, in this order.
  void TakeAttributes(const Node* element, const std::vector<Attribute>& attributes);

  // Text and comments: puts `data` in place of `count` UTF-16 units at `offset`.
  // https://www.w3.org/TR/dom/#concept-cd-replace
  void ReplaceData(const Node* node, int offset, int count, const QString& data, Origin origin = Origin::Program);

  // Cuts a text in two and returns the second half. 0 < offset < length.
  // https://www.w3.org/TR/dom/#concept-text-split
  const Node* SplitText(const Node* text, int offset);

  // Makes one text of this one and the text behind it, as https://www.w3.org/TR/dom/#dom-node-normalize does.
  void JoinWithNext(const Node* text);

  // Plays a step that fits the tree as it is, such as the inverse of the one that was played last.
  void Play(TreeStep step);

  // Who hears of every step from now on; null for nobody.
  void SetListener(StepListener* listener) { listener_ = listener; }

 private:
  void Carry(TreeStep step, Origin origin = Origin::Program);
  void Do(ReplaceStep& step);
  void Do(SplitStep& step);
  void Do(JoinStep& step);
  void Do(InsertStep& step);
  void Do(RemoveStep& step);
  void Do(WrapStep& step);
  void Do(UnwrapStep& step);
  void Do(AttributeStep& step);

  // The node of that number, as one that may be changed; null for 0.
  Node* At(NodeId id) const;
  void MoveRanges(const TreeStep& step);

  PageTree& tree_;
  StepListener* listener_ = nullptr;
};

// Hears of each step once it has been played, its node included, and may keep it.
class StepListener {
 public:
  virtual ~StepListener() = default;
  virtual void Played(TreeStep&& step, Gateway::Origin origin) = 0;
};
