// Handles on elements of the page. A handle is cheap to copy, may be none, and stays safe when its element has been
// removed: such an element still answers, but what would need its place in the page does nothing.
#pragma once

#include <QMetaType>
#include <QString>
#include <memory>

#include "Node.h"

class HTMLElementCollection;
class HTMLStyle;
class HTMLTxtRange;

class HTMLElement {
 public:
  HTMLElement() = default;  // none
  explicit HTMLElement(const Node* node) : node_(node) {}

  explicit operator bool() const { return bool(node_); }
  bool operator==(const HTMLElement&) const = default;

  QString tagName() const;  // upper case for HTML elements
  QString id() const;
  HTMLElement parentElement() const;       // none for HTML and for the top of a removed tree
  HTMLElementCollection children() const;  // direct element children
  HTMLElementCollection all() const;       // all elements inside, in document order
  int sourceIndex() const;                 // index in the document's `all`; -1 for a removed element

  // The element with its tags. Writing replaces it by parsed HTML; "" removes it.
  QString outerHTML() const;
  void setOuterHTML(const QString& html);

  // `where`: "BeforeBegin", "AfterBegin", "BeforeEnd" or "AfterEnd", in any case. Scripts in `html` don't run.
  void insertAdjacentHTML(const QString& where, const QString& html);

  // The raw text of the attribute, "" when absent; colours as "#RRGGBB". Names in any case. The flags are accepted
  // for the interface's sake and change nothing.
  QString getAttribute(const QString& name, int flags = 0) const;
  void setAttribute(const QString& name, const QString& value);
  bool removeAttribute(const QString& name, int flags = 0);  // whether there was one

  HTMLStyle style() const;

  const Node* node() const { return node_.get(); }

 protected:
  NodeRef node_;
};

Q_DECLARE_METATYPE(HTMLElement)

// The BODY of a page.
class HTMLBodyElement : public HTMLElement {
 public:
  using HTMLElement::HTMLElement;

  // A range over the whole text of the page.
  std::shared_ptr<HTMLTxtRange> createTextRange() const;

  // Colours read as "#RRGGBB", or "" when absent or invalid. Writing "" empties an attribute that is there and makes
  // none.
  QString text() const;
  void setText(const QString& color);
  QString link() const;
  void setLink(const QString& color);
  QString vLink() const;
  void setVLink(const QString& color);
  void setBgColor(const QString& color);
  QString background() const;  // the raw attribute
  void setBackground(const QString& picture);

 private:
  void WriteColor(const QString& name, const QString& color);
};

// A live list of elements.
class HTMLElementCollection {
 public:
  enum class Kind { Children, Descendants };
  HTMLElementCollection(HTMLElement root, Kind kind) : root_(std::move(root)), kind_(kind) {}
  explicit HTMLElementCollection(const PageTree* all) : tree_(all) {}

  int length() const;
  HTMLElement item(int index) const;  // none outside 0 .. length() - 1

 private:
  HTMLElement root_;
  Kind kind_ = Kind::Descendants;
  const PageTree* tree_ = nullptr;  // the document's `all`
};

// The inline style of an element. Values read as CSSOM gives them, but for quotes round font names, which are left
// out, so that they fit into an attribute; keywords come in lower case. "" is an absent declaration; writing ""
// removes it.
class HTMLStyle {
 public:
  explicit HTMLStyle(HTMLElement element) : element_(std::move(element)) {}
  QString fontFamily() const;
  void setFontFamily(const QString& value);
  QString fontSize() const;
  void setFontSize(const QString& value);
  QString textAlign() const;
  void setTextAlign(const QString& value);

 private:
  void Set(const QString& property, const QString& value);
  HTMLElement element_;
};
