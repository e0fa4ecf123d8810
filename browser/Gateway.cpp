#include "Gateway.h"

#include <cassert>

#include "HTMLDocument.h"
#include "LivePage.h"

void Gateway::Insert(Node* parent, Node* before, Node* subtree, Origin origin) {
  assert(parent->IsAttached() && !subtree->parent);
  parent->Link(subtree, before);
  document_.Attach(subtree);
  // A point exactly at the place of the insertion stays before it.
  document_.ForEachPoint([&](BoundaryPoint& point) {
    if (point.container == parent && !parent->IsText() && point.before == before) point.before = subtree;
  });
  if (origin == Origin::Program && document_.page()) document_.page()->Inserted(subtree);
}

void Gateway::Take(Node* subtree) {
  assert(subtree->IsAttached() && subtree->parent);
  Node* const parent = subtree->parent;
  Node* const next = subtree->next;
  document_.ForEachPoint([&](BoundaryPoint& point) {
    if (subtree->Contains(point.container)) {
      point = {parent, 0, next};
    } else if (point.container == parent && point.before == subtree) {
      point.before = next;
    }
  });
  document_.Detach(subtree);
  subtree->Unlink();
}

void Gateway::Remove(Node* subtree, Origin origin) {
  const Node* const parent = subtree->parent;
  const NodeId id = subtree->id;
  Take(subtree);
  document_.Discard(subtree);
  if (origin == Origin::Program && document_.page()) document_.page()->Removed(parent, id);
}

void Gateway::Wrap(Node* first, Node* last, Node* wrapper) {
  Node* const parent = first->parent;
  assert(parent->IsAttached() && !wrapper->parent && !wrapper->firstChild && last->parent == parent);
  parent->Link(wrapper, first);
  for (Node* node = first;;) {
    Node* const next = node->next;
    const bool isLast = node == last;
    node->Unlink();
    wrapper->Link(node, nullptr);
    if (isLast) break;
    node = next;
  }
  document_.AttachAlone(wrapper);
  document_.ForEachPoint([&](BoundaryPoint& point) {
    if (point.container != parent || !point.before || point.before->parent != wrapper) return;
    if (point.before == first) {
      point.before = wrapper;
    } else {
      point.container = wrapper;
    }
  });
  if (document_.page()) document_.page()->Wrapped(wrapper);
}

void Gateway::Unwrap(Node* element) {
  assert(element->IsAttached() && element->IsElement());
  Node* const parent = element->parent;
  Node* const next = element->next;
  Node* const inFront = element->firstChild ? element->firstChild : next;
  document_.ForEachPoint([&](BoundaryPoint& point) {
    if (point.container == element) {
      point = {parent, 0, point.before ? point.before : next};
    } else if (point.container == parent && point.before == element) {
      point.before = inFront;
    }
  });
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
  document_.ForEachPoint([&](BoundaryPoint& point) {
    if (point.container != node || point.offset <= offset) return;
    point.offset = point.offset <= offset + count ? offset : point.offset + int(data.size()) - count;
  });
  if (origin == Origin::Program && document_.page()) document_.page()->DataReplaced(node, offset, count, data);
}

Node* Gateway::SplitText(Node* text, int offset) {
  assert(text->IsText() && offset > 0 && offset < text->Length());
  Node* const rest = document_.CreateText(text->data.mid(offset));
  Node* const parent = text->parent;
  Node* const next = text->next;
  Insert(parent, next, rest);
  document_.ForEachPoint([&](BoundaryPoint& point) {
    if (point.container == text && point.offset > offset) {
      point = BoundaryPoint::InText(rest, point.offset - offset);
    } else if (point.container == parent && point.before == rest) {
      point.before = next;  // it stood behind the whole text
    }
  });
  ReplaceData(text, offset, text->Length() - offset, {});
  return rest;
}

void Gateway::JoinWithNext(Node* text) {
  Node* const rest = text->next;
  assert(text->IsText() && rest && rest->IsText());
  const int length = text->Length();
  const QString data = rest->data;
  document_.ForEachPoint([&](BoundaryPoint& point) {
    if (point.container == rest) {
      point = BoundaryPoint::InText(text, length + point.offset);
    } else if (point.container == text->parent && point.before == rest) {
      point = BoundaryPoint::InText(text, length);
    }
  });
  // Points moved to `text` above lie beyond its end until the data follows; they must not move again.
  text->data += data;
  if (document_.page() && !data.isEmpty()) document_.page()->DataReplaced(text, length, 0, data);
  Remove(rest);
}
