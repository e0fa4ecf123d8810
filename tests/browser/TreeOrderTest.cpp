#include "TreeOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "Node.h"
#include "RandomSeed.h"

namespace {

// The order as a plain list of all nodes.
std::vector<Node*> PlainOrder(Node* root) {
  std::vector<Node*> nodes;
  for (Node* node = root; node; node = NextInTree(node, root)) nodes.push_back(node);
  return nodes;
}

Node* MakeNode(std::mt19937& random) {
  Node* const node = new Node(random() % 3 ? Node::Type::Element : Node::Type::Text);
  if (node->IsElement()) node->tag = Known().b;
  return node;
}

Node* MakeTree(std::mt19937& random, int size) {
  Node* const top = new Node(Node::Type::Element);
  top->tag = Known().b;
  std::vector<Node*> elements{top};
  while (--size > 0) {
    Node* const node = MakeNode(random);
    elements[random() % elements.size()]->Link(node, nullptr);
    if (node->IsElement()) elements.push_back(node);
  }
  return top;
}

void ExpectSame(const TreeOrder& order, const std::vector<Node*>& plain, std::mt19937& random) {
  int elements = 0;
  for (const Node* node : plain) elements += node->IsElement();
  ASSERT_EQ(order.ElementCount(), elements);
  ASSERT_EQ(order.ElementAt(elements), nullptr);
  ASSERT_EQ(order.ElementAt(-1), nullptr);
  int index = 0;
  for (Node* node : plain) {
    if (!node->IsElement()) continue;
    if (random() % 16 == 0) {
      ASSERT_EQ(order.ElementAt(index), node);
      ASSERT_EQ(order.ElementIndex(node), index);
    }
    ++index;
  }
  for (int round = 0; round < 50; ++round) {
    const std::size_t a = random() % plain.size();
    const std::size_t b = random() % plain.size();
    ASSERT_EQ(order.IsBefore(plain[a], plain[b]), a < b);
  }
}

TEST(TreeOrder, FollowsRandomEditsLikeAPlainList) {
  std::mt19937 random(RandomSeed("FollowsRandomEditsLikeAPlainList"));
  for (int round = 0; round < 6; ++round) {
    Node* const root = MakeTree(random, 1 + int(random() % 3000));
    TreeOrder order;
    order.Rebuild(root);
    for (int step = 0; step < 60; ++step) {
      const std::vector<Node*> plain = PlainOrder(root);
      Node* const picked = plain[random() % plain.size()];
      if (random() % 2 && picked != root) {
        order.Remove(picked);
        picked->Unlink();
        EXPECT_EQ(order.ElementIndex(picked), -1);
        DestroyTree(picked);
      } else if (picked->IsElement()) {
        Node* before = picked->firstChild;
        while (before && random() % 3) before = before->next;
        const int sizes[] = {1, 2, 40, 700, 2500};
        Node* const tree = MakeTree(random, sizes[random() % 5]);
        picked->Link(tree, before);
        order.Insert(tree);
      }
      ExpectSame(order, PlainOrder(root), random);
      if (testing::Test::HasFatalFailure()) return;
    }
    order.Clear();
    DestroyTree(root);
  }
}

TEST(TreeOrder, EmptyOrder) {
  TreeOrder order;
  EXPECT_EQ(order.ElementCount(), 0);
  EXPECT_EQ(order.ElementAt(0), nullptr);
}

}  // namespace
