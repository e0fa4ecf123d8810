// The document order of all attached nodes, so that "the element at index i", "the index of this element" and "which
// of two nodes comes first" stay cheap on pages of any size while the tree changes.
// The order is cut into chunks of bounded length: an insertion or removal touches one chunk, a question at most one
// chunk and the list of chunks.
#pragma once

#include <memory>
#include <vector>

class Node;

struct OrderChunk {
  std::vector<const Node*> nodes;
  int elements = 0;      // number of elements among `nodes`
  int ordinal = 0;       // place in the list of chunks
  int firstElement = 0;  // number of elements in all chunks before
};

class TreeOrder {
 public:
  void Rebuild(const Node* root);
  void Insert(const Node* subtree);    // already linked into its new place
  void Remove(const Node* subtree);    // still linked
  void InsertAlone(const Node* node);  // without what is inside it, which is in the order already
  void RemoveAlone(const Node* node);
  void Clear();

  int ElementCount() const;
  int ElementIndex(const Node* element) const;        // -1 for a detached node
  const Node* ElementAt(int index) const;             // null outside 0 .. ElementCount() - 1
  bool IsBefore(const Node* a, const Node* b) const;  // both attached

 private:
  using Chunks = std::vector<std::unique_ptr<OrderChunk>>;
  static void Adopt(OrderChunk& chunk);  // its nodes know it, and are counted
  static int Place(const Node* node);
  void InsertBehind(const Node* before, const std::vector<const Node*>& added);
  void RemoveFrom(const Node* first, std::size_t count);  // and those behind it
  void Renumber() const;
  void SplitWhereTooLong(std::size_t index);

  Chunks chunks_;
  mutable bool numbered_ = false;
};
