#include "TreeBuilder.h"

#include <cassert>

Node* TreeBuilder::DocumentType(const QString& name, const QString& publicId, const QString& systemId) {
  Node* const node = new Node(Node::Type::DocumentType);
  node->data_ = name;
  node->identifiers_ = {publicId, systemId};
  return node;
}

Node* TreeBuilder::Element(const Tag* tag, std::vector<Attribute> attributes) {
  Node* const node = new Node(Node::Type::Element);
  node->tag_ = tag;
  node->attributes_ = std::move(attributes);
  return node;
}

Node* TreeBuilder::Text(const QString& data) {
  Node* const node = new Node(Node::Type::Text);
  node->data_ = data;
  return node;
}

Node* TreeBuilder::Comment(const QString& data) {
  Node* const node = new Node(Node::Type::Comment);
  node->data_ = data;
  return node;
}

void TreeBuilder::Insert(Node* parent, Node* child, const Node* before) {
  assert(!parent->IsAttached() && !child->IsAttached());
  parent->Link(child, before);
}

void TreeBuilder::TakeOut(Node* node) {
  assert(!node->IsAttached());
  node->Unlink();
}

void TreeBuilder::AppendData(Node* text, const QString& data) {
  assert(!text->IsAttached());
  text->data_ += data;
}

void TreeBuilder::SetData(Node* node, const QString& data) {
  assert(!node->IsAttached());
  node->data_ = data;
}

void TreeBuilder::SetElement(Node* node, const Tag* tag, std::vector<Attribute> attributes) {
  assert(!node->IsAttached() && node->IsElement());
  node->tag_ = tag;
  node->attributes_ = std::move(attributes);
}

void TreeBuilder::SetIdentifiers(Node* documentType, const QString& publicId, const QString& systemId) {
  assert(!documentType->IsAttached());
  documentType->identifiers_ = {publicId, systemId};
}

void TreeBuilder::SetId(Node* node, NodeId id) {
  assert(!node->IsAttached());
  node->id_ = id;
}

void TreeBuilder::SetContent(Node* templateElement, Node* fragment) {
  assert(!templateElement->IsAttached());
  if (templateElement->content_) DestroyTree(templateElement->content_);
  templateElement->content_ = fragment;
}

Node* TreeBuilder::Detached(const Node* node) {
  return node && !node->IsAttached() ? Node::Own(node) : nullptr;
}
