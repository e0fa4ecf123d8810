#include "TreeCodec.h"

#include <vector>

#include "TreeBuilder.h"

namespace {

enum Kind {
  HtmlElement = 1,
  SvgElement = 2,
  TextNode = 3,
  MathElement = 4,
  CommentNode = 8,
  DocumentNode = 9,
  DoctypeNode = 10,
  FragmentNode = 11
};

constexpr QChar byteOrderMark(0xFEFF);
constexpr QChar guard(1);

constexpr NodeId largestId = 1 << 26;  // the document keeps a table by id

int CountChildren(const Node* node) {
  int count = 0;
  for (const Node* child = node->firstChild(); child; child = child->next()) ++count;
  return count;
}

void EncodeOne(const Node* node, int children, QJsonArray& out) {
  switch (node->type()) {
    case Node::Type::Element: {
      const Kind kinds[] = {HtmlElement, SvgElement, MathElement};
      out.append(kinds[int(node->tag()->space)]);
      out.append(node->id());
      out.append(node->tag()->localName);
      out.append(int(node->attributes().size()));
      for (const Attribute& attribute : node->attributes()) {
        out.append(ToWire(attribute.name));
        out.append(ToWire(attribute.value));
      }
      out.append(children);
      break;
    }
    case Node::Type::Text:
    case Node::Type::Comment:
      out.append(node->IsText() ? TextNode : CommentNode);
      out.append(node->id());
      out.append(ToWire(node->data()));
      break;
    case Node::Type::DocumentType:
      out.append(DoctypeNode);
      out.append(node->id());
      out.append(node->data());
      out.append(node->identifiers().value(0));
      out.append(node->identifiers().value(1));
      break;
    case Node::Type::Document:
    case Node::Type::Fragment:
      out.append(node->type() == Node::Type::Document ? DocumentNode : FragmentNode);
      out.append(node->id());
      out.append(children);
      break;
  }
}

struct Reader {
  const QJsonArray& in;
  int& at;
  const KnownNode& known;
  bool broken = false;

  QJsonValue Next() {
    if (at >= in.size()) {
      broken = true;
      return {};
    }
    return in.at(at++);
  }
  int Number() {
    const QJsonValue value = Next();
    broken = broken || !value.isDouble() || value.toInt() != value.toDouble();
    return value.toInt();
  }
  QString Text() {
    const QJsonValue value = Next();
    broken = broken || !value.isString();
    return value.toString();
  }

  // One node without its children.
  Node* One(int& children) {
    children = 0;
    const int kind = Number();
    const NodeId id = Number();
    broken = broken || id > largestId || id < -largestId;
    if (broken) return nullptr;
    Node* node = known ? known(id) : nullptr;
    const auto make = [&](Node::Type type) {
      if (!node || node->type() != type) node = TreeBuilder::Bare(type);
      TreeBuilder::SetId(node, id);
    };
    switch (kind) {
      case HtmlElement:
      case SvgElement:
      case MathElement: {
        make(Node::Type::Element);
        const Namespace space = kind == HtmlElement  ? Namespace::Html
                                : kind == SvgElement ? Namespace::Svg
                                                     : Namespace::MathMl;
        const Tag* const tag = Tag::Of(Text(), space);
        std::vector<Attribute> attributes;
        for (int count = Number(); count > 0 && !broken; --count) {
          const QString name = FromWire(Text());
          attributes.push_back({name, FromWire(Text())});
        }
        TreeBuilder::SetElement(node, tag, std::move(attributes));
        children = Number();
        break;
      }
      case TextNode:
      case CommentNode:
        make(kind == TextNode ? Node::Type::Text : Node::Type::Comment);
        TreeBuilder::SetData(node, FromWire(Text()));
        break;
      case DoctypeNode: {
        make(Node::Type::DocumentType);
        TreeBuilder::SetData(node, Text());
        const QString publicId = Text();
        TreeBuilder::SetIdentifiers(node, publicId, Text());
        break;
      }
      case DocumentNode:
      case FragmentNode:
        make(kind == DocumentNode ? Node::Type::Document : Node::Type::Fragment);
        children = Number();
        break;
      default:
        broken = true;
    }
    return node;
  }
};

}  // namespace

QString ToWire(const QString& text) {
  return text.startsWith(byteOrderMark) || text.startsWith(guard) ? guard + text : text;
}

QString FromWire(const QString& text) {
  return text.startsWith(guard) ? text.mid(1) : text;
}

void EncodeTree(const Node* tree, QJsonArray& out) {
  const Node* node = tree;
  while (true) {
    EncodeOne(node, CountChildren(node), out);
    if (node->firstChild()) {
      node = node->firstChild();
      continue;
    }
    while (true) {
      if (node->content()) EncodeTree(node->content(), out);  // follows the TEMPLATE's children
      if (node == tree) return;
      if (node->next()) break;
      node = node->parent();
    }
    node = node->next();
  }
}

void EncodeAlone(const Node* element, QJsonArray& out) {
  EncodeOne(element, 0, out);
}

Node* DecodeTree(const QJsonArray& in, int& from, const KnownNode& known) {
  Reader reader{in, from, known};
  struct Level {
    Node* node;
    int left;
  };
  std::vector<Level> levels;
  Node* top = nullptr;
  do {
    int children = 0;
    Node* const node = reader.One(children);
    if (node && !top) top = node;
    if (reader.broken) {
      if (node && node != top) DestroyTree(node);
      if (top) DestroyTree(top);
      return nullptr;
    }
    if (!levels.empty()) {
      TreeBuilder::Insert(levels.back().node, node);
      --levels.back().left;
    }
    levels.push_back({node, children});
    while (!levels.empty() && levels.back().left <= 0) {
      Node* const done = levels.back().node;
      levels.pop_back();
      if (done->tag() == Known().templateTag) {
        TreeBuilder::SetContent(done, nullptr);  // that of a node that was known
        TreeBuilder::SetContent(done, DecodeTree(in, from, known));
        if (!done->content()) {
          DestroyTree(top);
          return nullptr;
        }
      }
    }
  } while (!levels.empty());
  return top;
}
