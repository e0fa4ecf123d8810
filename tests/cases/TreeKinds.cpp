#include "TreeKinds.h"

#include <algorithm>

#include "HTMLDocument.h"
#include "HtmlParser.h"
#include "KindTable.h"

namespace {

// Attributes that the parser moves into a namespace when they stand on a foreign element.
bool IsAdjusted(const QString& name) {
  static const QStringList names = {"xlink:actuate", "xlink:arcrole", "xlink:href", "xlink:role", "xlink:show",
                                    "xlink:title",   "xlink:type",    "xml:lang",   "xml:space",  "xmlns:xlink"};
  return names.contains(name);
}

QString AttributeName(const Node* element, const QString& name) {
  if (element->tag()->space == Namespace::Html || !IsAdjusted(name)) return name;
  return QString(name).replace(u':', u' ');
}

QString ElementLine(const Node* element) {
  const QString prefix = element->tag()->space == Namespace::Svg      ? QStringLiteral("svg ")
                         : element->tag()->space == Namespace::MathMl ? QStringLiteral("math ")
                                                                      : QString();
  return u'<' + prefix + element->tag()->localName + u'>';
}

QString DoctypeLine(const Node* type) {
  QString line = "<!DOCTYPE " + type->data();
  const QString publicId = type->identifiers().value(0);
  const QString systemId = type->identifiers().value(1);
  if (!publicId.isEmpty() || !systemId.isEmpty()) line += " \"" + publicId + "\" \"" + systemId + '"';
  return line + '>';
}

void DumpNode(const Node* node, int depth, QStringList& lines);

void DumpChildren(const Node* parent, int depth, QStringList& lines) {
  for (const Node* child = parent->firstChild(); child; child = child->next()) DumpNode(child, depth, lines);
}

void DumpNode(const Node* node, int depth, QStringList& lines) {
  const QString indent = "| " + QString(2 * depth, u' ');
  switch (node->type()) {
    case Node::Type::Text:
      lines += indent + u'"' + node->data() + u'"';
      return;
    case Node::Type::Comment:
      lines += indent + "<!-- " + node->data() + " -->";
      return;
    case Node::Type::DocumentType:
      lines += indent + DoctypeLine(node);
      return;
    case Node::Type::Element:
      break;
    default:
      lines += indent + "(unexpected node)";
      return;
  }
  lines += indent + ElementLine(node);
  QStringList attributes;
  for (const Attribute& attribute : node->attributes())
    attributes += AttributeName(node, attribute.name) + "=\"" + attribute.value + '"';
  std::sort(attributes.begin(), attributes.end());
  for (const QString& attribute : attributes) lines += indent + "  " + attribute;
  if (node->content()) {
    lines += indent + "  content";
    DumpChildren(node->content(), depth + 2, lines);
  }
  DumpChildren(node, depth + 1, lines);
}

CaseOutcome PlayFragment(const QJsonObject& one) {
  const QString context = one["context"].toString();
  if (context.contains(u' ')) return {{}, "a context that no page of ours has: " + context};
  const std::vector<Node*> nodes = ParseFragment(one["data"].toString(), Tag::Of(context));
  QStringList lines;
  for (Node* node : nodes) {
    DumpNode(node, 0, lines);
    DestroyTree(node);
  }
  CaseCheck check;
  check.Equal("tree", one["tree"], lines.join(u'\n'));
  return check.Outcome();
}

CaseOutcome PlayDocument(const QJsonObject& one) {
  HTMLDocument document;
  ParseDocument(one["data"].toString(), document.tree());
  QStringList lines;
  DumpChildren(document.tree().root(), 0, lines);
  CaseCheck check;
  check.Equal("tree", one["tree"], lines.join(u'\n'));
  return check.Outcome();
}

}  // namespace

void RegisterTreeKinds(KindTable& table) {
  table.Add("fragments", PlayFragment);
  table.Add("documents", PlayDocument);
}
