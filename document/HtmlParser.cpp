#include "HtmlParser.h"

#include <gumbo.h>

#include <array>
#include <cstdlib>
#include <memory>

#include "NestingLimit.h"
#include "PageTree.h"
#include "TreeBuilder.h"

namespace {

constexpr int deepest = 512;        // where browsers stop nesting
constexpr int deepestParsed = 600;  // what lies deeper would stand side by side in any case

// Memory for one parse, freed as a whole: libgumbo frees its tree by recursion, which a hostile page could make too
// deep, and its many small blocks cost more time than the parse.
class Arena {
 public:
  ~Arena() {
    for (void* block : blocks_) std::free(block);
  }

  static void* Allocate(void* self, std::size_t size) { return static_cast<Arena*>(self)->Take(size); }
  static void Release(void*, void*) {}

 private:
  void* Take(std::size_t size) {
    size = (size + 15) & ~std::size_t(15);
    if (size > left_) {
      const std::size_t block = std::max(size, blockSize_);
      blockSize_ = std::min<std::size_t>(blockSize_ * 2, 16u << 20);
      free_ = static_cast<char*>(std::malloc(block));
      if (!free_) std::abort();
      blocks_.push_back(free_);
      left_ = block;
    }
    char* const result = free_;
    free_ += size;
    left_ -= size;
    return result;
  }

  std::vector<void*> blocks_;
  std::size_t blockSize_ = 32u << 10;
  char* free_ = nullptr;
  std::size_t left_ = 0;
};

const Tag* TagOf(const GumboElement& element) {
  Namespace space = Namespace::Html;
  if (element.tag_namespace == GUMBO_NAMESPACE_SVG) space = Namespace::Svg;
  if (element.tag_namespace == GUMBO_NAMESPACE_MATHML) space = Namespace::MathMl;
  if (element.tag != GUMBO_TAG_UNKNOWN && space == Namespace::Html) {
    static std::array<const Tag*, GUMBO_TAG_LAST> known{};
    const Tag*& slot = known[std::size_t(element.tag)];
    if (!slot) slot = Tag::Of(QString::fromLatin1(gumbo_normalized_tagname(element.tag)));
    return slot;
  }
  GumboStringPiece name = element.original_tag;
  QString text;
  if (name.data && name.length > 0) {
    gumbo_tag_from_original_text(&name);
    if (space == Namespace::Svg) {
      if (const char* svg = gumbo_normalize_svg_tagname(&name)) return Tag::Of(QString::fromLatin1(svg), space);
    }
    text = QString::fromUtf8(name.data, qsizetype(name.length)).toLower();
    text.replace(QChar(0), QChar(0xFFFD));
  }
  if (text.isEmpty()) text = QString::fromLatin1(gumbo_normalized_tagname(element.tag));
  return Tag::Of(text, space);
}

// Unlike QString::fromUtf8 it keeps a byte order mark, which in the middle of a page is a character.
QString FromUtf8(const char* text) {
  static constexpr char mark[] = "\xEF\xBB\xBF";
  QString result;
  for (; qstrncmp(text, mark, 3) == 0; text += 3) result += QChar(0xFEFF);
  return result + QString::fromUtf8(text);
}

class TreeMaker {
 public:
  explicit TreeMaker(int depth) : depth_(depth) {}

  // Makes the content of `source` and hands each top-level node to `take`. Not recursive but for TEMPLATE.
  template <typename Take>
  void Children(const GumboVector& source, Take take) {
    struct Level {
      const GumboVector* children;
      unsigned next;
      Node* parent;  // null: the top
    };
    std::vector<Level> levels{{&source, 0, nullptr}};
    Node* lastTop = nullptr;
    while (!levels.empty()) {
      Level& level = levels.back();
      if (level.next == level.children->length) {
        levels.pop_back();
        continue;
      }
      const auto* child = static_cast<const GumboNode*>(level.children->data[level.next++]);
      Node* const parent = level.parent;
      const Node* const previous = parent ? parent->lastChild() : lastTop;
      const bool isText =
          child->type == GUMBO_NODE_TEXT || child->type == GUMBO_NODE_WHITESPACE || child->type == GUMBO_NODE_CDATA;
      if (isText && *child->v.text.text == 0) continue;
      if (isText && previous && previous->IsText()) {
        TreeBuilder::AppendData(TreeBuilder::Detached(previous), FromUtf8(child->v.text.text));
        continue;
      }
      Node* const node = Make(*child);
      if (!node) continue;
      if (parent) {
        TreeBuilder::Insert(parent, node);
      } else {
        take(node);
        lastTop = node;
      }
      if (child->type != GUMBO_NODE_ELEMENT) continue;
      const GumboVector& children = child->v.element.children;
      if (children.length == 0) continue;
      // Beyond the deepest level what would be nested stands side by side.
      const bool tooDeep = depth_ + int(levels.size()) >= deepest;
      levels.push_back({&children, 0, tooDeep ? parent : node});
    }
  }

 private:
  Node* Make(const GumboNode& source) {
    switch (source.type) {
      case GUMBO_NODE_ELEMENT:
        return TreeBuilder::Element(TagOf(source.v.element), AttributesOf(source.v.element));
      case GUMBO_NODE_TEMPLATE: {
        Node* const node = TreeBuilder::Element(Known().templateTag, AttributesOf(source.v.element));
        Node* const content = TreeBuilder::Fragment();
        TreeBuilder::SetContent(node, content);
        if (++templates_ < 64)  // templates inside templates are the one recursion
          Children(source.v.element.children, [&](Node* child) { TreeBuilder::Insert(content, child); });
        --templates_;
        return node;
      }
      case GUMBO_NODE_TEXT:
      case GUMBO_NODE_WHITESPACE:
      case GUMBO_NODE_CDATA:
        return TreeBuilder::Text(FromUtf8(source.v.text.text));
      case GUMBO_NODE_COMMENT:
        return TreeBuilder::Comment(FromUtf8(source.v.text.text));
      case GUMBO_NODE_DOCUMENT:
        break;
    }
    return nullptr;
  }

  static std::vector<Attribute> AttributesOf(const GumboElement& element) {
    std::vector<Attribute> attributes;
    attributes.reserve(element.attributes.length);
    for (unsigned i = 0; i < element.attributes.length; ++i) {
      const auto* attribute = static_cast<const GumboAttribute*>(element.attributes.data[i]);
      QString name = QString::fromUtf8(attribute->name);
      const char* prefix = attribute->attr_namespace == GUMBO_ATTR_NAMESPACE_XLINK   ? "xlink:"
                           : attribute->attr_namespace == GUMBO_ATTR_NAMESPACE_XML   ? "xml:"
                           : attribute->attr_namespace == GUMBO_ATTR_NAMESPACE_XMLNS ? "xmlns:"
                                                                                     : nullptr;
      if (prefix && name != u"xmlns" && !name.startsWith(QLatin1String(prefix))) name.prepend(QLatin1String(prefix));
      attributes.push_back({name, FromUtf8(attribute->value)});
    }
    return attributes;
  }

  int depth_;
  int templates_ = 0;
};

// Where the document type stands in a page that has one: behind nothing but white space and comments.
qsizetype DoctypeOffset(const QByteArray& html) {
  qsizetype at = 0;
  while ((at = html.indexOf('<', at)) >= 0) {
    if (html.mid(at, 9).compare("<!doctype", Qt::CaseInsensitive) == 0) return at;
    if (html.mid(at, 4) != "<!--") {
      at = html.indexOf('>', at);
    } else if (html.mid(at + 4, 1) == ">" || html.mid(at + 4, 2) == "->") {
      at += 4;
    } else {
      const qsizetype plain = html.indexOf("-->", at + 4);
      const qsizetype other = html.indexOf("--!>", at + 4);
      at = other >= 0 && (plain < 0 || other < plain) ? other + 3 : plain;
    }
    if (at < 0) break;
    ++at;
  }
  return 0;
}

class Parse {
 public:
  Parse(const QString& html, const Tag* context) : text_(html.toUtf8()) {
    GumboOptions options = kGumboDefaultOptions;
    options.allocator = &Arena::Allocate;
    options.deallocator = &Arena::Release;
    options.userdata = &arena_;
    options.max_errors = 0;
    if (context) {
      options.fragment_context = GUMBO_TAG_BODY;
      const GumboTag tag = gumbo_tag_enum(context->localName.toUtf8().constData());
      if (tag != GUMBO_TAG_UNKNOWN && tag != GUMBO_TAG_HTML && context->space == Namespace::Html)
        options.fragment_context = tag;
      if (context == Known().html) options.fragment_context = GUMBO_TAG_HTML;
    }
    output_ = gumbo_parse_with_options(&options, text_.constData(), std::size_t(text_.size()));
  }

  const GumboOutput& output() const { return *output_; }
  const QByteArray& text() const { return text_; }

 private:
  QByteArray text_;
  Arena arena_;
  GumboOutput* output_ = nullptr;
};

}  // namespace

std::vector<Node*> ParseFragment(const QString& html, const Tag* context, int depth) {
  std::vector<Node*> nodes;
  if (html.isEmpty() && context != Known().html) return nodes;  // HTML always gets HEAD and BODY
  if (!html.contains(u'<') && !html.contains(u'&') && !html.contains(QChar(0)) && !html.contains(u'\r') &&
      (!context || (!context->isTablePart && !context->isHidden && !context->isRawText && context != Known().html &&
                    context != Known().pre && context != Known().textarea))) {
    // Plain text, which is what most keys give, needs no parser.
    nodes.push_back(TreeBuilder::Text(html));
    return nodes;
  }
  const Parse parse(LimitNesting(html, deepestParsed), context ? context : Known().body);
  TreeMaker(depth).Children(parse.output().root->v.element.children, [&](Node* node) { nodes.push_back(node); });
  return nodes;
}

std::vector<Node*> ParseFragment(const QString& html, const Node* context) {
  while (context && !context->IsElement()) context = context->parent();
  return ParseFragment(html, context ? context->tag() : nullptr, context ? context->Depth() : 0);
}

void ParseDocument(const QString& html, PageTree& tree) {
  const Parse parse(LimitNesting(html, deepestParsed), nullptr);
  const GumboDocument& source = parse.output().document->v.document;
  Node* const root = TreeBuilder::Document();
  Node* type = nullptr;
  unsigned typeOffset = 0;
  if (source.has_doctype) {
    type = TreeBuilder::DocumentType(QString::fromUtf8(source.name), QString::fromUtf8(source.public_identifier),
                                     QString::fromUtf8(source.system_identifier));
    TreeBuilder::Insert(root, type);
    // The parser doesn't tell where it stood, and comments may come before it.
    typeOffset = unsigned(DoctypeOffset(parse.text()));
  }
  unsigned index = 0;
  TreeMaker(0).Children(source.children, [&](Node* node) {
    const auto* child = static_cast<const GumboNode*>(source.children.data[index++]);
    const bool beforeType = type && node->type() == Node::Type::Comment && child->v.text.start_pos.offset < typeOffset;
    TreeBuilder::Insert(root, node, beforeType ? type : nullptr);
  });
  tree.SetQuirks(source.doc_type_quirks_mode == GUMBO_DOCTYPE_QUIRKS);
  tree.Load(root);
}
