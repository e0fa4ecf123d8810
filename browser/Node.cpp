#include "Node.h"

#include <cassert>

Node::~Node() {
  assert(references == 0);
}

const Attribute* Node::FindAttribute(const QString& name) const {
  for (const Attribute& attribute : attributes)
    if (attribute.name.compare(name, Qt::CaseInsensitive) == 0) return &attribute;
  return nullptr;
}

bool Node::Contains(const Node* other) const {
  for (; other; other = other->parent)
    if (other == this) return true;
  return false;
}

int Node::Depth() const {
  int depth = 0;
  for (const Node* n = parent; n; n = n->parent) ++depth;
  return depth;
}

int Node::Index() const {
  int index = 0;
  for (const Node* n = previous; n; n = n->previous) ++index;
  return index;
}

void Node::Link(Node* child, Node* before) {
  assert(!child->parent && (!before || before->parent == this));
  child->parent = this;
  child->next = before;
  child->previous = before ? before->previous : lastChild;
  (child->previous ? child->previous->next : firstChild) = child;
  (before ? before->previous : lastChild) = child;
}

void Node::Unlink() {
  if (!parent) return;
  (previous ? previous->next : parent->firstChild) = next;
  (next ? next->previous : parent->lastChild) = previous;
  parent = previous = next = nullptr;
}

Node* NextSkippingChildren(const Node* node, const Node* root) {
  for (; node && node != root; node = node->parent)
    if (node->next) return node->next;
  return nullptr;
}

Node* NextInTree(const Node* node, const Node* root) {
  return node->firstChild ? node->firstChild : NextSkippingChildren(node, root);
}

Node* LastDescendant(Node* node) {
  while (node->lastChild) node = node->lastChild;
  return node;
}

Node* PreviousInTree(const Node* node) {
  return node->previous ? LastDescendant(node->previous) : node->parent;
}

void DestroyTree(Node* root) {
  // Not recursive: a page may nest as deep as it likes.
  std::vector<Node*> stack{root};
  while (!stack.empty()) {
    Node* node = stack.back();
    stack.pop_back();
    for (Node* child = node->firstChild; child;) {
      Node* following = child->next;
      child->parent = child->previous = child->next = nullptr;
      stack.push_back(child);
      child = following;
    }
    if (node->content) stack.push_back(node->content);
    node->firstChild = node->lastChild = node->content = nullptr;
    node->document = nullptr;
    if (node->references == 0) delete node;
  }
}

void NodeRef::Drop() {
  if (node_ && --node_->references == 0 && !node_->document) delete node_;
}
