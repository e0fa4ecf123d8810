#include "TestPage.h"

#include <algorithm>

#include "HtmlParser.h"
#include "PageText.h"
#include "Serializer.h"

ReplicaPage::ReplicaPage(const PageTree& tree) {
  Add(tree.root());
}

void ReplicaPage::Add(const Node* subtree) {
  for (const Node* node = subtree; node; node = NextInTree(node, subtree)) {
    Copy copy;
    copy.name = node->IsElement() ? node->tag()->localName : QStringLiteral("#");
    copy.data = node->data();
    for (const Attribute& attribute : node->attributes()) copy.attributes.emplace_back(attribute.name, attribute.value);
    for (const Node* child = node->firstChild(); child; child = child->next()) copy.children.push_back(child->id());
    copies_[node->id()] = copy;
  }
}

void ReplicaPage::Changed(const TreeStep& step) {
  std::visit([this](const auto& one) { Play(one); }, step);
}

void ReplicaPage::Play(const ReplaceStep& step) {
  QString& data = copies_[step.text].data;
  if (data.mid(step.offset, step.removed.size()) != step.removed) data = "something else was to be replaced";
  data.replace(step.offset, step.removed.size(), step.inserted);
}

void ReplicaPage::Play(const SplitStep& step) {
  copies_[step.text].data.truncate(step.offset);
  Play(InsertStep{step.node->parent()->id(), step.node->next() ? step.node->next()->id() : 0, step.rest, step.node});
}

void ReplicaPage::Play(const JoinStep& step) {
  copies_[step.text].data += copies_[step.rest].data;
  std::erase(copies_[step.parent].children, step.rest);
}

void ReplicaPage::Play(const InsertStep& step) {
  Add(step.node.get());
  auto& siblings = copies_[step.parent].children;
  siblings.insert(std::find(siblings.begin(), siblings.end(), step.before), step.top);
}

void ReplicaPage::Play(const RemoveStep& step) {
  std::erase(copies_[step.parent].children, step.nodes.front());
}

void ReplicaPage::Play(const WrapStep& step) {
  Copy copy;
  copy.name = step.node->tag()->localName;
  for (const Attribute& attribute : step.node->attributes())
    copy.attributes.emplace_back(attribute.name, attribute.value);
  copy.children = step.children;
  auto& siblings = copies_[step.parent].children;
  for (const NodeId child : step.children) std::erase(siblings, child);
  siblings.insert(std::find(siblings.begin(), siblings.end(), step.next), step.wrapper);
  copies_[step.wrapper] = copy;
}

void ReplicaPage::Play(const UnwrapStep& step) {
  auto& siblings = copies_[step.parent].children;
  const auto place = siblings.erase(std::find(siblings.begin(), siblings.end(), step.element));
  siblings.insert(place, step.children.begin(), step.children.end());
}

void ReplicaPage::Play(const AttributeStep& step) {
  auto& attributes = copies_[step.element].attributes;
  const auto at = attributes.begin() + step.index;
  if (step.before && *at != std::pair(step.name, *step.before)) attributes.clear();
  if (!step.after) {
    attributes.erase(at);
  } else if (step.before) {
    at->second = *step.after;
  } else {
    attributes.insert(at, {step.name, *step.after});
  }
}

QString ReplicaPage::DifferenceTo(const PageTree& tree) const {
  for (const Node* node = tree.root(); node; node = NextInTree(node)) {
    const auto found = copies_.constFind(node->id());
    const QString name = QStringLiteral("node %1 ").arg(node->id());
    if (found == copies_.constEnd()) return name + "is unknown";
    if (node->IsElement() && node->tag()->localName != found->name) return name + "has another name";
    if (node->data() != found->data) return name + "has other data: " + found->data;
    std::vector<NodeId> children;
    for (const Node* child = node->firstChild(); child; child = child->next()) children.push_back(child->id());
    if (children != found->children) return name + "has other children";
    std::vector<std::pair<QString, QString>> attributes;
    for (const Attribute& attribute : node->attributes()) attributes.emplace_back(attribute.name, attribute.value);
    if (attributes != found->attributes) return name + "has other attributes";
  }
  return {};
}

namespace {

void CheckPoint(const HTMLDocument& document, const BoundaryPoint& point, QStringList& problems) {
  if (!point.container) return;
  if (!point.container->IsAttached() || point.container->tree() != &document.tree()) {
    problems += "a point in a removed node";
  } else if (point.container->IsText()) {
    if (point.before) problems += "a point in text with a child";
    if (point.offset < 0 || point.offset > point.container->Length()) problems += "a point beyond its text";
  } else {
    if (point.offset != 0) problems += "a point with an offset outside of text";
    if (point.before && point.before->parent() != point.container) problems += "a point before a stranger";
  }
}

}  // namespace

QStringList ProblemsOf(const HTMLDocument& document, bool pageMayHaveTexts) {
  QStringList problems;
  int elements = 0;
  const Node* last = nullptr;
  for (const Node* node = document.tree().root(); node; node = NextInTree(node)) {
    if (!node->IsAttached() || node->tree() != &document.tree()) problems += "a node that isn't attached";
    if (document.tree().FindNode(node->id()) != node) problems += QStringLiteral("node %1 isn't found").arg(node->id());
    const Node* before = nullptr;
    for (const Node* child = node->firstChild(); child; before = child, child = child->next())
      if (child->parent() != node || child->previous() != before) problems += "a broken link";
    if (node->lastChild() != before) problems += "a wrong last child";
    if (last && (!document.tree().order().IsBefore(last, node) || document.tree().order().IsBefore(node, last)))
      problems += "two nodes in the wrong order";
    last = node;
    if (node->IsElement()) {
      if (document.tree().order().ElementIndex(node) != elements) problems += "an element with a wrong index";
      if (document.tree().order().ElementAt(elements) != node) problems += "a wrong element at an index";
      ++elements;
    }
    if (node->IsText() && !pageMayHaveTexts) {
      if (node->data().isEmpty()) problems += "an empty text";
      if (node->next() && node->next()->IsText()) problems += "two texts side by side";
    }
  }
  if (document.tree().order().ElementCount() != elements) problems += "a wrong number of elements";
  document.tree().ForEachPoint([&](BoundaryPoint& point) { CheckPoint(document, point, problems); });
  return problems;
}

TestPage::TestPage(const QString& bodyContent) {
  ParseDocument("<html><head></head><body>" + bodyContent + "</body></html>", document.tree());
  for (const Node* node = document.tree().bodyNode(); node;) {
    const int place = node->IsText() ? int(node->data().indexOf(u'^')) : -1;
    if (place < 0) {
      node = NextInTree(node);
      continue;
    }
    document.gateway().ReplaceData(node, place, 1, {});
    BoundaryPoint point = BoundaryPoint::InText(node, place);
    if (node->data().isEmpty()) {
      const Node* const following = NextInTree(node);
      point = BoundaryPoint::Before(node);
      point.before = node->next();
      document.gateway().Remove(node);
      node = following;
    }
    (marked.start ? marked.end : marked.start) = point;
  }
  if (!marked.end) marked.end = marked.start;
  page = std::make_unique<ReplicaPage>(document.tree());
  document.tree().SetPage(page.get());
}

std::shared_ptr<HTMLTxtRange> TestPage::Range() {
  return std::make_shared<HTMLTxtRange>(document, marked);
}

const Node* TestPage::Find(const QString& tagName, int index) const {
  for (const Node* node = document.tree().root(); node; node = NextInTree(node))
    if (node->IsElement() && node->tag()->tagName == tagName && index-- == 0) return node;
  return nullptr;
}

const Node* TestPage::Text(const QString& data) const {
  for (const Node* node = document.tree().root(); node; node = NextInTree(node))
    if (node->IsText() && node->data().contains(data)) return node;
  return nullptr;
}

QString TestPage::Body() const {
  return InnerHtml(document.tree().bodyNode(), false);
}

namespace {

void ShowNode(const Node* node, const LiveRange& range, bool attributes, QString& out) {
  const auto mark = [&](const BoundaryPoint& here) {
    if (range.start == here) out += u'^';
    if (range.end == here && !range.IsCollapsed()) out += u'^';
  };
  if (node->IsText()) {
    for (int at = 0; at <= node->Length(); ++at) {
      mark(BoundaryPoint::InText(node, at));
      if (at < node->Length())
        out += node->data()[at] == QChar(0xA0) ? QStringLiteral("&nbsp;") : QString(node->data()[at]);
    }
    return;
  }
  if (!node->IsElement()) {
    out += "<!-->";
    return;
  }
  if (node->tag() != Known().body) {
    out += u'<' + node->tag()->localName;
    if (attributes)
      for (const Attribute& one : node->attributes()) out += u' ' + one.name + "='" + one.value + u'\'';
    out += u'>';
  }
  for (const Node* child = node->firstChild();; child = child->next()) {
    mark({node, 0, child});
    if (!child) break;
    ShowNode(child, range, attributes, out);
  }
  if (node->tag() != Known().body && !node->tag()->isVoid) out += "</" + node->tag()->localName + u'>';
}

}  // namespace

QString TestPage::Show(const LiveRange& range) const {
  QString out;
  ShowNode(document.tree().bodyNode(), range, false, out);
  return out;
}

QString DifferenceAfterSaving(const HTMLDocument& document) {
  HTMLDocument read;
  ParseDocument(DecodePage(FileHtml(document.tree())).text, read.tree());
  const Node* here = document.tree().htmlNode();
  const Node* there = read.tree().htmlNode();
  for (; here && there; here = NextInTree(here), there = NextInTree(there)) {
    const bool same = here->type() == there->type() && here->tag() == there->tag() && here->data() == there->data() &&
                      here->attributes().size() == there->attributes().size() && here->Depth() == there->Depth();
    if (!same) break;
    for (const Attribute& attribute : here->attributes()) {
      const Attribute* const other = there->FindAttribute(attribute.name);
      if (!other || other->value != attribute.value) return "another attribute " + attribute.name;
    }
  }
  const auto name = [](const Node* node) {
    return !node ? QStringLiteral("the end") : node->IsElement() ? node->tag()->localName : node->data();
  };
  return here || there ? name(here) + " is read as " + name(there) : QString();
}

QString TestPage::After(const LiveRange& range) {
  QString shown;
  ShowNode(document.tree().bodyNode(), range, true, shown);
  QStringList problems = Problems();
  const QString read = DifferenceAfterSaving(document);
  if (!read.isEmpty()) problems += "file: " + read;
  for (const QString& problem : problems) shown += "\n" + problem;
  return shown;
}

QStringList TestPage::Problems() {
  QStringList problems = ProblemsOf(document);
  const QString difference = page->DifferenceTo(document.tree());
  if (!difference.isEmpty()) problems += "live page: " + difference;
  return problems;
}
