#include "HTMLElement.h"

#include "HTMLDocument.h"
#include "HTMLTxtRange.h"
#include "HtmlParser.h"
#include "LegacyColor.h"
#include "RangeEdit.h"
#include "Serializer.h"
#include "StyleDeclarations.h"

namespace {

// The document in whose tree the element stands; null for none and for a removed element.
HTMLDocument* DocumentOf(const Node* node) {
  return node && node->IsAttached() ? node->tree()->document() : nullptr;
}

}  // namespace

QString HTMLElement::tagName() const {
  return node_ ? node_->tag()->tagName : QString();
}

QString HTMLElement::id() const {
  return getAttribute(QStringLiteral("id"));
}

HTMLElement HTMLElement::parentElement() const {
  return node_ && node_->parent() && node_->parent()->IsElement() ? HTMLElement(node_->parent()) : HTMLElement();
}

HTMLElementCollection HTMLElement::children() const {
  return HTMLElementCollection(*this, HTMLElementCollection::Kind::Children);
}

HTMLElementCollection HTMLElement::all() const {
  return HTMLElementCollection(*this, HTMLElementCollection::Kind::Descendants);
}

int HTMLElement::sourceIndex() const {
  const HTMLDocument* document = DocumentOf(node_.get());
  return document ? document->tree().order().ElementIndex(node_.get()) : -1;
}

QString HTMLElement::outerHTML() const {
  return node_ ? OuterHtml(node_.get(), node_->tree() && node_->tree()->scripting()) : QString();
}

void HTMLElement::setOuterHTML(const QString& html) {
  HTMLDocument* const document = DocumentOf(node_.get());
  if (!document || !node_->parent()->IsElement()) return;
  const std::vector<Node*> nodes = ParseFragment(html, node_->parent());
  InsertNodes(document->gateway(), BoundaryPoint::Before(node_.get()), nodes);
  RemoveNode(document->gateway(), node_.get());
}

void HTMLElement::insertAdjacentHTML(const QString& where, const QString& html) {
  HTMLDocument* const document = DocumentOf(node_.get());
  if (!document) return;
  const auto is = [&](const char* name) { return where.compare(QLatin1String(name), Qt::CaseInsensitive) == 0; };
  BoundaryPoint at;
  if (is("BeforeBegin")) {
    at = BoundaryPoint::Before(node_.get());
  } else if (is("AfterBegin")) {
    at = BoundaryPoint::AtStart(node_.get());
  } else if (is("BeforeEnd")) {
    at = BoundaryPoint::AtEnd(node_.get());
  } else if (is("AfterEnd")) {
    at = BoundaryPoint::Behind(node_.get());
  }
  if (!at || !at.container->IsElement()) return;
  InsertNodes(document->gateway(), at, ParseFragment(html, at.container));
}

QString HTMLElement::getAttribute(const QString& name, int) const {
  const Attribute* attribute = node_ ? node_->FindAttribute(name) : nullptr;
  if (!attribute) return {};
  return IsColorAttribute(name) ? NormalizeLegacyColor(attribute->value) : attribute->value;
}

void HTMLElement::setAttribute(const QString& name, const QString& value) {
  if (HTMLDocument* document = DocumentOf(node_.get())) document->gateway().SetAttribute(node_.get(), name, value);
}

bool HTMLElement::removeAttribute(const QString& name, int) {
  HTMLDocument* const document = DocumentOf(node_.get());
  if (!document || !node_->FindAttribute(name)) return false;
  document->gateway().RemoveAttribute(node_.get(), name);
  return true;
}

HTMLStyle HTMLElement::style() const {
  return HTMLStyle(*this);
}

std::shared_ptr<HTMLTxtRange> HTMLBodyElement::createTextRange() const {
  HTMLDocument* const document = DocumentOf(node_.get());
  if (!document) return nullptr;
  return std::make_shared<HTMLTxtRange>(
      *document, LiveRange{BoundaryPoint::AtStart(node_.get()), BoundaryPoint::AtEnd(node_.get())});
}

QString HTMLBodyElement::text() const {
  return getAttribute(QStringLiteral("text"));
}
QString HTMLBodyElement::link() const {
  return getAttribute(QStringLiteral("link"));
}
QString HTMLBodyElement::vLink() const {
  return getAttribute(QStringLiteral("vlink"));
}
QString HTMLBodyElement::background() const {
  return getAttribute(QStringLiteral("background"));
}

void HTMLBodyElement::setText(const QString& color) {
  WriteColor(QStringLiteral("text"), color);
}

void HTMLBodyElement::setLink(const QString& color) {
  WriteColor(QStringLiteral("link"), color);
}

void HTMLBodyElement::setVLink(const QString& color) {
  WriteColor(QStringLiteral("vlink"), color);
}

void HTMLBodyElement::setBgColor(const QString& color) {
  WriteColor(QStringLiteral("bgcolor"), color);
}

void HTMLBodyElement::WriteColor(const QString& name, const QString& color) {
  if (!node_ || (color.isEmpty() && !node_->FindAttribute(name))) return;
  setAttribute(name, color);
}

void HTMLBodyElement::setBackground(const QString& picture) {
  setAttribute(QStringLiteral("background"), picture);
}

int HTMLElementCollection::length() const {
  if (tree_) return tree_->order().ElementCount();
  if (!root_) return 0;
  int count = 0;
  if (kind_ == Kind::Children) {
    for (const Node* child = root_.node()->firstChild(); child; child = child->next()) count += child->IsElement();
  } else {
    for (const Node* n = NextInTree(root_.node(), root_.node()); n; n = NextInTree(n, root_.node()))
      count += n->IsElement();
  }
  return count;
}

HTMLElement HTMLElementCollection::item(int index) const {
  if (index < 0) return {};
  if (tree_) return HTMLElement(tree_->order().ElementAt(index));
  if (!root_) return {};
  if (kind_ == Kind::Children) {
    for (const Node* child = root_.node()->firstChild(); child; child = child->next())
      if (child->IsElement() && index-- == 0) return HTMLElement(child);
  } else {
    for (const Node* n = NextInTree(root_.node(), root_.node()); n; n = NextInTree(n, root_.node()))
      if (n->IsElement() && index-- == 0) return HTMLElement(n);
  }
  return {};
}

namespace {

StyleDeclarations StyleOf(const Node* node) {
  const Attribute* attribute = node->FindAttribute(QStringLiteral("style"));
  return StyleDeclarations::Parse(attribute ? attribute->value : QString(), !node->tree() || node->tree()->quirks());
}

}  // namespace

QString HTMLStyle::fontFamily() const {
  return element_ ? StyleOf(element_.node()).Value(QStringLiteral("font-family")) : QString();
}
QString HTMLStyle::fontSize() const {
  return element_ ? StyleOf(element_.node()).Value(QStringLiteral("font-size")) : QString();
}
QString HTMLStyle::textAlign() const {
  return element_ ? StyleOf(element_.node()).Value(QStringLiteral("text-align")) : QString();
}
void HTMLStyle::setFontFamily(const QString& value) {
  Set(QStringLiteral("font-family"), value);
}
void HTMLStyle::setFontSize(const QString& value) {
  Set(QStringLiteral("font-size"), value);
}
void HTMLStyle::setTextAlign(const QString& value) {
  Set(QStringLiteral("text-align"), value);
}

void HTMLStyle::Set(const QString& property, const QString& value) {
  if (!element_) return;
  StyleDeclarations style = StyleOf(element_.node());
  const QString before = style.Text();
  style.Set(property, value);
  if (style.Text() == before) return;
  element_.setAttribute(QStringLiteral("style"), style.Text());
}
