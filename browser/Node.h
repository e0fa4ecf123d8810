// One node of the document model: an element, a text, a comment, a document type or a root.
// Nodes are linked like the DOM's and belong to their HTMLDocument; everything that changes an attached node goes
// through the Gateway. A node that is referred to from outside (NodeRef) outlives its removal from the tree and even
// its document, so that a stale reference is harmless.
#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

#include "Tag.h"

class HTMLDocument;

// Name of a node in the messages between model and live page: positive numbers are given by the page, negative ones
// here; 0 is none.
using NodeId = std::int32_t;

struct Attribute {
  QString name;  // as parsed: lower case for HTML elements
  QString value;
};

struct OrderChunk;

struct Node {
  enum class Type : std::uint8_t { Document, DocumentType, Element, Text, Comment, Fragment };

  explicit Node(Type nodeType) : type(nodeType) {}
  ~Node();
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;

  Type type;
  int references = 0;  // number of NodeRefs
  NodeId id = 0;
  const Tag* tag = nullptr;  // elements only
  HTMLDocument* document = nullptr;
  Node* parent = nullptr;
  Node* firstChild = nullptr;
  Node* lastChild = nullptr;
  Node* previous = nullptr;
  Node* next = nullptr;
  OrderChunk* chunk = nullptr;  // place in the document order; null while detached
  Node* content = nullptr;      // TEMPLATE only: the fragment with its content, no part of the tree
  QString data;                 // text and comments: the characters; document types: the name
  std::vector<Attribute> attributes;
  QStringList identifiers;  // document types: public and system identifier, where there are any

  bool IsElement() const { return type == Type::Element; }
  bool IsElement(const Tag* t) const { return tag == t; }
  bool IsText() const { return type == Type::Text; }
  bool IsAttached() const { return chunk != nullptr; }
  int Length() const { return int(data.size()); }

  const Attribute* FindAttribute(const QString& name) const;  // without regard to ASCII case; null when absent
  bool Contains(const Node* other) const;                     // itself included
  int Depth() const;
  int Index() const;  // among its parent's children, from 0

  // Linking without any bookkeeping; for detached trees and for the Gateway.
  void Link(Node* child, Node* before);
  void Unlink();
};

// Next and previous node in document order; null at the end. `root`, where given, bounds the walk to its subtree.
Node* NextInTree(const Node* node, const Node* root = nullptr);
Node* NextSkippingChildren(const Node* node, const Node* root = nullptr);
Node* PreviousInTree(const Node* node);
Node* LastDescendant(Node* node);  // the node itself when it has no children

// Deletes a detached tree; nodes that are still referred to survive, unlinked and without a document.
void DestroyTree(Node* root);

// Keeps a node's memory alive. Empty is none.
class NodeRef {
 public:
  NodeRef() = default;
  explicit NodeRef(Node* node) : node_(node) { Take(); }
  NodeRef(const NodeRef& other) : node_(other.node_) { Take(); }
  NodeRef(NodeRef&& other) noexcept : node_(other.node_) { other.node_ = nullptr; }
  NodeRef& operator=(NodeRef other) noexcept {
    std::swap(node_, other.node_);
    return *this;
  }
  ~NodeRef() { Drop(); }

  Node* get() const { return node_; }
  Node* operator->() const { return node_; }
  explicit operator bool() const { return node_ != nullptr; }
  bool operator==(const NodeRef&) const = default;

 private:
  void Take() {
    if (node_) ++node_->references;
  }
  void Drop();
  Node* node_ = nullptr;
};
