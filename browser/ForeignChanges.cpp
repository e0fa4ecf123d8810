#include "ForeignChanges.h"

#include <QHash>
#include <QJsonArray>
#include <QSet>

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
      if (Node* parent = parked_.value(list.toArray().at(0).toInt())) Arrange(parent, list.toArray());
    for (const QJsonValue& list : lists)
      if (Node* parent = document_.FindNode(list.toArray().at(0).toInt())) Arrange(parent, list.toArray());
    for (Node* tree : parkedTrees_)
      if (!tree->IsAttached() && !tree->parent) document_.Discard(tree);

    for (const QJsonValue& entry : changes[QLatin1String("attributes")].toArray()) SetAttributes(entry.toArray());
    for (const QJsonValue& entry : changes[QLatin1String("data")].toArray()) {
      if (Node* node = document_.FindNode(entry.toArray().at(0).toInt())) SetData(node, entry.toArray().at(1).toString());
    }
  }

 private:
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
    for (Node* node = tree; node; node = NextInTree(node, tree)) parked_.insert(node->id, node);
    parkedTrees_.push_back(tree);
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

  Node* Build(const QJsonArray& tree) {
    int from = 0;
    return DecodeTree(tree, from, [this](NodeId id) -> Node* {
      Node* const node = Find(id);
      if (!node) return nullptr;
      if (node->IsAttached() || node->parent) Park(node);
      while (node->firstChild) Park(node->firstChild);
      return node;
    });
  }

  void Arrange(Node* parent, const QJsonArray& list) {
    if (parent->IsText()) return;
    Node* last = nullptr;  // the child placed last; building the next one may move anything else
    const auto next = [&] { return last && last->parent == parent ? last->next : last ? nullptr : parent->firstChild; };
    for (int i = 1; i < list.size(); ++i) {
      Node* node = nullptr;
      if (list.at(i).isDouble()) {
        const NodeId id = list.at(i).toInt();
        if (Node* there = next(); there && there->id == id) {
          last = there;
          continue;
        }
        node = Find(id);
        if (!node || node->Contains(parent)) continue;
        if (node->IsAttached() || node->parent) Park(node);
      } else {
        node = Build(list.at(i).toArray());
        if (!node) continue;
      }
      if (parent->IsAttached()) {
        document_.gateway().Insert(parent, next(), node, Gateway::Origin::Page);
      } else {
        parent->Link(node, next());
      }
      last = node;
    }
  }

  void SetAttributes(const QJsonArray& entry) {
    Node* const element = document_.FindNode(entry.at(0).toInt());
    if (!element || !element->IsElement()) return;
    element->attributes.clear();
    for (int i = 1; i + 1 < entry.size(); i += 2)
      element->attributes.push_back({entry.at(i).toString(), entry.at(i + 1).toString()});
  }

  // Only what differs is replaced, so that points in the unchanged parts keep their place.
  void SetData(Node* node, const QString& data) {
    if (node->IsElement()) return;
    const int shorter = std::min(node->Length(), int(data.size()));
    int head = 0;
    while (head < shorter && node->data[head] == data[head]) ++head;
    int tail = 0;
    while (tail < shorter - head && node->data[node->Length() - 1 - tail] == data[data.size() - 1 - tail]) ++tail;
    document_.gateway().ReplaceData(node, head, node->Length() - head - tail,
                                    data.mid(head, data.size() - head - tail), Gateway::Origin::Page);
  }

  HTMLDocument& document_;
  QHash<NodeId, Node*> parked_;  // every node of the trees that were taken out
  std::vector<Node*> parkedTrees_;
};

}  // namespace

void ApplyForeignChanges(HTMLDocument& document, const QJsonObject& changes) { Changes(document).Apply(changes); }
