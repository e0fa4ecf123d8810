#include "PageTree.h"

#include <algorithm>
#include <cassert>

namespace {

const Node* ChildElement(const Node* parent, const Tag* tag) {
  for (const Node* child = parent ? parent->firstChild() : nullptr; child; child = child->next())
    if (child->IsElement(tag)) return child;
  return nullptr;
}

bool AnyReference(const Node* subtree) {
  for (const Node* node = subtree; node; node = NextInTree(node, subtree))
    if (node->IsReferred()) return true;
  return false;
}

}  // namespace

PageTree::PageTree(HTMLDocument* document) : document_(document), root_(new Node(Node::Type::Document)) {
  pageNodes_.resize(1);
  modelNodes_.resize(1);
  root_->tree_ = this;
  order_.Rebuild(root_);
}

PageTree::~PageTree() {
  EndLease();
  order_.Clear();
  DestroyTree(root_);
  for (Node* tree : discarded_) DestroyTree(tree);
}

std::shared_ptr<TreeLease> PageTree::Lend() const {
  EndLease();
  lease_ = std::make_shared<TreeLease>(*this);
  return lease_;
}

const Node* PageTree::htmlNode() const {
  for (const Node* child = root_->firstChild(); child; child = child->next())
    if (child->IsElement()) return child;
  return nullptr;
}

const Node* PageTree::headNode() const {
  return ChildElement(htmlNode(), Known().head);
}

const Node* PageTree::bodyNode() const {
  return ChildElement(htmlNode(), Known().body);
}

const Node* PageTree::FindNode(NodeId id) const {
  const auto& nodes = id > 0 ? pageNodes_ : modelNodes_;
  const auto index = std::size_t(id > 0 ? id : -std::int64_t(id));
  return index < nodes.size() ? nodes[index] : nullptr;
}

void PageTree::Load(Node* root) {
  assert(root->type() == Node::Type::Document && !root->IsAttached());
  EndLease();
  order_.Clear();
  DestroyTree(root_);
  root_ = root;
  pageNodes_.assign(1, nullptr);
  modelNodes_.assign(1, nullptr);
  for (const Node* node = root_; node; node = NextInTree(node)) Enter(Node::Own(node));
  order_.Rebuild(root_);
}

void PageTree::Enter(Node* node) {
  node->tree_ = this;
  if (node->id_ == 0) {
    node->id_ = -NodeId(modelNodes_.size());
    modelNodes_.push_back(node);
    return;
  }
  auto& nodes = node->id_ > 0 ? pageNodes_ : modelNodes_;
  const auto index = std::size_t(node->id_ > 0 ? node->id_ : -node->id_);
  if (index >= nodes.size()) nodes.resize(index + 1);
  nodes[index] = node;
}

void PageTree::Leave(const Node* node) {
  auto& nodes = node->id_ > 0 ? pageNodes_ : modelNodes_;
  nodes[std::size_t(node->id_ > 0 ? node->id_ : -node->id_)] = nullptr;
}

void PageTree::Attach(Node* subtree) {
  discarded_.erase(subtree);
  for (const Node* node = subtree; node; node = NextInTree(node, subtree)) Enter(Node::Own(node));
  order_.Insert(subtree);
}

void PageTree::Detach(Node* subtree) {
  for (const Node* node = subtree; node; node = NextInTree(node, subtree)) Leave(node);
  order_.Remove(subtree);
}

void PageTree::AttachAlone(Node* element) {
  discarded_.erase(element);
  Enter(element);
  order_.InsertAlone(element);
}

void PageTree::DetachAlone(Node* element) {
  Leave(element);
  order_.RemoveAlone(element);
}

void PageTree::Discard(Node* subtree) {
  if (!AnyReference(subtree)) {
    DestroyTree(subtree);
    return;
  }
  discarded_.insert(subtree);
  if (discarded_.size() >= sweepAt_) SweepDiscarded();
}

void PageTree::SweepDiscarded() {
  for (auto it = discarded_.begin(); it != discarded_.end();) {
    if (AnyReference(*it)) {
      ++it;
    } else {
      DestroyTree(*it);
      it = discarded_.erase(it);
    }
  }
  sweepAt_ = std::max<std::size_t>(64, 2 * discarded_.size());
}
