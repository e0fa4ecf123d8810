// One node of the document model: an element, a text, a comment, a document type or a root.
// Nodes are linked like the DOM's, and everybody may read them. Of those in a page only the Gateway changes anything,
// so they are passed as `const Node*`; a `Node*` is in no page yet and belongs to whoever holds it, who makes it with
// TreeBuilder and hands it to the Gateway. A node that is referred to from outside (NodeRef) outlives its removal from
// the tree and even its document, so that a stale reference is harmless.
#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <utility>
#include <vector>

#include "Tag.h"

class PageTree;

// Name of a node in the messages between model and live page: positive numbers are given by the page, negative ones
// here; 0 is none.
using NodeId = std::int32_t;

struct Attribute {
  QString name;  // as parsed: lower case for HTML elements
  QString value;

  bool operator==(const Attribute&) const = default;
};

struct OrderChunk;

class Node {
 public:
  enum class Type : std::uint8_t { Document, DocumentType, Element, Text, Comment, Fragment };

  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;

  Type type() const { return type_; }
  NodeId id() const { return id_; }
  const Tag* tag() const { return tag_; }         // null for all but elements
  const PageTree* tree() const { return tree_; }  // whose node it is or was; null for one that never was in a page
  const Node* parent() const { return parent_; }
  const Node* firstChild() const { return firstChild_; }
  const Node* lastChild() const { return lastChild_; }
  const Node* previous() const { return previous_; }
  const Node* next() const { return next_; }
  const Node* content() const { return content_; }  // TEMPLATE only: the fragment with its content, no part of the tree
  const QString& data() const { return data_; }     // text and comments: the characters; document types: the name
  const std::vector<Attribute>& attributes() const { return attributes_; }
  const QStringList& identifiers() const {
    return identifiers_;
  }  // document types: public and system, where there are any

  bool IsElement() const { return type_ == Type::Element; }
  bool IsElement(const Tag* tag) const { return tag_ == tag; }
  bool IsText() const { return type_ == Type::Text; }
  bool IsAttached() const { return chunk_ != nullptr; }
  bool IsReferred() const { return references_ > 0; }
  int Length() const { return int(data_.size()); }

  const Attribute* FindAttribute(const QString& name) const;  // without regard to ASCII case; null when absent
  bool Contains(const Node* other) const;                     // itself included
  int Depth() const;
  int Index() const;  // among its parent's children, from 0

 private:
  friend class Gateway;
  friend class NodeRef;
  friend class PageTree;
  friend class TreeBuilder;
  friend class TreeOrder;
  friend void DestroyTree(Node* root);

  explicit Node(Type type) : type_(type) {}
  ~Node();

  // For those whose right to change it comes from elsewhere.
  static Node* Own(const Node* node) { return const_cast<Node*>(node); }

  // Linking without any bookkeeping.
  void Link(Node* child, const Node* before);
  void Unlink();

  Type type_;
  mutable int references_ = 0;  // number of NodeRefs
  NodeId id_ = 0;
  const Tag* tag_ = nullptr;
  PageTree* tree_ = nullptr;
  Node* parent_ = nullptr;
  Node* firstChild_ = nullptr;
  Node* lastChild_ = nullptr;
  Node* previous_ = nullptr;
  Node* next_ = nullptr;
  mutable OrderChunk* chunk_ = nullptr;  // place in the document order; null while detached
  Node* content_ = nullptr;
  QString data_;
  std::vector<Attribute> attributes_;
  QStringList identifiers_;
};

// Next and previous node in document order; null at the end. `root`, where given, bounds the walk to its subtree.
const Node* NextInTree(const Node* node, const Node* root = nullptr);
const Node* NextSkippingChildren(const Node* node, const Node* root = nullptr);
const Node* PreviousInTree(const Node* node);
const Node* LastDescendant(const Node* node);  // the node itself when it has no children

// Deletes a detached tree; nodes that are still referred to survive, unlinked and without a page.
void DestroyTree(Node* root);

// Keeps a node's memory alive. Empty is none.
class NodeRef {
 public:
  NodeRef() = default;
  explicit NodeRef(const Node* node) : node_(node) { Take(); }
  NodeRef(const NodeRef& other) : node_(other.node_) { Take(); }
  NodeRef(NodeRef&& other) noexcept : node_(std::exchange(other.node_, nullptr)) {}
  NodeRef& operator=(NodeRef other) noexcept {
    std::swap(node_, other.node_);
    return *this;
  }
  ~NodeRef() { Drop(); }

  const Node* get() const { return node_; }
  const Node* operator->() const { return node_; }
  explicit operator bool() const { return node_ != nullptr; }
  bool operator==(const NodeRef&) const = default;

 private:
  void Take() {
    if (node_) ++node_->references_;
  }
  void Drop();
  const Node* node_ = nullptr;
};
