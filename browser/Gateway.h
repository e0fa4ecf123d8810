// The only way to change the tree of a document.
// Each change is applied to the model, moves every live range by the rules of the DOM standard, and, when it is the
// program's own, is told to the live page. A change that the page's scripts made is applied in the same way, but not
// told back.
#pragma once

#include "BoundaryPoint.h"
#include "TreeStep.h"

class HTMLDocument;

class Gateway {
 public:
  enum class Origin { Program, Page };

  explicit Gateway(HTMLDocument& document) : document_(document) {}

  // Puts a detached subtree before the child `before` of `parent`, or at its end. Nodes without an id get one.
  void Insert(Node* parent, Node* before, Node* subtree, Origin origin = Origin::Program);

  // Takes an attached subtree out. It is deleted unless somebody refers to one of its nodes.
  void Remove(Node* subtree, Origin origin = Origin::Program);

  // Takes a subtree out without deleting it, because it will be put in again elsewhere; only ever the page's doing.
  void Take(Node* subtree);

  // Puts a new element around siblings, or takes an element away and leaves what is in it. Ranges keep the text that
  // they span.
  void Wrap(Node* first, Node* last, Node* wrapper);
  void Unwrap(Node* element);

  // Nothing happens when nothing would change.
  void SetAttribute(Node* element, const QString& name, const QString& value, Origin origin = Origin::Program);
  void RemoveAttribute(Node* element, const QString& name, Origin origin = Origin::Program);

  // Text and comments: puts `data` in place of `count` UTF-16 units at `offset`.
  void ReplaceData(Node* node, int offset, int count, const QString& data, Origin origin = Origin::Program);

  // Cuts a text in two and returns the second half. 0 < offset < length.
  Node* SplitText(Node* text, int offset);

  // Makes one text of this one and the text behind it.
  void JoinWithNext(Node* text);

 private:
  // Moves every live range, and tells the live page what moves places.
  void Move(const TreeStep& step, Origin origin = Origin::Program);
  void TakeOut(Node* subtree, Origin origin);

  HTMLDocument& document_;
};
