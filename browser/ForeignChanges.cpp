#include "ForeignChanges.h"

#include <QHash>
#include <QJsonArray>
#include <QSet>
#include <algorithm>

#include "HTMLDocument.h"
#include "TreeCodec.h"

namespace {

class Changes {
 public:
  explicit Changes(HTMLDocument& document) : document_(document) {}

  void Apply(const QJsonObject& changes) {
    const QJsonArray lists = changes[QLatin1String("children")].toArray();
    for (const QJsonValue& list : lists) TakeOut(list.toArray());
    // Parents that are themselves on the move get their children while they are out of the tree.
    for (const QJsonValue& list : lists)
      if (Node* parent = parked_.value(IdOf(list))) Arrange(parent, list.toArray());
    for (const QJsonValue& list : lists)
      if (Node* parent = document_.FindNode(IdOf(list))) Arrange(parent, list.toArray());
    DiscardParked();

    for (const QJsonValue& entry : changes[QLatin1String("attributes")].toArray()) SetAttributes(entry.toArray());
    for (const QJsonValue& entry : changes[QLatin1String("data")].toArray())
      if (Node* node = document_.FindNode(IdOf(entry))) SetData(node, FromWire(entry.toArray().at(1).toString()));
  }

 private:
  static NodeId IdOf(const QJsonValue& entry) { return entry.toArray().at(0).toInt(); }

  Node* Find(NodeId id) const {
    Node* const node = document_.FindNode(id);
    return node ? node : parked_.value(id);
  }

  void Park(Node* tree) {
    if (tree->IsAttached()) {
      document_.gateway().Take(tree);
    } else {
      tree->Unlink();
    }
    for (Node* node = tree; node; node = NextInTree(node, tree)) {
      parked_.insert(node->id, node);
      taken_.insert(node);
    }
  }

  // What was taken out and has found no new place. One tree may hold another by now, so the tops are looked for before
  // the first of them goes.
  void DiscardParked() {
    std::vector<Node*> tops;
    for (Node* node : std::as_const(taken_))
      if (!node->IsAttached() && !node->parent) tops.push_back(node);
    for (Node* tree : tops) document_.Discard(tree);
    parked_.clear();
    taken_.clear();
  }

  // Children that are no longer in their parent's list.
  void TakeOut(const QJsonArray& list) {
    Node* const parent = Find(list.at(0).toInt());
    if (!parent) return;
    QSet<NodeId> stay;
    for (int i = 1; i < list.size(); ++i)
      if (list.at(i).isDouble()) stay.insert(list.at(i).toInt());
    for (Node* child = parent->firstChild; child;) {
      Node* const next = child->next;
      if (!stay.contains(child->id)) Park(child);
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
      Node* const node = Find(id);
      if (!node || node == document_.root() || node->Contains(parent) || used.contains(id)) return nullptr;
      used.insert(id);
      Park(node);
      while (node->firstChild) Park(node->firstChild);
      return node;
    });
    // An id that somebody else has already is no name for a node.
    QSet<NodeId> seen;
    for (Node* node = built; node; node = NextInTree(node, built)) {
      const Node* const known = Find(node->id);
      if ((known && known != node) || seen.contains(node->id)) node->id = 0;
      seen.insert(node->id);
    }
    return built;
  }

  void Arrange(Node* parent, const QJsonArray& list) {
    if (!parent->IsElement() && parent->type != Node::Type::Document) return;
    if (arranged_.contains(parent)) return;
    arranged_.insert(parent);
    Node* placed = nullptr;  // the last child that stands where it should
    for (int i = 1; i < list.size(); ++i) {
      Node* node = nullptr;
      if (list.at(i).isDouble()) {
        node = Find(list.at(i).toInt());
        if (!node || node == document_.root() || node->Contains(parent) || node == placed) continue;
        if (node == Following(parent, placed)) {
          placed = node;
          continue;
        }
        Park(node);
      } else {
        node = Build(list.at(i).toArray(), parent);
        if (!node) continue;
      }
      if (placed && placed->parent != parent) placed = parent->lastChild;  // the new one has taken it along
      Node* const before = Following(parent, placed);
      if (parent->IsAttached()) {
        document_.gateway().Insert(parent, before, node, Gateway::Origin::Page);
      } else {
        parent->Link(node, before);
      }
      placed = node;
    }
  }

  static Node* Following(const Node* parent, const Node* placed) { return placed ? placed->next : parent->firstChild; }

  void SetAttributes(const QJsonArray& entry) {
    Node* const element = document_.FindNode(entry.at(0).toInt());
    if (!element || !element->IsElement()) return;
    element->attributes.clear();
    for (int i = 1; i + 1 < entry.size(); i += 2)
      element->attributes.push_back({FromWire(entry.at(i).toString()), FromWire(entry.at(i + 1).toString())});
  }

  // Only what differs is replaced, so that points in the unchanged parts keep their place.
  void SetData(Node* node, const QString& data) {
    if (!node->IsText() && node->type != Node::Type::Comment) return;
    const int shorter = std::min(node->Length(), int(data.size()));
    int head = 0;
    while (head < shorter && node->data[head] == data[head]) ++head;
    int tail = 0;
    while (tail < shorter - head && node->data[node->Length() - 1 - tail] == data[data.size() - 1 - tail]) ++tail;
    document_.gateway().ReplaceData(node, head, node->Length() - head - tail, data.mid(head, data.size() - head - tail),
                                    Gateway::Origin::Page);
  }

  HTMLDocument& document_;
  QHash<NodeId, Node*> parked_;  // every node of the trees that were taken out, by id
  QSet<Node*> taken_;            // the same, those without an id of their own too
  QSet<const Node*> arranged_;
};

}  // namespace

void ApplyForeignChanges(HTMLDocument& document, const QJsonObject& changes) {
  Changes(document).Apply(changes);
}
