#include "TreeOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "Gateway.h"
#include "RandomSeed.h"
#include "TreeBuilder.h"

namespace {

// The order as a plain list of all nodes.
std::vector<const Node*> PlainOrder(const Node* root) {
  std::vector<const Node*> nodes;
  for (const Node* node = root; node; node = NextInTree(node, root)) nodes.push_back(node);
  return nodes;
}

Node* MakeNode(std::mt19937& random) {
  return random() % 3 ? TreeBuilder::Element(Known().b) : TreeBuilder::Text("t");
}

Node* MakeTree(std::mt19937& random, int size) {
  Node* const top = TreeBuilder::Element(Known().b);
  std::vector<Node*> elements{top};
  while (--size > 0) {
    Node* const node = MakeNode(random);
    TreeBuilder::Insert(elements[random() % elements.size()], node);
    if (node->IsElement()) elements.push_back(node);
  }
  return top;
}

void ExpectSame(const TreeOrder& order, const std::vector<const Node*>& plain, std::mt19937& random) {
  int elements = 0;
  for (const Node* node : plain) elements += node->IsElement();
  ASSERT_EQ(order.ElementCount(), elements);
  ASSERT_EQ(order.ElementAt(elements), nullptr);
  ASSERT_EQ(order.ElementAt(-1), nullptr);
  int index = 0;
  for (const Node* node : plain) {
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
    Node* const root = TreeBuilder::Document();
    TreeBuilder::Insert(root, MakeTree(random, 1 + int(random() % 3000)));
    PageTree tree;
    tree.Load(root);
    Gateway gateway(tree);
    for (int step = 0; step < 60; ++step) {
      const std::vector<const Node*> plain = PlainOrder(root);
      const Node* const picked = plain[random() % plain.size()];
      if (random() % 2 && picked != root) {
        const NodeRef kept(picked);
        gateway.Remove(picked);
        EXPECT_EQ(tree.order().ElementIndex(picked), -1);
      } else if (picked->IsElement()) {
        const Node* before = picked->firstChild();
        while (before && random() % 3) before = before->next();
        const int sizes[] = {1, 2, 40, 700, 2500};
        gateway.Insert(picked, before, MakeTree(random, sizes[random() % 5]));
      }
      ExpectSame(tree.order(), PlainOrder(root), random);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

TEST(TreeOrder, EmptyOrder) {
  TreeOrder order;
  EXPECT_EQ(order.ElementCount(), 0);
  EXPECT_EQ(order.ElementAt(0), nullptr);
}

}  // namespace
