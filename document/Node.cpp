#include "Node.h"

#include <cassert>

Node::~Node() {
  assert(references_ == 0);
}

const Attribute* Node::FindAttribute(const QString& name) const {
  for (const Attribute& attribute : attributes_)
    if (attribute.name.compare(name, Qt::CaseInsensitive) == 0) return &attribute;
  return nullptr;
}

bool Node::Contains(const Node* other) const {
  for (; other; other = other->parent_)
    if (other == this) return true;
  return false;
}

int Node::Depth() const {
  int depth = 0;
  for (const Node* n = parent_; n; n = n->parent_) ++depth;
  return depth;
}

int Node::Index() const {
  int index = 0;
  for (const Node* n = previous_; n; n = n->previous_) ++index;
  return index;
}

void Node::Link(Node* child, const Node* before) {
  assert(!child->parent_ && (!before || before->parent_ == this));
  child->parent_ = this;
  child->next_ = Own(before);
  child->previous_ = before ? before->previous_ : lastChild_;
  (child->previous_ ? child->previous_->next_ : firstChild_) = child;
  (before ? Own(before)->previous_ : lastChild_) = child;
}

void Node::Unlink() {
  if (!parent_) return;
  (previous_ ? previous_->next_ : parent_->firstChild_) = next_;
  (next_ ? next_->previous_ : parent_->lastChild_) = previous_;
  parent_ = previous_ = next_ = nullptr;
}

const Node* NextSkippingChildren(const Node* node, const Node* root) {
  for (; node && node != root; node = node->parent())
    if (node->next()) return node->next();
  return nullptr;
}

const Node* NextInTree(const Node* node, const Node* root) {
  return node->firstChild() ? node->firstChild() : NextSkippingChildren(node, root);
}

const Node* LastDescendant(const Node* node) {
  while (node->lastChild()) node = node->lastChild();
  return node;
}

const Node* PreviousInTree(const Node* node) {
  return node->previous() ? LastDescendant(node->previous()) : node->parent();
}

void DestroyTree(Node* root) {
  // Not recursive: a page may nest as deep as it likes.
  std::vector<Node*> stack{root};
  while (!stack.empty()) {
    Node* const node = stack.back();
    stack.pop_back();
    for (Node* child = node->firstChild_; child;) {
      Node* const following = child->next_;
      child->parent_ = child->previous_ = child->next_ = nullptr;
      stack.push_back(child);
      child = following;
    }
    if (node->content_) stack.push_back(node->content_);
    node->firstChild_ = node->lastChild_ = node->content_ = nullptr;
    node->tree_ = nullptr;
    if (node->references_ == 0) delete node;
  }
}

void NodeRef::Drop() {
  if (node_ && --node_->references_ == 0 && !node_->tree_) delete node_;
}
