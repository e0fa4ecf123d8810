#include "HTMLDocument.h"

#include "HTMLDocumentEvents.h"
#include "LivePage.h"
#include "TreeBuilder.h"

HTMLDocument::HTMLDocument() : tree_(this), gateway_(tree_), alive_(std::make_shared<HTMLDocument*>(this)) {
  selection_ = std::make_unique<HTMLSelectionObject>(*this);
  tree_.AddRange(&window_.event_.caret_);
}

HTMLDocument::~HTMLDocument() {
  alive_.reset();
  selection_.reset();
  window_.event_ = {};
}

HTMLElement HTMLDocument::documentElement() const {
  return HTMLElement(tree_.htmlNode());
}
HTMLBodyElement HTMLDocument::body() const {
  return HTMLBodyElement(tree_.bodyNode());
}
HTMLElementCollection HTMLDocument::all() const {
  return HTMLElementCollection(&tree_);
}

namespace {

const Node* TitleOf(const PageTree& tree) {
  const Node* const head = tree.headNode();
  const Node* title = head ? head->firstChild() : nullptr;
  while (title && !title->IsElement(Known().title)) title = title->next();
  return title;
}

}  // namespace

QString HTMLDocument::title() const {
  const Node* const title = TitleOf(tree_);
  QString text;
  for (const Node* child = title ? title->firstChild() : nullptr; child; child = child->next())
    if (child->IsText()) text += child->data();
  return text;
}

void HTMLDocument::setTitle(const QString& text) {
  const Node* const head = tree_.headNode();
  if (!head) return;
  if (!TitleOf(tree_)) gateway_.Insert(head, nullptr, TreeBuilder::Element(Known().title));
  const Node* const title = TitleOf(tree_);
  while (title->firstChild()) gateway_.Remove(title->firstChild());
  if (!text.isEmpty()) gateway_.Insert(title, nullptr, TreeBuilder::Text(text));
}

QString HTMLDocument::bgColor() const {
  return body().getAttribute(QStringLiteral("bgcolor"));
}

void HTMLDocument::setBgColor(const QString& color) {
  body().setBgColor(color);
}

void HTMLDocument::TakeKeys(bool on) {
  if (tree_.page()) tree_.page()->TakesKeys(on);
}

void HTMLDocument::Outline(const HTMLElement& element) {
  if (tree_.page()) tree_.page()->Outline(element.node());
}

bool HTMLDocument::Dispatch(HTMLEventObj event) {
  window_.event_ = std::move(event);
  if (!events_) return true;
  switch (window_.event_.type()) {
    case EventType::Click:
      return events_->onclick();
    case EventType::DoubleClick:
      return events_->ondblclick();
    case EventType::ContextMenu:
      return events_->oncontextmenu();
    case EventType::KeyUp:
      events_->onkeyup();
      break;
    case EventType::MouseDown:
      events_->onmousedown();
      break;
    case EventType::MouseUp:
      events_->onmouseup();
      break;
    case EventType::MouseOut:
      events_->onmouseout();
      break;
    case EventType::MouseOver:
      events_->onmouseover();
      break;
  }
  return true;
}
