#include "OneFilePage.h"

#include <QRegularExpression>
#include <QUrl>

#include "AsciiText.h"
#include "Gateway.h"
#include "HtmlParser.h"
#include "LegacyColor.h"
#include "Numbers.h"
#include "PageText.h"
#include "Serializer.h"
#include "StyleDeclarations.h"
#include "TreeBuilder.h"

namespace {

bool IsOneOf(const QString& name, std::initializer_list<const char16_t*> names) {
  for (const char16_t* const one : names)
    if (name == QStringView(one)) return true;
  return false;
}

// What runs, loads others, or speaks for the whole document.
bool IsLeftOut(const Node* element) {
  return IsOneOf(element->tag()->localName, {u"script", u"noscript", u"object", u"embed", u"applet", u"base", u"meta",
                                             u"link", u"style", u"title", u"template", u"frame", u"bgsound"});
}

QString TextIn(const Node* element) {
  QString text;
  for (const Node* node = element; node; node = NextInTree(node, element))
    if (node->IsText()) text += node->data();
  return text;
}

QString ValueOf(const Node* element, const char* name) {
  const Attribute* const attribute = element ? element->FindAttribute(QLatin1String(name)) : nullptr;
  return attribute ? attribute->value : QString();
}

// As a browser reads an address: controls and white space in its scheme don't count.
bool IsScript(const QString& address) {
  QString scheme;
  for (const QChar c : address) {
    if (c > u' ') scheme += c;
    if (scheme.size() > 11) break;
  }
  return scheme.startsWith(u"javascript:", Qt::CaseInsensitive) || scheme.startsWith(u"vbscript:", Qt::CaseInsensitive);
}

QString Escaped(const QString& value) {
  return value.toHtmlEscaped();
}

bool IsShowing(const Node* node) {
  return node->IsElement() || (node->IsText() && !node->data().trimmed().isEmpty());
}

}  // namespace

OneFilePage::OneFilePage(const QString& file, const QByteArray& bytes, int number, const QMap<QString, int>& numbers,
                         OneFilePictures& pictures)
    : file_(file), number_(number), numbers_(numbers), pictures_(pictures) {
  scope_.html = u'#' + Id(number);
  scope_.body = scope_.html + QStringLiteral(">.body");
  scope_.idPrefix = Id(number) + u'-';
  scope_.picture = [this](const QString& url) {
    const int picture = pictures_.Find(file_, url);
    if (picture < 0) return QString();
    pictures_.UseInStyle(picture);
    return OneFilePictures::Variable(picture);
  };
  PageTree& tree = document_.tree();
  ParseDocument(DecodePage(bytes).text, tree);
  std::vector<const Node*> elements;  // without those that go out with one around them
  for (const Node* node = tree.root(); node;) {
    if (node->IsElement()) elements.push_back(node);
    node = node->IsElement() && IsLeftOut(node) ? NextSkippingChildren(node) : NextInTree(node);
  }
  Gateway gateway(tree);
  for (const Node* const element : elements) {
    if (!IsLeftOut(element)) {
      Tidy(element);
      continue;
    }
    if (title_.isNull() && element->tag() == Known().title) title_ = TextIn(element).simplified();
    if (IsOneOf(element->tag()->localName, {u"style", u"link"})) TakeSheet(element);
    gateway.Remove(element);
  }
  TakeBody();
}

void OneFilePage::TakeSheet(const Node* element) {
  if (element->tag()->localName != u"style") return;
  const ScopedStyles styles = ScopeStyleSheet(TextIn(element), scope_);
  const QString media = ValueOf(element, "media").trimmed();
  if (!IsMediaQuery(media)) return;
  sheets_ += media.isEmpty() ? styles.rules : QStringLiteral("@media %1{%2}").arg(media, styles.rules);
  if (media.isEmpty()) background_ += styles.background;
}

void OneFilePage::Tidy(const Node* element) {
  Gateway gateway(document_.tree());
  // A text that nothing but the end of the file ends.
  if (element->tag() == Known().plaintext) {
    gateway.Wrap(element, element, TreeBuilder::Element(Known().pre));
    gateway.Unwrap(element);
    return;
  }
  // A copy: they change on the way.
  for (const Attribute& attribute : std::vector<Attribute>(element->attributes())) TidyAttribute(element, attribute);
  if (element->tag()->localName == u"iframe") gateway.SetAttribute(element, "sandbox", QString());
}

bool OneFilePage::IsPictureOf(const Node* element, const QString& attribute) const {
  if (attribute == u"background") return true;
  return attribute == u"src" && (element->tag() == Known().img || (element->tag()->localName == u"input" &&
                                                                   EqualsNoCase(ValueOf(element, "type"), "image")));
}

void OneFilePage::TidyAttribute(const Node* element, const Attribute& attribute) {
  Gateway gateway(document_.tree());
  const QString& name = attribute.name;
  const QString& value = attribute.value;
  const bool isBody = element == document_.tree().bodyNode();
  if (name.startsWith(u"on") || IsOneOf(name, {u"srcset", u"lowsrc", u"dynsrc", u"ping", u"srcdoc", u"autofocus"}) ||
      IsScript(value)) {
    gateway.RemoveAttribute(element, name);
  } else if (IsPictureOf(element, name)) {
    const int picture = pictures_.Find(file_, value);
    if (picture < 0) return;
    if (name == u"background") {
      pictures_.UseInStyle(picture);
      gateway.RemoveAttribute(element, name);
      const QString declaration = QStringLiteral("background-image:") + OneFilePictures::Variable(picture);
      if (isBody) {
        background_.prepend(declaration + u';');
      } else {
        AddStyle(element, declaration);
      }
    } else {
      pictures_.UseInTag(picture);
      uses_.push_back({element, name, picture});
    }
  } else if (name == u"style") {
    gateway.SetAttribute(element, name, WithPictures(value, scope_));
  } else if (name == u"href" && IsOneOf(element->tag()->localName, {u"a", u"area"})) {
    FollowLink(element, attribute);
  } else if (name == u"id" || (name == u"name" && IsOneOf(element->tag()->localName, {u"a", u"map"})) ||
             IsOneOf(name, {u"for", u"headers", u"list", u"form", u"aria-labelledby", u"aria-describedby",
                            u"aria-controls", u"aria-owns"})) {
    QStringList ids = value.split(u' ', Qt::SkipEmptyParts);
    for (QString& id : ids) id.prepend(scope_.idPrefix);
    gateway.SetAttribute(element, name, ids.join(u' '));
  } else if (value.startsWith(u'#') && (name == u"usemap" || name.endsWith(u"href"))) {
    gateway.SetAttribute(element, name, u'#' + scope_.idPrefix + value.mid(1));
  } else if (value.startsWith(u"url(#")) {
    gateway.SetAttribute(element, name, WithPictures(value, scope_));
  }
}

// A link to a page of the project leads to its part, one within the page stays in it.
void OneFilePage::FollowLink(const Node* element, const Attribute& attribute) {
  Gateway gateway(document_.tree());
  const QUrl page = QUrl::fromLocalFile(QStringLiteral("/project/") + file_);
  const QUrl url = page.resolved(QUrl(attribute.value.trimmed()));
  if (!url.isLocalFile() || url.path(QUrl::FullyDecoded).section(u'/', 0, -2) != u"/project") return;
  const QString name = url.fileName(QUrl::FullyDecoded);
  int number = numbers_.value(name, 0);
  for (auto one = numbers_.begin(); number == 0 && one != numbers_.end(); ++one)
    if (EqualsNoCase(one.key(), name)) number = one.value();
  // What an old web-pack left at page 10: no page has this name but the first one's.
  if (number == 0 && name == u"Page1.html") number = 1;
  if (number == 0) return;
  const QString place = url.fragment(QUrl::FullyDecoded);
  gateway.SetAttribute(element, attribute.name, u'#' + Id(number) + (place.isEmpty() ? QString() : u'-' + place));
  gateway.RemoveAttribute(element, "target");
}

void OneFilePage::AddStyle(const Node* element, const QString& declaration) {
  const QString style = ValueOf(element, "style").trimmed();
  const QString end = style.isEmpty() || style.endsWith(u';') ? QString() : QStringLiteral(";");
  Gateway(document_.tree()).SetAttribute(element, "style", style + end + declaration);
}

// What BODY says of the page, as the styles that browsers make of it.
void OneFilePage::TakeBody() {
  const Node* const body = document_.tree().bodyNode();
  if (!body) return;
  const auto color = [&](const char* name) { return NormalizeLegacyColor(ValueOf(body, name)); };
  const QString self = Part();
  if (const QString back = color("bgcolor"); !back.isEmpty()) background_.prepend("background-color:" + back + u';');
  QString style = ContainedDeclarations(ValueOf(body, "style"));
  background_ += TakeBackground(style);
  QString text = StyleDeclarations::Parse(style, true).Value("color");
  if (text.isEmpty()) text = color("text");
  if (!color("text").isEmpty()) page_ += "color:" + color("text") + u';';
  // Without a document type a table has the page's colour, whatever stands around it.
  rules_ += self + " table{color:" + (text.isEmpty() ? QStringLiteral("inherit") : text) + u'}';
  const struct {
    const char *attribute, *state;
  } links[] = {{"link", "link"}, {"vlink", "visited"}, {"alink", "active"}};
  for (const auto& link : links)
    if (!color(link.attribute).isEmpty())
      rules_ += self + " a:" + link.state + "{color:" + color(link.attribute) + u'}';
  const struct {
    const char *attribute, *second, *sides[2];
  } margins[] = {{"topmargin", "marginheight", {"top", "bottom"}}, {"leftmargin", "marginwidth", {"left", "right"}}};
  for (const auto& margin : margins) {
    QString value = ValueOf(body, margin.attribute);
    if (value.isEmpty()) value = ValueOf(body, margin.second);
    bool isNumber = false;
    const int pixels = value.trimmed().toInt(&isNumber);
    if (!isNumber || pixels < 0) continue;
    for (const char* const side : margin.sides)
      body_ += QStringLiteral("margin-%1:%2px;").arg(QLatin1String(side)).arg(pixels);
  }
  for (const char* const name : {"id", "dir", "lang", "align"})
    if (!ValueOf(body, name).isEmpty())
      bodyAttributes_ += QStringLiteral(" %1=\"%2\"").arg(QLatin1String(name), Escaped(ValueOf(body, name)));
  const QString classes = ValueOf(body, "class");
  bodyAttributes_ += QStringLiteral(" class=\"body%1\"").arg(classes.isEmpty() ? QString() : u' ' + Escaped(classes));
  if (!style.isEmpty()) bodyAttributes_ += QStringLiteral(" style=\"%1\"").arg(Escaped(style));
  // Nor has the first block of a page a margin of its own above it.
  const Node* first = body->firstChild();
  while (first && !IsShowing(first)) first = first->next();
  if (first && first->IsElement() &&
      IsOneOf(first->tag()->localName, {u"p", u"h1", u"h2", u"h3", u"h4", u"h5", u"h6", u"ul", u"ol", u"dl", u"menu",
                                        u"dir", u"pre", u"blockquote"}))
    rules_ += self + ">.body>:first-child{margin-top:0}";
}

QString OneFilePage::Section() {
  Gateway gateway(document_.tree());
  for (const Use& use : uses_) {
    if (!use.element->IsAttached()) continue;
    if (pictures_.IsShared(use.picture)) {
      gateway.RemoveAttribute(use.element, use.attribute);
      AddStyle(use.element, QStringLiteral("content:") + OneFilePictures::Variable(use.picture));
    } else {
      gateway.SetAttribute(use.element, use.attribute, pictures_.Address(use.picture));
    }
  }
  const Node* const html = document_.tree().htmlNode();
  const Node* const body = document_.tree().bodyNode();
  QString around;
  for (const char* const name : {"dir", "lang"})
    if (!ValueOf(html, name).isEmpty())
      around += QStringLiteral(" %1=\"%2\"").arg(QLatin1String(name), Escaped(ValueOf(html, name)));
  return QStringLiteral("<div class=\"page %1\" id=\"%1\" data-title=\"%2\"%3>\n<div%4>")
             .arg(Id(number_), Escaped(title_), around, bodyAttributes_) +
         (body ? InnerHtml(body, false) : QString()) + QStringLiteral("</div>\n</div>\n");
}

QString OneFilePage::Styles() const {
  const QString self = Part();
  QString styles = self + u'{' + page_ + background_ + u'}' + rules_;
  if (!body_.isEmpty()) styles += self + ">.body{" + body_ + u'}';
  // It covers the window, however long or wide the page is. The first page is on show where no other one is asked for.
  const QString window = number_ == 1 ? QStringLiteral("html")
                                      : QStringLiteral("html:has(#%1:target),html:has(#%1 :target)").arg(Id(number_));
  const QString background =
      background_.isEmpty() ? QStringLiteral("background:#FFF") : "background:#FFF;" + background_;
  styles +=
      QStringLiteral("@supports selector(html:has(a)){%1{background:none}%2{%3}}\n").arg(self, window, background);
  styles += sheets_ + u'\n';
  // Nothing in it ends the element that it is to stand in.
  return styles.replace(QLatin1String("</"), QLatin1String("<\\/"));
}
