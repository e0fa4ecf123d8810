#include "TestPage.h"

#include <algorithm>

#include "HtmlParser.h"
#include "PageText.h"
#include "Serializer.h"

ReplicaPage::ReplicaPage(const HTMLDocument& document) {
  Add(document.root());
}

void ReplicaPage::Add(const Node* subtree) {
  for (const Node* node = subtree; node; node = NextInTree(node, subtree)) {
    Copy copy;
    copy.name = node->IsElement() ? node->tag->localName : QStringLiteral("#");
    copy.data = node->data;
    for (const Attribute& attribute : node->attributes) copy.attributes.emplace_back(attribute.name, attribute.value);
    for (const Node* child = node->firstChild; child; child = child->next) copy.children.push_back(child->id);
    copies_[node->id] = copy;
  }
}

void ReplicaPage::Inserted(const Node* subtree) {
  Add(subtree);
  auto& siblings = copies_[subtree->parent->id].children;
  const auto place = subtree->next ? std::find(siblings.begin(), siblings.end(), subtree->next->id) : siblings.end();
  siblings.insert(place, subtree->id);
}

void ReplicaPage::Removed(const Node* parent, NodeId node) {
  std::erase(copies_[parent->id].children, node);
}

void ReplicaPage::AttributeSet(const Node* element, const QString& name, const QString& value) {
  auto& attributes = copies_[element->id].attributes;
  for (auto& [known, old] : attributes)
    if (known == name) {
      old = value;
      return;
    }
  attributes.emplace_back(name, value);
}

void ReplicaPage::AttributeRemoved(const Node* element, const QString& name) {
  std::erase_if(copies_[element->id].attributes, [&](const auto& one) { return one.first == name; });
}

void ReplicaPage::Wrapped(const Node* wrapper) {
  Copy copy;
  copy.name = wrapper->tag->localName;
  for (const Attribute& attribute : wrapper->attributes) copy.attributes.emplace_back(attribute.name, attribute.value);
  auto& siblings = copies_[wrapper->parent->id].children;
  const auto from = std::find(siblings.begin(), siblings.end(), wrapper->firstChild->id);
  const auto to = std::find(from, siblings.end(), wrapper->lastChild->id);
  copy.children.assign(from, to + 1);
  *from = wrapper->id;
  siblings.erase(from + 1, to + 1);
  copies_[wrapper->id] = copy;
}

void ReplicaPage::Unwrapped(NodeId element, const Node* parent, const Node* first, const Node* last) {
  std::vector<NodeId> inside;
  for (const Node* node = first; node; node = node == last ? nullptr : node->next) inside.push_back(node->id);
  auto& siblings = copies_[parent->id].children;
  const auto place = siblings.erase(std::find(siblings.begin(), siblings.end(), element));
  siblings.insert(place, inside.begin(), inside.end());
}

void ReplicaPage::DataReplaced(const Node* text, int offset, int count, const QString& data) {
  copies_[text->id].data.replace(offset, count, data);
}

QString ReplicaPage::DifferenceTo(const HTMLDocument& document) const {
  for (const Node* node = document.root(); node; node = NextInTree(node)) {
    const auto found = copies_.constFind(node->id);
    const QString name = QStringLiteral("node %1 ").arg(node->id);
    if (found == copies_.constEnd()) return name + "is unknown";
    if (node->IsElement() && node->tag->localName != found->name) return name + "has another name";
    if (node->data != found->data) return name + "has other data: " + found->data;
    std::vector<NodeId> children;
    for (const Node* child = node->firstChild; child; child = child->next) children.push_back(child->id);
    if (children != found->children) return name + "has other children";
    std::vector<std::pair<QString, QString>> attributes;
    for (const Attribute& attribute : node->attributes) attributes.emplace_back(attribute.name, attribute.value);
    if (attributes != found->attributes) return name + "has other attributes";
  }
  return {};
}

namespace {

void CheckPoint(const HTMLDocument& document, const BoundaryPoint& point, QStringList& problems) {
  if (!point.container) return;
  if (!point.container->IsAttached() || point.container->document != &document) {
    problems += "a point in a removed node";
  } else if (point.container->IsText()) {
    if (point.before) problems += "a point in text with a child";
    if (point.offset < 0 || point.offset > point.container->Length()) problems += "a point beyond its text";
  } else {
    if (point.offset != 0) problems += "a point with an offset outside of text";
    if (point.before && point.before->parent != point.container) problems += "a point before a stranger";
  }
}

}  // namespace

QStringList ProblemsOf(HTMLDocument& document, bool pageMayHaveTexts) {
  QStringList problems;
  int elements = 0;
  const Node* last = nullptr;
  for (Node* node = document.root(); node; node = NextInTree(node)) {
    if (!node->IsAttached() || node->document != &document) problems += "a node that isn't attached";
    if (document.FindNode(node->id) != node) problems += QStringLiteral("node %1 isn't found").arg(node->id);
    const Node* before = nullptr;
    for (const Node* child = node->firstChild; child; before = child, child = child->next)
      if (child->parent != node || child->previous != before) problems += "a broken link";
    if (node->lastChild != before) problems += "a wrong last child";
    if (last && (!document.order().IsBefore(last, node) || document.order().IsBefore(node, last)))
      problems += "two nodes in the wrong order";
    last = node;
    if (node->IsElement()) {
      if (document.order().ElementIndex(node) != elements) problems += "an element with a wrong index";
      if (document.order().ElementAt(elements) != node) problems += "a wrong element at an index";
      ++elements;
    }
    if (node->IsText() && !pageMayHaveTexts) {
      if (node->data.isEmpty()) problems += "an empty text";
      if (node->next && node->next->IsText()) problems += "two texts side by side";
    }
  }
  if (document.order().ElementCount() != elements) problems += "a wrong number of elements";
  document.ForEachPoint([&](BoundaryPoint& point) { CheckPoint(document, point, problems); });
  return problems;
}

TestPage::TestPage(const QString& bodyContent) {
  ParseDocument("<html><head></head><body>" + bodyContent + "</body></html>", document);
  for (Node* node = document.bodyNode(); node;) {
    const int place = node->IsText() ? int(node->data.indexOf(u'^')) : -1;
    if (place < 0) {
      node = NextInTree(node);
      continue;
    }
    document.gateway().ReplaceData(node, place, 1, {});
    BoundaryPoint point = BoundaryPoint::InText(node, place);
    if (node->data.isEmpty()) {
      Node* const following = NextInTree(node);
      point = BoundaryPoint::Before(node);
      point.before = node->next;
      document.gateway().Remove(node);
      node = following;
    }
    (marked.start ? marked.end : marked.start) = point;
  }
  if (!marked.end) marked.end = marked.start;
  page = std::make_unique<ReplicaPage>(document);
  document.SetPage(page.get());
}

std::shared_ptr<HTMLTxtRange> TestPage::Range() {
  return std::make_shared<HTMLTxtRange>(document, marked);
}

Node* TestPage::Find(const QString& tagName, int index) const {
  for (Node* node = document.root(); node; node = NextInTree(node))
    if (node->IsElement() && node->tag->tagName == tagName && index-- == 0) return node;
  return nullptr;
}

Node* TestPage::Text(const QString& data) const {
  for (Node* node = document.root(); node; node = NextInTree(node))
    if (node->IsText() && node->data.contains(data)) return node;
  return nullptr;
}

QString TestPage::Body() const {
  return InnerHtml(document.bodyNode(), false);
}

namespace {

void ShowNode(const Node* node, const LiveRange& range, bool attributes, QString& out) {
  const auto mark = [&](const BoundaryPoint& here) {
    if (range.start == here) out += u'^';
    if (range.end == here && !range.IsCollapsed()) out += u'^';
  };
  if (node->IsText()) {
    for (int at = 0; at <= node->Length(); ++at) {
      mark(BoundaryPoint::InText(const_cast<Node*>(node), at));
      if (at < node->Length())
        out += node->data[at] == QChar(0xA0) ? QStringLiteral("&nbsp;") : QString(node->data[at]);
    }
    return;
  }
  if (!node->IsElement()) {
    out += "<!-->";
    return;
  }
  if (node->tag != Known().body) {
    out += u'<' + node->tag->localName;
    if (attributes)
      for (const Attribute& one : node->attributes) out += u' ' + one.name + "='" + one.value + u'\'';
    out += u'>';
  }
  for (Node* child = node->firstChild;; child = child->next) {
    mark({const_cast<Node*>(node), 0, child});
    if (!child) break;
    ShowNode(child, range, attributes, out);
  }
  if (node->tag != Known().body && !node->tag->isVoid) out += "</" + node->tag->localName + u'>';
}

}  // namespace

QString TestPage::Show(const LiveRange& range) const {
  QString out;
  ShowNode(document.bodyNode(), range, false, out);
  return out;
}

QString DifferenceAfterSaving(const HTMLDocument& document) {
  HTMLDocument read;
  ParseDocument(DecodePage(FileHtml(document)).text, read);
  const Node* here = document.htmlNode();
  const Node* there = read.htmlNode();
  for (; here && there; here = NextInTree(here), there = NextInTree(there)) {
    const bool same = here->type == there->type && here->tag == there->tag && here->data == there->data &&
                      here->attributes.size() == there->attributes.size() && here->Depth() == there->Depth();
    if (!same) break;
    for (const Attribute& attribute : here->attributes) {
      const Attribute* const other = there->FindAttribute(attribute.name);
      if (!other || other->value != attribute.value) return "another attribute " + attribute.name;
    }
  }
  const auto name = [](const Node* node) {
    return !node ? QStringLiteral("the end") : node->IsElement() ? node->tag->localName : node->data;
  };
  return here || there ? name(here) + " is read as " + name(there) : QString();
}

QString TestPage::After(const LiveRange& range) {
  QString shown;
  ShowNode(document.bodyNode(), range, true, shown);
  QStringList problems = Problems();
  const QString read = DifferenceAfterSaving(document);
  if (!read.isEmpty()) problems += "file: " + read;
  for (const QString& problem : problems) shown += "\n" + problem;
  return shown;
}

QStringList TestPage::Problems() {
  QStringList problems = ProblemsOf(document);
  const QString difference = page->DifferenceTo(document);
  if (!difference.isEmpty()) problems += "live page: " + difference;
  return problems;
}
