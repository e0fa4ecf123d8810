#include "ForeignChanges.h"

#include <QHash>
#include <QJsonArray>
#include <QSet>
#include <algorithm>

#include "Gateway.h"
#include "TreeBuilder.h"
#include "TreeCodec.h"

namespace {

class Changes {
 public:
  explicit Changes(Gateway& gateway) : gateway_(gateway), tree_(gateway.tree()) {}

  void Apply(const QJsonObject& changes) {
    const QJsonArray lists = changes[QLatin1String("children")].toArray();
    for (const QJsonValue& list : lists) TakeOut(list.toArray());
    // Parents that are themselves on the move get their children while they are out of the tree.
    for (const QJsonValue& list : lists)
      if (const Node* parent = parked_.value(IdOf(list))) Arrange(parent, list.toArray());
    for (const QJsonValue& list : lists)
      if (const Node* parent = tree_.FindNode(IdOf(list))) Arrange(parent, list.toArray());
    DiscardParked();

    for (const QJsonValue& entry : changes[QLatin1String("attributes")].toArray()) SetAttributes(entry.toArray());
    for (const QJsonValue& entry : changes[QLatin1String("data")].toArray())
      if (const Node* node = tree_.FindNode(IdOf(entry))) SetData(node, FromWire(entry.toArray().at(1).toString()));
  }

 private:
  static NodeId IdOf(const QJsonValue& entry) { return entry.toArray().at(0).toInt(); }

  const Node* Find(NodeId id) const {
    const Node* const node = tree_.FindNode(id);
    return node ? node : parked_.value(id);
  }

  Node* Park(const Node* tree) {
    Node* top = TreeBuilder::Detached(tree);
    if (top) {
      TreeBuilder::TakeOut(top);
    } else {
      top = gateway_.Take(tree);
    }
    for (const Node* node = top; node; node = NextInTree(node, top)) {
      parked_.insert(node->id(), node);
      taken_.insert(node);
    }
    return top;
  }

  // What was taken out and has found no new place. One tree may hold another by now, so the tops are looked for before
  // the first of them goes.
  void DiscardParked() {
    std::vector<Node*> tops;
    for (const Node* node : std::as_const(taken_))
      if (!node->IsAttached() && !node->parent()) tops.push_back(TreeBuilder::Detached(node));
    for (Node* tree : tops) gateway_.Discard(tree);
    parked_.clear();
    taken_.clear();
  }

  // Children that are no longer in their parent's list.
  void TakeOut(const QJsonArray& list) {
    const Node* const parent = Find(list.at(0).toInt());
    if (!parent) return;
    QSet<NodeId> stay;
    for (int i = 1; i < list.size(); ++i)
      if (list.at(i).isDouble()) stay.insert(list.at(i).toInt());
    for (const Node* child = parent->firstChild(); child;) {
      const Node* const next = child->next();
      if (!stay.contains(child->id())) Park(child);
      child = next;
    }
  }

  // A new subtree for `parent`; nodes in it that the model knows already are taken from where they are.
  Node* Build(const QJsonArray& tree, const Node* parent) {
    int from = 0;
    Node* const trial = DecodeTree(tree, from);
    if (!trial) return nullptr;  // before anything that is known has been touched
    DestroyTree(trial);
    from = 0;
    QSet<NodeId> used;
    Node* const built = DecodeTree(tree, from, [&](NodeId id) -> Node* {
      const Node* const node = Find(id);
      if (!node || node == tree_.root() || node->Contains(parent) || used.contains(id)) return nullptr;
      used.insert(id);
      Node* const known = Park(node);
      while (known->firstChild()) Park(known->firstChild());
      return known;
    });
    // An id that somebody else has already is no name for a node.
    QSet<NodeId> seen;
    for (const Node* node = built; node; node = NextInTree(node, built)) {
      const Node* const known = Find(node->id());
      if ((known && known != node) || seen.contains(node->id())) TreeBuilder::SetId(TreeBuilder::Detached(node), 0);
      seen.insert(node->id());
    }
    return built;
  }

  void Arrange(const Node* parent, const QJsonArray& list) {
    if (!parent->IsElement() && parent->type() != Node::Type::Document) return;
    if (arranged_.contains(parent)) return;
    arranged_.insert(parent);
    const Node* placed = nullptr;  // the last child that stands where it should
    for (int i = 1; i < list.size(); ++i) {
      Node* arriving = nullptr;
      if (list.at(i).isDouble()) {
        const Node* const node = Find(list.at(i).toInt());
        if (!node || node == tree_.root() || node->Contains(parent) || node == placed) continue;
        if (node == Following(parent, placed)) {
          placed = node;
          continue;
        }
        arriving = Park(node);
      } else {
        arriving = Build(list.at(i).toArray(), parent);
        if (!arriving) continue;
      }
      if (placed && placed->parent() != parent) placed = parent->lastChild();  // the new one has taken it along
      const Node* const before = Following(parent, placed);
      if (parent->IsAttached()) {
        gateway_.Insert(parent, before, arriving, Gateway::Origin::Page);
      } else {
        TreeBuilder::Insert(TreeBuilder::Detached(parent), arriving, before);
      }
      placed = arriving;
    }
  }

  static const Node* Following(const Node* parent, const Node* placed) {
    return placed ? placed->next() : parent->firstChild();
  }

  void SetAttributes(const QJsonArray& entry) {
    const Node* const element = tree_.FindNode(entry.at(0).toInt());
    if (!element || !element->IsElement()) return;
    std::vector<Attribute> attributes;
    for (int i = 1; i + 1 < entry.size(); i += 2)
      attributes.push_back({FromWire(entry.at(i).toString()), FromWire(entry.at(i + 1).toString())});
    gateway_.TakeAttributes(element, attributes);
  }

  // Only what differs is replaced, so that points in the unchanged parts keep their place.
  void SetData(const Node* node, const QString& data) {
    if (!node->IsText() && node->type() != Node::Type::Comment) return;
    const int shorter = std::min(node->Length(), int(data.size()));
    int head = 0;
    while (head < shorter && node->data()[head] == data[head]) ++head;
    int tail = 0;
    while (tail < shorter - head && node->data()[node->Length() - 1 - tail] == data[data.size() - 1 - tail]) ++tail;
    gateway_.ReplaceData(node, head, node->Length() - head - tail, data.mid(head, data.size() - head - tail),
                         Gateway::Origin::Page);
  }

  Gateway& gateway_;
  const PageTree& tree_;
  QHash<NodeId, const Node*> parked_;  // every node of the trees that were taken out, by id
  QSet<const Node*> taken_;            // the same, those without an id of their own too
  QSet<const Node*> arranged_;
};

}  // namespace

void ApplyForeignChanges(Gateway& gateway, const QJsonObject& changes) {
  Changes(gateway).Apply(changes);
}
