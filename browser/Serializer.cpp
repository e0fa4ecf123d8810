#include "Serializer.h"

namespace {

class Writer {
 public:
  explicit Writer(bool scripting, bool references = false) : scripting_(scripting), references_(references) {}
  QString Take() { return std::move(out_); }

  void StartTag(const Node* element) {
    out_ += u'<';
    out_ += element->tag->localName;
    const Attribute* style = nullptr;
    for (const Attribute& attribute : element->attributes) {
      if (!style && attribute.name == u"style") {
        style = &attribute;
      } else {
        WriteAttribute(attribute);
      }
    }
    if (style) WriteAttribute(*style);
    out_ += element->tag->isVoid ? QStringView(u" />") : QStringView(u">");
  }

  void EndTag(const Node* element) {
    if (element->tag->isVoid) return;
    out_ += u"</";
    out_ += element->tag->localName;
    out_ += u'>';
  }

  void Text(const Node* text, int from, int to) {
    const QStringView data = QStringView(text->data).mid(from, to - from);
    if (IsRaw(text->parent)) {
      out_ += data;
    } else {
      Escape(data, false);
    }
  }

  void Leaf(const Node* node) {
    switch (node->type) {
      case Node::Type::Text:
        Text(node, 0, node->Length());
        break;
      case Node::Type::Comment:
        out_ += u"<!--";
        out_ += node->data;
        out_ += u"-->";
        break;
      case Node::Type::DocumentType:
        out_ += u"<!DOCTYPE ";
        out_ += node->data;
        out_ += u'>';
        break;
      default:
        break;
    }
  }

  // The whole subtree, tags of `root` included where it is an element. Not recursive but for TEMPLATE.
  void Subtree(const Node* root) {
    const Node* node = root;
    while (true) {
      if (node->IsElement()) {
        StartTag(node);
        if (node->content) Children(node->content);
      } else {
        Leaf(node);
      }
      // What a script has put into a void element has no form as text.
      if (node->firstChild && !(node->IsElement() && node->tag->isVoid)) {
        node = node->firstChild;
        continue;
      }
      while (true) {
        if (node->IsElement()) EndTag(node);
        if (node == root) return;
        if (node->next) break;
        node = node->parent;
      }
      node = node->next;
    }
  }

  void Children(const Node* parent) {
    if (parent->IsElement() && parent->content) Children(parent->content);
    for (const Node* child = parent->firstChild; child; child = child->next) Subtree(child);
  }

 private:
  void WriteAttribute(const Attribute& attribute) {
    out_ += u' ';
    out_ += attribute.name;
    out_ += u"=\"";
    Escape(attribute.value, true);
    out_ += u'"';
  }

  bool IsRaw(const Node* parent) const {
    return parent && parent->IsElement() &&
           (parent->tag->isRawText || (scripting_ && parent->IsElement(Known().noscript)));
  }

  void Escape(QStringView text, bool inAttribute) {
    qsizetype from = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
      QStringView entity;
      switch (text[i].unicode()) {
        case '&':
          entity = u"&amp;";
          break;
        case 0xA0:
          entity = u"&nbsp;";
          break;
        case '"':
          if (inAttribute) entity = u"&quot;";
          break;
        case '<':
          if (!inAttribute) entity = u"&lt;";
          break;
        case '>':
          if (!inAttribute) entity = u"&gt;";
          break;
        default:
          if (!references_ || inAttribute || text[i].unicode() < 0x80) continue;
          out_ += text.mid(from, i - from);
          from = i + 1;
          char32_t code = text[i].unicode();
          if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            code = QChar::surrogateToUcs4(text[i], text[i + 1]);
            from = ++i + 1;
          }
          out_ += QStringLiteral("&#%1;").arg(uint(code));
          continue;
      }
      if (entity.isEmpty()) continue;
      out_ += text.mid(from, i - from);
      out_ += entity;
      from = i + 1;
    }
    out_ += text.mid(from);
  }

  QString out_;
  bool scripting_;
  bool references_;
};

const Node* CommonAncestor(const Node* a, const Node* b) {
  while (!a->Contains(b)) a = a->parent;
  return a;
}

}  // namespace

QByteArray FileHtml(const Node* node, bool scripting) {
  Writer writer(scripting, true);
  writer.Subtree(node);
  return writer.Take().toUtf8();
}

QString OuterHtml(const Node* node, bool scripting) {
  Writer writer(scripting);
  writer.Subtree(node);
  return writer.Take();
}

QString InnerHtml(const Node* node, bool scripting) {
  Writer writer(scripting);
  writer.Children(node);
  return writer.Take();
}

QString RangeHtml(const LiveRange& range, bool scripting) {
  Writer writer(scripting);
  const Node* const first = range.start.container;
  const Node* const last = range.end.container;
  if (first == last && first->IsText()) {
    writer.Text(first, range.start.offset, range.end.offset);
    return writer.Take();
  }
  const Node* const common = CommonAncestor(first, last);
  // The elements that are cut by the start are opened first: they and their tags belong to the clone.
  std::vector<const Node*> open;
  for (const Node* n = first; n != common; n = n->parent)
    if (n->IsElement()) open.insert(open.begin(), n);
  for (const Node* element : open) writer.StartTag(element);
  // Then node after node, closing what ends on the way.
  const Node* node = NodeBehind(range.start);
  const Node* within = first;  // innermost container of the place that has been reached
  if (first->IsText()) {
    writer.Text(first, range.start.offset, first->Length());
    within = first->parent;
    node = NextSkippingChildren(first);
  }
  const auto closeTo = [&](const Node* ancestor) {
    for (; within != ancestor; within = within->parent) writer.EndTag(within);
  };
  const Node* const stop = last->IsText() ? nullptr : NodeBehind(range.end);
  while (node && node != stop) {
    closeTo(node->parent);
    if (node == last && node->IsText()) {
      writer.Text(node, 0, range.end.offset);
      break;
    }
    if (node->Contains(last)) {
      writer.StartTag(node);
      within = node;
      node = NextInTree(node);
    } else {
      writer.Subtree(node);
      node = NextSkippingChildren(node);
    }
  }
  closeTo(common);
  return writer.Take();
}
