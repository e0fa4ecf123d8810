#include "Gateway.h"

#include <algorithm>
#include <cassert>

#include "LivePage.h"
#include "TreeBuilder.h"

namespace {

NodeId IdOf(const Node* node) {
  return node ? node->id() : 0;
}

std::vector<NodeId> IdsBetween(const Node* first, const Node* last) {
  std::vector<NodeId> ids;
  for (const Node* node = first; node; node = node == last ? nullptr : node->next()) ids.push_back(node->id());
  return ids;
}

std::vector<NodeId> IdsWithin(const Node* top) {
  std::vector<NodeId> ids;
  for (const Node* node = top; node; node = NextInTree(node, top)) ids.push_back(node->id());
  return ids;
}

AttributeStep StepFor(const Node* element, int index, const QString& name, const std::optional<QString>& after) {
  const auto& attributes = element->attributes();
  if (index == int(attributes.size())) return {element->id(), index, name, std::nullopt, after};
  return {element->id(), index, attributes[std::size_t(index)].name, attributes[std::size_t(index)].value, after};
}

// What is in no tree once the step has been played.
NodeRef TakenOutBy(const TreeStep& step) {
  return std::visit(StepCases{[](const JoinStep& s) { return s.node; }, [](const RemoveStep& s) { return s.node; },
                              [](const UnwrapStep& s) { return s.node; }, [](const auto&) { return NodeRef(); }},
                    step);
}

}  // namespace

Node* Gateway::At(NodeId id) const {
  return Node::Own(tree_.FindNode(id));
}

void Gateway::MoveRanges(const TreeStep& step) {
  if (std::holds_alternative<AttributeStep>(step)) return;
  tree_.ForEachPoint([&](BoundaryPoint& point) {
    if (!point) return;
    NodePlace place = NodePlace::Of(point);
    if (!MovePlace(place, step)) return;
    const Node* const container = tree_.FindNode(place.container);
    assert(container);
    point = container->IsText() ? BoundaryPoint::InText(container, place.rest)
                                : BoundaryPoint{container, 0, tree_.FindNode(place.rest)};
  });
}

void Gateway::Carry(TreeStep step, Origin origin) {
  tree_.EndLease();
  std::visit([this](auto& one) { Do(one); }, step);
  MoveRanges(step);
  if (origin == Origin::Program && tree_.page()) tree_.page()->Changed(step);
  if (listener_) listener_->Played(std::move(step), origin);
}

void Gateway::Play(TreeStep step) {
  const NodeRef out = TakenOutBy(step);
  Carry(std::move(step));
  if (out) tree_.Discard(Node::Own(out.get()));
}

void Gateway::Do(ReplaceStep& step) {
  At(step.text)->data_.replace(step.offset, step.removed.size(), step.inserted);
}

void Gateway::Do(SplitStep& step) {
  Node* const text = At(step.text);
  Node* const rest = step.node ? Node::Own(step.node.get()) : TreeBuilder::Text(text->data_.mid(step.offset));
  text->data_.truncate(step.offset);
  text->parent_->Link(rest, text->next_);
  tree_.Attach(rest);
  step.rest = rest->id_;
  step.node = NodeRef(rest);
}

void Gateway::Do(JoinStep& step) {
  Node* const rest = At(step.rest);
  At(step.text)->data_ += rest->data_;
  tree_.Detach(rest);
  rest->Unlink();
}

void Gateway::Do(InsertStep& step) {
  Node* const top = Node::Own(step.node.get());
  At(step.parent)->Link(top, At(step.before));
  tree_.Attach(top);
  step.top = top->id_;
}

void Gateway::Do(RemoveStep& step) {
  Node* const top = At(step.nodes.front());
  tree_.Detach(top);
  top->Unlink();
}

void Gateway::Do(WrapStep& step) {
  Node* const wrapper = Node::Own(step.node.get());
  Node* const parent = At(step.parent);
  parent->Link(wrapper, step.children.empty() ? At(step.next) : At(step.children.front()));
  for (const NodeId id : step.children) {
    Node* const child = At(id);
    child->Unlink();
    wrapper->Link(child, nullptr);
  }
  tree_.AttachAlone(wrapper);
  step.wrapper = wrapper->id_;
}

void Gateway::Do(UnwrapStep& step) {
  Node* const element = At(step.element);
  Node* const parent = At(step.parent);
  tree_.DetachAlone(element);
  while (Node* child = element->firstChild_) {
    child->Unlink();
    parent->Link(child, element);
  }
  element->Unlink();
}

void Gateway::Do(AttributeStep& step) {
  auto& attributes = At(step.element)->attributes_;
  const auto at = attributes.begin() + step.index;
  if (!step.after) {
    attributes.erase(at);
  } else if (step.before) {
    at->value = *step.after;
  } else {
    attributes.insert(at, {step.name, *step.after});
  }
}

void Gateway::Insert(const Node* parent, const Node* before, Node* subtree, Origin origin) {
  assert(parent->IsAttached() && !subtree->parent());
  Carry(InsertStep{parent->id(), IdOf(before), 0, NodeRef(subtree)}, origin);
}

void Gateway::Remove(const Node* subtree) {
  assert(subtree->IsAttached() && subtree->parent());
  Carry(RemoveStep{subtree->parent()->id(), IdOf(subtree->next()), IdsWithin(subtree), NodeRef(subtree)});
  tree_.Discard(Node::Own(subtree));
}

Node* Gateway::Take(const Node* subtree) {
  assert(subtree->IsAttached() && subtree->parent());
  Carry(RemoveStep{subtree->parent()->id(), IdOf(subtree->next()), IdsWithin(subtree), NodeRef(subtree)}, Origin::Page);
  return Node::Own(subtree);
}

void Gateway::Discard(Node* subtree) {
  assert(!subtree->IsAttached() && !subtree->parent());
  tree_.Discard(subtree);
}

void Gateway::Wrap(const Node* first, const Node* last, Node* wrapper) {
  assert(first->IsAttached() && last->parent() == first->parent() && !wrapper->parent() && !wrapper->firstChild());
  Carry(WrapStep{first->parent()->id(), 0, IdOf(last->next()), IdsBetween(first, last), NodeRef(wrapper)});
}

void Gateway::Unwrap(const Node* element) {
  assert(element->IsAttached() && element->IsElement());
  Carry(UnwrapStep{element->parent()->id(), element->id(), IdOf(element->next()),
                   IdsBetween(element->firstChild(), element->lastChild()), NodeRef(element)});
  tree_.Discard(Node::Own(element));
}

void Gateway::SetAttribute(const Node* element, const QString& name, const QString& value) {
  const auto& attributes = element->attributes();
  const auto known = std::find_if(attributes.begin(), attributes.end(), [&](const Attribute& one) {
    return one.name.compare(name, Qt::CaseInsensitive) == 0;
  });
  if (known != attributes.end() && known->value == value) return;
  const QString written = element->tag()->space == Namespace::Html ? name.toLower() : name;
  Carry(StepFor(element, int(known - attributes.begin()), written, value));
}

void Gateway::RemoveAttribute(const Node* element, const QString& name) {
  const auto& attributes = element->attributes();
  const auto known = std::find_if(attributes.begin(), attributes.end(), [&](const Attribute& one) {
    return one.name.compare(name, Qt::CaseInsensitive) == 0;
  });
  if (known != attributes.end()) Carry(StepFor(element, int(known - attributes.begin()), name, std::nullopt));
}

void Gateway::TakeAttributes(const Node* element, const std::vector<Attribute>& attributes) {
  const auto& own = element->attributes();
  std::size_t same = 0;
  while (same < own.size() && same < attributes.size() && own[same] == attributes[same]) ++same;
  while (own.size() > same) Carry(StepFor(element, int(own.size()) - 1, {}, std::nullopt), Origin::Page);
  for (; same < attributes.size(); ++same)
    Carry(StepFor(element, int(same), attributes[same].name, attributes[same].value), Origin::Page);
}

void Gateway::ReplaceData(const Node* node, int offset, int count, const QString& data, Origin origin) {
  assert(node->IsAttached() && offset >= 0 && count >= 0 && offset + count <= node->Length());
  if (count == 0 && data.isEmpty()) return;
  Carry(ReplaceStep{node->id(), offset, node->data().mid(offset, count), data}, origin);
}

const Node* Gateway::SplitText(const Node* text, int offset) {
  assert(text->IsAttached() && text->IsText() && offset > 0 && offset < text->Length());
  Carry(SplitStep{text->id(), offset, 0});
  return text->next();
}

void Gateway::JoinWithNext(const Node* text) {
  const Node* const rest = text->next();
  assert(text->IsAttached() && text->IsText() && rest && rest->IsText());
  Carry(JoinStep{text->id(), text->Length(), rest->id(), text->parent()->id(), NodeRef(rest)});
  tree_.Discard(Node::Own(rest));
}
