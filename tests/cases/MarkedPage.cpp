#include "MarkedPage.h"

#include <vector>

#include "HTMLDocument.h"
#include "HtmlParser.h"
#include "RangeEdit.h"

namespace {

bool IsTextMark(QChar c) {
  return c == u'[' || c == u']';
}

bool IsNodeMark(QChar c) {
  return c == u'{' || c == u'}';
}

// The parser leaves a comment where it stands, also between the parts of a table.
QString NodeMarksAsComments(const QString& html) {
  QString result;
  bool inTag = false;
  QChar quote;
  for (qsizetype i = 0; i < html.size(); ++i) {
    const QChar c = html[i];
    if (!inTag) {
      const QChar next = i + 1 < html.size() ? html[i + 1] : QChar();
      inTag = c == u'<' && (next.isLetter() || next == u'/' || next == u'!');
    } else if (!quote.isNull()) {
      if (c == quote) quote = QChar();
    } else if (c == u'"' || c == u'\'') {
      quote = c;
    } else if (c == u'>') {
      inTag = false;
    }
    if (!inTag && IsNodeMark(c)) {
      result += QStringLiteral("<!--%1-->").arg(c);
    } else {
      result += c;
    }
  }
  return result;
}

// A mark in text is the place before its character, another one the place before its comment.
std::vector<BoundaryPoint> MarksIn(const HTMLDocument& document) {
  std::vector<BoundaryPoint> marks;
  const Node* const body = document.tree().bodyNode();
  for (const Node* node = body ? body->firstChild() : nullptr; node; node = NextInTree(node, body)) {
    if (node->type() == Node::Type::Comment && node->data().size() == 1 && IsNodeMark(node->data()[0]))
      marks.push_back(BoundaryPoint::Before(node));
    for (int i = 0; node->IsText() && i < node->Length(); ++i)
      if (IsTextMark(node->data()[i])) marks.push_back(BoundaryPoint::InText(node, i));
  }
  return marks;
}

// `point` stands before the mark; as one of the document's live points it follows what happens.
void TakeMark(HTMLDocument& document, const BoundaryPoint& point) {
  if (!point.IsInText()) return RemoveNode(document.gateway(), point.before);
  const Node* const text = point.container;
  document.gateway().ReplaceData(text, point.offset, 1, {});
  if (text->Length() == 0) RemoveNode(document.gateway(), text);
}

}  // namespace

bool MakeMarkedPage(const QString& html, HTMLDocument& document, LiveRange& range) {
  ParseDocument("<HTML><HEAD><TITLE></TITLE></HEAD><BODY>" + NodeMarksAsComments(html) + "</BODY></HTML>",
                document.tree());
  const std::vector<BoundaryPoint> marks = MarksIn(document);
  LiveRange places;
  document.tree().AddRange(&places);
  const bool isRange = marks.size() == 2;
  if (isRange) {
    places = {marks[0], marks[1]};
    TakeMark(document, places.start);
    TakeMark(document, places.end);
  }
  document.tree().RemoveRange(&places);
  range = places;
  return isRange;
}
