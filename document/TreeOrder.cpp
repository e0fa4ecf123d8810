#include "TreeOrder.h"

#include <algorithm>
#include <cassert>
#include <iterator>

#include "Node.h"

namespace {

constexpr std::size_t longest = 1024;

}  // namespace

void TreeOrder::Adopt(OrderChunk& chunk) {
  chunk.elements = 0;
  for (const Node* node : chunk.nodes) {
    node->chunk_ = &chunk;
    chunk.elements += node->IsElement();
  }
}

void TreeOrder::Clear() {
  for (auto& chunk : chunks_)
    for (const Node* node : chunk->nodes) node->chunk_ = nullptr;
  chunks_.clear();
  numbered_ = false;
}

void TreeOrder::Rebuild(const Node* root) {
  Clear();
  for (const Node* node = root; node; node = NextInTree(node, root)) {
    if (chunks_.empty() || chunks_.back()->nodes.size() >= longest / 2)
      chunks_.push_back(std::make_unique<OrderChunk>());
    chunks_.back()->nodes.push_back(node);
  }
  for (auto& chunk : chunks_) Adopt(*chunk);
}

int TreeOrder::Place(const Node* node) {
  const auto& nodes = node->chunk_->nodes;
  return int(std::find(nodes.begin(), nodes.end(), node) - nodes.begin());
}

void TreeOrder::Renumber() const {
  if (numbered_) return;
  int elements = 0;
  for (std::size_t i = 0; i < chunks_.size(); ++i) {
    chunks_[i]->ordinal = int(i);
    chunks_[i]->firstElement = elements;
    elements += chunks_[i]->elements;
  }
  numbered_ = true;
}

void TreeOrder::SplitWhereTooLong(std::size_t index) {
  if (chunks_[index]->nodes.size() <= longest) return;
  const std::vector<const Node*> all = std::move(chunks_[index]->nodes);
  Chunks pieces;
  for (std::size_t from = 0; from < all.size(); from += longest / 2) {
    auto piece = std::make_unique<OrderChunk>();
    const auto to = std::min(all.size(), from + longest / 2);
    piece->nodes.assign(all.begin() + std::ptrdiff_t(from), all.begin() + std::ptrdiff_t(to));
    Adopt(*piece);
    pieces.push_back(std::move(piece));
  }
  const auto place = chunks_.erase(chunks_.begin() + std::ptrdiff_t(index));
  chunks_.insert(place, std::make_move_iterator(pieces.begin()), std::make_move_iterator(pieces.end()));
}

void TreeOrder::Insert(const Node* subtree) {
  std::vector<const Node*> added;
  for (const Node* node = subtree; node; node = NextInTree(node, subtree)) added.push_back(node);
  InsertBehind(PreviousInTree(subtree), added);
}

void TreeOrder::InsertAlone(const Node* node) {
  InsertBehind(PreviousInTree(node), {node});
}

void TreeOrder::InsertBehind(const Node* before, const std::vector<const Node*>& added) {
  Renumber();
  assert(before && before->chunk_);
  OrderChunk& chunk = *before->chunk_;
  int elements = 0;
  for (const Node* node : added) {
    node->chunk_ = &chunk;
    elements += node->IsElement();
  }
  chunk.nodes.insert(chunk.nodes.begin() + Place(before) + 1, added.begin(), added.end());
  chunk.elements += elements;
  SplitWhereTooLong(std::size_t(chunk.ordinal));
  numbered_ = false;
}

void TreeOrder::Remove(const Node* subtree) {
  std::size_t count = 0;
  for (const Node* node = subtree; node; node = NextInTree(node, subtree)) ++count;
  RemoveFrom(subtree, count);
}

void TreeOrder::RemoveAlone(const Node* node) {
  RemoveFrom(node, 1);
}

void TreeOrder::RemoveFrom(const Node* first, std::size_t count) {
  Renumber();
  std::size_t index = std::size_t(first->chunk_->ordinal);
  std::size_t place = std::size_t(Place(first));
  while (count > 0) {
    OrderChunk& chunk = *chunks_[index];
    const std::size_t taken = std::min(count, chunk.nodes.size() - place);
    const auto from = chunk.nodes.begin() + std::ptrdiff_t(place);
    for (auto it = from; it != from + std::ptrdiff_t(taken); ++it) {
      (*it)->chunk_ = nullptr;
      chunk.elements -= (*it)->IsElement();
    }
    chunk.nodes.erase(from, from + std::ptrdiff_t(taken));
    count -= taken;
    place = 0;
    ++index;
  }
  std::erase_if(chunks_, [](const auto& chunk) { return chunk->nodes.empty(); });
  numbered_ = false;
}

int TreeOrder::ElementCount() const {
  Renumber();
  return chunks_.empty() ? 0 : chunks_.back()->firstElement + chunks_.back()->elements;
}

int TreeOrder::ElementIndex(const Node* element) const {
  if (!element->chunk_) return -1;
  Renumber();
  int index = element->chunk_->firstElement;
  for (const Node* node : element->chunk_->nodes) {
    if (node == element) return index;
    index += node->IsElement();
  }
  assert(false);
  return -1;
}

const Node* TreeOrder::ElementAt(int index) const {
  if (index < 0 || index >= ElementCount()) return nullptr;
  const auto after = std::upper_bound(chunks_.begin(), chunks_.end(), index,
                                      [](int value, const auto& chunk) { return value < chunk->firstElement; });
  const OrderChunk& chunk = **(after - 1);
  int rest = index - chunk.firstElement;
  for (const Node* node : chunk.nodes)
    if (node->IsElement() && rest-- == 0) return node;
  assert(false);
  return nullptr;
}

bool TreeOrder::IsBefore(const Node* a, const Node* b) const {
  if (a->chunk_ != b->chunk_) {
    Renumber();
    return a->chunk_->ordinal < b->chunk_->ordinal;
  }
  for (const Node* node : a->chunk_->nodes) {
    if (node == a) return a != b;
    if (node == b) return false;
  }
  assert(false);
  return false;
}
