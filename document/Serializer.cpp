#include "Serializer.h"

#include <QSet>
#include <utility>

#include "PageText.h"
#include "PageTree.h"
#include "TreeLease.h"

namespace {

// Whether the element's start tag would end an element that it is in.
bool ClosesOpenElement(const Node* element) {
  const Opening opening = element->tag()->opening;
  if (opening == Opening::Plain) return false;
  const Tag* const outside = element->parent() ? element->parent()->tag() : nullptr;
  if (opening == Opening::Option) return outside == Known().option;
  if (opening == Opening::Heading && outside && outside->opening == Opening::Heading) return true;
  const bool endsParagraph = opening != Opening::Link && opening != Opening::Nobr && opening != Opening::Button;
  bool isItemSought = true;
  for (const Node* node = element->parent(); node && node->IsElement() && !node->tag()->isScope;
       node = node->parent()) {
    const Tag* const tag = node->tag();
    const Opening open = tag->opening;
    if (endsParagraph && tag == Known().p) return true;
    if (opening == open && (opening == Opening::Link || opening == Opening::Nobr || opening == Opening::Button))
      return true;
    if (opening == Opening::Item || opening == Opening::Term) {
      if (isItemSought && open == opening) return true;
      if (tag->isBlock && tag != Known().address && tag != Known().div && tag != Known().p) isItemSought = false;
    }
    if (open == Opening::Button && endsParagraph) break;
  }
  return false;
}

// Text as it is in the model, or as it stands in a file.
enum class Form { Source, File };

class Writer {
 public:
  // `lease`, where there is one: the tree is somebody else's, and what is written is of no use once that has ended.
  explicit Writer(bool scripting, Form form = Form::Source, const TreeLease* lease = nullptr)
      : scripting_(scripting), form_(form), lease_(lease) {}
  QString Take() { return std::move(out_); }
  bool dependsOnEncoding() const { return dependsOnEncoding_; }

  void StartTag(const Node* element) {
    out_ += u'<';
    out_ += element->tag()->localName;
    const Attribute* style = nullptr;
    for (const Attribute& attribute : element->attributes()) {
      if (!style && attribute.name == u"style") {
        style = &attribute;
      } else {
        WriteAttribute(attribute);
      }
    }
    if (style) WriteAttribute(*style);
    out_ += element->tag()->isVoid ? QStringView(u" />") : QStringView(u">");
    if (element->tag()->dropsLineEnd) lineEndDrops_ = out_.size();
  }

  void EndTag(const Node* element) {
    if (element->tag()->isVoid || isAtEnd_) return;
    if (element == tableOfForm_) CloseFormOfTable();
    if (IsFormOfTable(element)) {
      tableOfForm_ = TableAround(element);
      if (tableOfForm_) return;
    }
    out_ += u"</";
    out_ += element->tag()->localName;
    out_ += u'>';
  }

  void Text(const Node* text, int from, int to) {
    const QStringView data = QStringView(text->data()).mid(from, to - from);
    if (lineEndDrops_ == out_.size() && data.startsWith(u'\n')) out_ += u'\n';
    if (IsRaw(text->parent())) {
      out_ += data;
    } else {
      Escape(data, false);
    }
  }

  void Leaf(const Node* node) {
    switch (node->type()) {
      case Node::Type::Text:
        Text(node, 0, node->Length());
        break;
      case Node::Type::Comment:
        out_ += u"<!--";
        out_ += node->data();
        out_ += u"-->";
        break;
      case Node::Type::DocumentType:
        out_ += u"<!DOCTYPE ";
        out_ += node->data();
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
      if (lease_ && lease_->HasEnded()) return;
      if (node->IsElement()) {
        if (node != root) PlaceBefore(node);
        if (node != earlyTable_) StartTag(node);
        if (node == earlyTable_) earlyTable_ = nullptr;
        if (node->content()) Children(node->content());
      } else {
        Leaf(node);
      }
      // What a script has put into a void element has no form as text.
      if (node->firstChild() && !(node->IsElement() && node->tag()->isVoid)) {
        node = node->firstChild();
        continue;
      }
      while (true) {
        // Nothing ends a PLAINTEXT but the end of the page; an end tag would be its text.
        if (node->tag() == Known().plaintext && EndsPage(node, root)) isAtEnd_ = true;
        if (isAtEnd_) return;
        if (node->IsElement()) EndTag(node);
        if (node == root) return;
        if (node->next()) break;
        node = node->parent();
      }
      node = node->next();
    }
  }

  void Children(const Node* parent) {
    if (parent->IsElement() && parent->content()) Children(parent->content());
    for (const Node* child = parent->firstChild(); child; child = child->next()) Subtree(child);
  }

 private:
  // --- What the parser makes of a tree can't always be written down tag by tag

  // What stands in a TABLE where it can't comes in front of it, also into what it could not be opened in, as a link
  // inside of a link. So it is written where it came from, inside of the TABLE that follows.
  void PlaceBefore(const Node* element) {
    if (!nestedForms_.empty() && nestedForms_.contains(element)) out_ += u"</form>";
    if (IsForm(element)) {
      CloseFormOfTable();
      FindNestedForms(element);
    }
    if (earlyTable_ || !(element->tag() == Known().plaintext || ClosesOpenElement(element))) return;
    const Node* const table = TableBehind(element);
    if (!table) return;
    StartTag(table);
    earlyTable_ = table;
  }

  static bool IsForm(const Node* node) { return node->tag() == Known().form; }

  // A FORM in a FORM comes of an end tag that stood further inside than its start tag. Whatever the end tag would end
  // on its way has to be begun behind it.
  void FindNestedForms(const Node* form) {
    for (const Node* node = form->parent(); node; node = node->parent())
      if (IsForm(node)) return;  // has been found with the outermost one
    for (const Node* node = NextInTree(form, form); node; node = NextInTree(node, form)) {
      if (!IsForm(node)) continue;
      const Node* first = node;
      while (first->parent() != form && first->parent()->tag()->endsByItself) first = first->parent();
      nestedForms_.insert(first->parent() == form && first != node ? node : first);
    }
  }

  // An empty FORM among the rows of a table owns the controls in the cells as long as it isn't ended.
  static bool IsFormOfTable(const Node* element) {
    return IsForm(element) && !element->firstChild() && element->parent() && element->parent()->IsElement() &&
           element->parent()->tag()->isTablePart;
  }
  static const Node* TableAround(const Node* node) {
    while (node && node->tag() != Known().table) node = node->parent();
    return node;
  }
  void CloseFormOfTable() {
    if (std::exchange(tableOfForm_, nullptr)) out_ += u"</form>";
  }

  // The TABLE among the siblings behind `element` if all up to it would come in front of that table.
  static const Node* TableBehind(const Node* element) {
    for (const Node* node = element->next(); node; node = node->next()) {
      if (node->tag() == Known().table) return node;
      if (node->IsText() ? node->data().trimmed().isEmpty() : !node->IsElement() || node->tag()->isOfTable)
        return nullptr;
    }
    return nullptr;
  }

  static bool EndsPage(const Node* plaintext, const Node* root) {
    const Node* const next = NextSkippingChildren(plaintext, root);
    return !next || (next->tag() == Known().table && !next->firstChild() && !NextSkippingChildren(next, root));
  }

  void WriteAttribute(const Attribute& attribute) {
    out_ += u' ';
    out_ += attribute.name;
    out_ += u"=\"";
    Escape(attribute.value, true);
    out_ += u'"';
    if (form_ == Form::File) dependsOnEncoding_ |= DependsOnEncoding(attribute.name, attribute.value);
  }

  bool IsRaw(const Node* parent) const {
    return parent && parent->IsElement() &&
           (parent->tag()->isRawText || (scripting_ && parent->IsElement(Known().noscript)));
  }

  void Escape(QStringView text, bool inAttribute) {
    if (form_ == Form::File) return AppendPageText(out_, text, inAttribute ? PagePart::Value : PagePart::Text);
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
          if (text[i] >= u' ' || text[i] == u'\t' || text[i] == u'\n' || text[i].isNull()) continue;
          break;
      }
      const bool isControl = text[i] < u' ';  // a carriage return would be read as a line end, the others as mistakes
      if (entity.isEmpty() && !isControl) continue;
      out_ += text.mid(from, i - from);
      if (isControl) {
        out_ += QStringLiteral("&#%1;").arg(text[i].unicode());
      } else {
        out_ += entity;
      }
      from = i + 1;
    }
    out_ += text.mid(from);
  }

  QString out_;
  bool scripting_;
  Form form_;
  const TreeLease* lease_;
  qsizetype lineEndDrops_ = -1;        // where a reader drops a line end, so that one more is written there
  bool isAtEnd_ = false;               // in a text that only the end of the page ends
  const Node* earlyTable_ = nullptr;   // whose start tag is written already
  const Node* tableOfForm_ = nullptr;  // that holds a FORM which isn't ended yet
  QSet<const Node*> nestedForms_;      // in front of which the FORM around has to end
  bool dependsOnEncoding_ = false;     // on the one that the page was loaded in
};

const Node* CommonAncestor(const Node* a, const Node* b) {
  while (!a->Contains(b)) a = a->parent();
  return a;
}

PageToWrite FilePage(const PageTree& tree, const TreeLease* lease) {
  const Node* const html = tree.htmlNode();
  if (!html) return {};
  Writer writer(tree.scripting(), Form::File, lease);
  writer.Subtree(html);
  return {writer.Take(), writer.dependsOnEncoding() ? tree.encoding() : QString()};
}

}  // namespace

PageToWrite PageForFile(const PageTree& tree) {
  return FilePage(tree, nullptr);
}

std::optional<PageToWrite> PageForFile(TreeLease& lease) {
  const TreeLease::Reading reading(lease);
  if (lease.HasEnded()) return std::nullopt;
  PageToWrite page = FilePage(lease.tree(), &lease);
  if (lease.HasEnded()) return std::nullopt;
  return page;
}

QByteArray PageToWrite::Bytes() const {
  return text.isEmpty() ? QByteArray() : PageFileBytes(text, encoding);
}

QByteArray FileHtml(const PageTree& tree) {
  return PageForFile(tree).Bytes();
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
  for (const Node* n = first; n != common; n = n->parent())
    if (n->IsElement()) open.insert(open.begin(), n);
  for (const Node* element : open) writer.StartTag(element);
  // Then node after node, closing what ends on the way.
  const Node* node = NodeBehind(range.start);
  const Node* within = first;  // innermost container of the place that has been reached
  if (first->IsText()) {
    writer.Text(first, range.start.offset, first->Length());
    within = first->parent();
    node = NextSkippingChildren(first);
  }
  const auto closeTo = [&](const Node* ancestor) {
    for (; within != ancestor; within = within->parent()) writer.EndTag(within);
  };
  const Node* const stop = last->IsText() ? nullptr : NodeBehind(range.end);
  while (node && node != stop) {
    closeTo(node->parent());
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
