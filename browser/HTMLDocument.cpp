#include "HTMLDocument.h"

#include <algorithm>
#include <cassert>

#include "HTMLDocumentEvents.h"
#include "LegacyColor.h"

namespace {

Node* ChildElement(Node* parent, const Tag* tag) {
  for (Node* child = parent ? parent->firstChild : nullptr; child; child = child->next)
    if (child->IsElement(tag)) return child;
  return nullptr;
}

bool AnyReference(const Node* subtree) {
  for (const Node* node = subtree; node; node = NextInTree(node, subtree))
    if (node->references > 0) return true;
  return false;
}

}  // namespace

HTMLDocument::HTMLDocument()
    : root_(new Node(Node::Type::Document)), gateway_(*this), alive_(std::make_shared<HTMLDocument*>(this)) {
  root_->document = this;
  pageNodes_.resize(1);
  modelNodes_.resize(1);
  order_.Rebuild(root_);
  selection_ = std::make_unique<HTMLSelectionObject>(*this);
  AddRange(&window_.event_.caret_);
}

HTMLDocument::~HTMLDocument() {
  alive_.reset();
  selection_.reset();
  window_.event_ = {};
  order_.Clear();
  DestroyTree(root_);
  for (Node* tree : discarded_) DestroyTree(tree);
}

Node* HTMLDocument::htmlNode() const {
  for (Node* child = root_->firstChild; child; child = child->next)
    if (child->IsElement()) return child;
  return nullptr;
}

Node* HTMLDocument::bodyNode() const {
  return ChildElement(htmlNode(), Known().body);
}
Node* HTMLDocument::headNode() const {
  return ChildElement(htmlNode(), Known().head);
}
HTMLElement HTMLDocument::documentElement() const {
  return HTMLElement(htmlNode());
}
HTMLBodyElement HTMLDocument::body() const {
  return HTMLBodyElement(bodyNode());
}
HTMLElementCollection HTMLDocument::all() const {
  return HTMLElementCollection(this);
}

QString HTMLDocument::title() const {
  const Node* title = ChildElement(headNode(), Known().title);
  QString text;
  for (const Node* child = title ? title->firstChild : nullptr; child; child = child->next)
    if (child->IsText()) text += child->data;
  return text;
}

void HTMLDocument::setTitle(const QString& text) {
  Node* const head = headNode();
  if (!head) return;
  Node* title = ChildElement(head, Known().title);
  if (!title) {
    title = CreateElement(Known().title);
    gateway_.Insert(head, nullptr, title);
  }
  while (title->firstChild) gateway_.Remove(title->firstChild);
  if (!text.isEmpty()) gateway_.Insert(title, nullptr, CreateText(text));
}

QString HTMLDocument::bgColor() const {
  return body().getAttribute(QStringLiteral("bgcolor"));
}

void HTMLDocument::setBgColor(const QString& color) {
  if (Node* body = bodyNode()) WriteColor(gateway_, body, QStringLiteral("bgcolor"), color);
}

bool HTMLDocument::Dispatch(HTMLEventObj event) {
  window_.event_ = std::move(event);
  if (!events_) return true;
  switch (window_.event_.type()) {
    case EventType::Click:
      return events_->onclick();
    case EventType::DoubleClick:
      return events_->ondblclick();
    case EventType::ContextMenu:
      return events_->oncontextmenu();
    case EventType::KeyUp:
      events_->onkeyup();
      break;
    case EventType::MouseDown:
      events_->onmousedown();
      break;
    case EventType::MouseUp:
      events_->onmouseup();
      break;
    case EventType::MouseOut:
      events_->onmouseout();
      break;
    case EventType::MouseOver:
      events_->onmouseover();
      break;
  }
  return true;
}

Node* HTMLDocument::CreateElement(const Tag* tag) {
  Node* node = new Node(Node::Type::Element);
  node->tag = tag;
  return node;
}

Node* HTMLDocument::CreateText(const QString& data) {
  Node* node = new Node(Node::Type::Text);
  node->data = data;
  return node;
}

Node* HTMLDocument::CreateComment(const QString& data) {
  Node* node = new Node(Node::Type::Comment);
  node->data = data;
  return node;
}

Node* HTMLDocument::FindNode(NodeId id) const {
  const auto& nodes = id > 0 ? pageNodes_ : modelNodes_;
  const auto index = std::size_t(id > 0 ? id : -std::int64_t(id));
  return index < nodes.size() ? nodes[index] : nullptr;
}

void HTMLDocument::Enter(Node* node) {
  node->document = this;
  if (node->id == 0) {
    node->id = -NodeId(modelNodes_.size());
    modelNodes_.push_back(node);
    return;
  }
  auto& nodes = node->id > 0 ? pageNodes_ : modelNodes_;
  const auto index = std::size_t(node->id > 0 ? node->id : -node->id);
  if (index >= nodes.size()) nodes.resize(index + 1);
  nodes[index] = node;
}

void HTMLDocument::Leave(Node* node) {
  auto& nodes = node->id > 0 ? pageNodes_ : modelNodes_;
  nodes[std::size_t(node->id > 0 ? node->id : -node->id)] = nullptr;
}

void HTMLDocument::TreeBuilt() {
  for (Node* node = root_; node; node = NextInTree(node)) Enter(node);
  order_.Rebuild(root_);
}

void HTMLDocument::Attach(Node* subtree) {
  for (Node* node = subtree; node; node = NextInTree(node, subtree)) Enter(node);
  order_.Insert(subtree);
}

void HTMLDocument::Detach(Node* subtree) {
  for (Node* node = subtree; node; node = NextInTree(node, subtree)) Leave(node);
  order_.Remove(subtree);
}

void HTMLDocument::AttachAlone(Node* element) {
  Enter(element);
  order_.InsertAlone(element);
}

void HTMLDocument::DetachAlone(Node* element) {
  Leave(element);
  order_.RemoveAlone(element);
}

void HTMLDocument::Discard(Node* subtree) {
  if (!AnyReference(subtree)) {
    DestroyTree(subtree);
    return;
  }
  discarded_.push_back(subtree);
  if (discarded_.size() >= sweepAt_) SweepDiscarded();
}

void HTMLDocument::SweepDiscarded() {
  std::vector<Node*> kept;
  for (Node* tree : discarded_) {
    if (AnyReference(tree)) {
      kept.push_back(tree);
    } else {
      DestroyTree(tree);
    }
  }
  discarded_ = std::move(kept);
  sweepAt_ = std::max<std::size_t>(64, 2 * discarded_.size());
}
