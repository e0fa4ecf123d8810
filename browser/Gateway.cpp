#include "Gateway.h"

#include <cassert>

#include "HTMLDocument.h"
#include "LivePage.h"
#include "TreeStep.h"

namespace {

NodeId IdOf(const Node* node) {
  return node ? node->id : 0;
}

NodePlace PlaceOf(const BoundaryPoint& point) {
  return {point.container->id, point.IsInText() ? point.offset : IdOf(point.before)};
}

}  // namespace

void Gateway::Move(const TreeStep& step, Origin origin) {
  document_.ForEachPoint([&](BoundaryPoint& point) {
    if (!point) return;
    NodePlace place = PlaceOf(point);
    if (!MovePlace(place, step)) return;
    Node* const container = document_.FindNode(place.container);
    assert(container);
    point = container->IsText() ? BoundaryPoint::InText(container, place.rest)
                                : BoundaryPoint{container, 0, document_.FindNode(place.rest)};
  });
  if (origin == Origin::Program && document_.page()) document_.page()->PlacesMoved(step);
}

void Gateway::Insert(Node* parent, Node* before, Node* subtree, Origin origin) {
  assert(parent->IsAttached() && !subtree->parent);
  parent->Link(subtree, before);
  document_.Attach(subtree);
  Move(InsertStep{parent->id, IdOf(before), subtree->id}, origin);
  if (origin == Origin::Program && document_.page()) document_.page()->Inserted(subtree);
}

void Gateway::TakeOut(Node* subtree, Origin origin) {
  assert(subtree->IsAttached() && subtree->parent);
  RemoveStep step{subtree->parent->id, IdOf(subtree->next), {}};
  for (const Node* node = subtree; node; node = NextInTree(node, subtree)) step.nodes.push_back(node->id);
  Move(step, origin);
  document_.Detach(subtree);
  subtree->Unlink();
}

void Gateway::Take(Node* subtree) {
  TakeOut(subtree, Origin::Page);
}

void Gateway::Remove(Node* subtree, Origin origin) {
  const Node* const parent = subtree->parent;
  const NodeId id = subtree->id;
  TakeOut(subtree, origin);
  document_.Discard(subtree);
  if (origin == Origin::Program && document_.page()) document_.page()->Removed(parent, id);
}

void Gateway::Wrap(Node* first, Node* last, Node* wrapper) {
  Node* const parent = first->parent;
  assert(parent->IsAttached() && !wrapper->parent && !wrapper->firstChild && last->parent == parent);
  parent->Link(wrapper, first);
  std::vector<NodeId> children;
  for (Node* node = first;;) {
    Node* const next = node->next;
    const bool isLast = node == last;
    children.push_back(node->id);
    node->Unlink();
    wrapper->Link(node, nullptr);
    if (isLast) break;
    node = next;
  }
  document_.AttachAlone(wrapper);
  Move(WrapStep{parent->id, wrapper->id, std::move(children)});
  if (document_.page()) document_.page()->Wrapped(wrapper);
}

void Gateway::Unwrap(Node* element) {
  assert(element->IsAttached() && element->IsElement());
  Node* const parent = element->parent;
  Node* const next = element->next;
  Node* const inFront = element->firstChild ? element->firstChild : next;
  Move(UnwrapStep{parent->id, element->id, IdOf(element->firstChild), IdOf(next)});
  Node* const last = element->lastChild;
  document_.DetachAlone(element);
  while (Node* child = element->firstChild) {
    child->Unlink();
    parent->Link(child, element);
  }
  element->Unlink();
  const NodeId id = element->id;
  document_.Discard(element);
  if (document_.page()) document_.page()->Unwrapped(id, parent, last ? inFront : nullptr, last);
}

void Gateway::SetAttribute(Node* element, const QString& name, const QString& value, Origin origin) {
  for (Attribute& attribute : element->attributes) {
    if (attribute.name.compare(name, Qt::CaseInsensitive) != 0) continue;
    if (attribute.value == value) return;
    attribute.value = value;
    if (origin == Origin::Program && document_.page()) document_.page()->AttributeSet(element, attribute.name, value);
    return;
  }
  const QString written = element->tag->space == Namespace::Html ? name.toLower() : name;
  element->attributes.push_back({written, value});
  if (origin == Origin::Program && document_.page()) document_.page()->AttributeSet(element, written, value);
}

void Gateway::RemoveAttribute(Node* element, const QString& name, Origin origin) {
  auto& attributes = element->attributes;
  for (auto it = attributes.begin(); it != attributes.end(); ++it) {
    if (it->name.compare(name, Qt::CaseInsensitive) != 0) continue;
    const QString written = it->name;
    attributes.erase(it);
    if (origin == Origin::Program && document_.page()) document_.page()->AttributeRemoved(element, written);
    return;
  }
}

void Gateway::ReplaceData(Node* node, int offset, int count, const QString& data, Origin origin) {
  assert(offset >= 0 && count >= 0 && offset + count <= node->Length());
  if (count == 0 && data.isEmpty()) return;
  node->data.replace(offset, count, data);
  Move(ReplaceStep{node->id, offset, count, int(data.size())}, origin);
  if (origin == Origin::Program && document_.page()) document_.page()->DataReplaced(node, offset, count, data);
}

Node* Gateway::SplitText(Node* text, int offset) {
  assert(text->IsText() && offset > 0 && offset < text->Length());
  Node* const rest = document_.CreateText(text->data.mid(offset));
  const int count = rest->Length();
  text->parent->Link(rest, text->next);
  document_.Attach(rest);
  Move(SplitStep{text->id, offset, rest->id});
  text->data.truncate(offset);
  if (LivePage* const page = document_.page()) {
    page->Inserted(rest);
    page->DataReplaced(text, offset, count, {});
  }
  return rest;
}

void Gateway::JoinWithNext(Node* text) {
  Node* const rest = text->next;
  assert(text->IsText() && rest && rest->IsText());
  const int length = text->Length();
  const QString data = rest->data;
  Node* const parent = text->parent;
  const NodeId id = rest->id;
  Move(JoinStep{text->id, length, id, parent->id});
  text->data += data;
  document_.Detach(rest);
  rest->Unlink();
  document_.Discard(rest);
  if (LivePage* const page = document_.page()) {
    if (!data.isEmpty()) page->DataReplaced(text, length, 0, data);
    page->Removed(parent, id);
  }
}
