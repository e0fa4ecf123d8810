// Makes nodes that are in no page yet, and trees of them: for the parser, the codec and new content.
// Whoever makes a tree hands it to the Gateway or to PageTree::Load, or lets go of it by DestroyTree.
#pragma once

#include "Node.h"

class TreeBuilder {
 public:
  static Node* Document() { return new Node(Node::Type::Document); }
  static Node* DocumentType(const QString& name, const QString& publicId, const QString& systemId);
  static Node* Element(const Tag* tag, std::vector<Attribute> attributes = {});
  static Node* Text(const QString& data);
  static Node* Comment(const QString& data);
  static Node* Fragment() { return new Node(Node::Type::Fragment); }

  // Everything below is for nodes that are in no page.

  // Puts `child` before the child `before` of `parent`, or at its end.
  static void Insert(Node* parent, Node* child, const Node* before = nullptr);
  // Takes a node out of its tree.
  static void TakeOut(Node* node);

  static void AppendData(Node* text, const QString& data);
  static void SetData(Node* node, const QString& data);
  static void SetElement(Node* node, const Tag* tag, std::vector<Attribute> attributes);
  static void SetIdentifiers(Node* documentType, const QString& publicId, const QString& systemId);
  // The name under which the live page knows it; 0 for none.
  static void SetId(Node* node, NodeId id);
  // A TEMPLATE's content, a fragment; what was there is destroyed. Null for none.
  static void SetContent(Node* templateElement, Node* fragment);
  static Node* Bare(Node::Type type) { return new Node(type); }

  // The node itself, as one that may be changed, if it is in no page.
  static Node* Detached(const Node* node);
};
