#include "TextWalker.h"

#include <algorithm>

namespace {

bool IsFormatting(QChar c) {
  return c == u'\n' || c == u'\r' || c == u'\t' || c == u'\f';
}
bool IsBlank(QChar c) {
  return c == u' ' || IsFormatting(c);
}

bool KeepsWhiteSpace(const Node* text) {
  for (const Node* n = text->parent(); n && n->IsElement(); n = n->parent())
    if (n->IsElement(Known().pre) || n->IsElement(Known().textarea)) return true;
  return false;
}

// What stands next to a place, as far as white space there is concerned.
enum class Neighbour { Content, Edge };

bool IsFormattingOnly(const Node* text) {
  bool formatting = text->data().isEmpty();
  for (const QChar c : text->data()) {
    if (!IsBlank(c)) return false;
    formatting = formatting || IsFormatting(c);
  }
  return formatting;
}

Neighbour NeighbourOf(const Node* text, bool forward) {
  const Node* node = text;
  while (true) {
    // One node on in the given direction, over closing and opening tags.
    const Node* sibling = forward ? node->next() : node->previous();
    while (!sibling) {
      node = node->parent();
      if (!node || !node->IsElement() || node->tag()->isBlock) return Neighbour::Edge;
      sibling = forward ? node->next() : node->previous();
    }
    node = sibling;
    while (node->IsElement() && !node->tag()->isHidden) {
      if (node->tag()->isBlock || node->tag() == Known().br) return Neighbour::Edge;
      if (node->tag()->isAtomic) return Neighbour::Content;
      const Node* child = forward ? node->firstChild() : node->lastChild();
      if (!child) break;
      node = child;
    }
    if (node->IsText() && !IsFormattingOnly(node)) return Neighbour::Content;
  }
}

// The stretch of `text` that one step takes at a place; `counts` tells whether it shows at all.
struct Unit {
  int from;
  int to;
  bool counts;
  bool isFormatting = false;  // a run of white space with a line end or tab in it
};

// Whether something shows in front of a place on the same line, as it does where a blank has been typed.
bool StandsBehindText(const Node* text, int at) {
  if (at > 0) return !IsBlank(text->data()[at - 1]);
  return NeighbourOf(text, false) == Neighbour::Content &&
         !(text->previous() && text->previous()->IsText() && !text->previous()->data().isEmpty() &&
           IsFormatting(text->previous()->data().back()));
}

Unit UnitAt(const Node* text, int at) {
  const QString& data = text->data();
  const int length = text->Length();
  if (!IsBlank(data[at]) || KeepsWhiteSpace(text)) {
    if (data[at].isHighSurrogate() && at + 1 < length && data[at + 1].isLowSurrogate()) return {at, at + 2, true};
    if (data[at].isLowSurrogate() && at > 0 && data[at - 1].isHighSurrogate()) return {at - 1, at + 1, true};
    return {at, at + 1, true};
  }
  int from = at;
  int to = at + 1;
  bool formatting = IsFormatting(data[at]);
  while (from > 0 && IsBlank(data[from - 1])) formatting = IsFormatting(data[--from]) || formatting;
  while (to < length && IsBlank(data[to])) formatting = IsFormatting(data[to++]) || formatting;
  if (!formatting) return {at, at + 1, true};
  // Blanks in front of the first line end or tab are no formatting: somebody has typed them there. What is behind them
  // shows nothing more.
  if (data[from] == u' ' && StandsBehindText(text, from)) {
    int typed = from;
    while (data[typed] == u' ') ++typed;
    return at < typed ? Unit{at, at + 1, true} : Unit{typed, to, false, true};
  }
  bool counts = !(text->parent() && text->parent()->IsElement() && text->parent()->tag()->isTablePart);
  if (counts && from == 0) counts = NeighbourOf(text, false) == Neighbour::Content;
  if (counts && to == length) counts = NeighbourOf(text, true) == Neighbour::Content;
  return {from, to, counts, true};
}

// Goes through what shows of a stretch of a text: white space that shows as one blank, and all between such as one
// piece. Ends early, with false, when `visit` gives false. Much white space costs no more than much text.
template <typename Visit>
bool VisitUnits(const Node* text, int from, int to, Visit visit) {
  const QString& data = text->data();
  const bool keeps = KeepsWhiteSpace(text);
  for (int at = from; at < to;) {
    int end = at;
    while (end < to && (keeps || !IsBlank(data[end]))) ++end;
    if (end > at) {
      if (!visit(at, end, false)) return false;
      at = end;
      continue;
    }
    const Unit unit = UnitAt(text, at);
    if (unit.isFormatting) {
      end = std::min(unit.to, to);
    } else {
      while (end < to && data[end] == u' ') ++end;
    }
    if (unit.counts && !visit(at, end, unit.isFormatting)) return false;
    at = end;
  }
  return true;
}

bool IsLeafOfText(const Node* node) {
  return node->IsElement() && !node->tag()->isHidden && (node->tag() == Known().br || node->tag()->isAtomic);
}

bool IsPassedOver(const Node* node) {
  return !node->IsText() && (!node->IsElement() || node->tag()->isHidden);
}

// Whether `end` is in the middle of something that a reader takes as one thing or doesn't see.
bool EndsInside(const Node* node, const BoundaryPoint& end) {
  return node->Contains(end.container) && (end.container != node || end.before);
}

// Goes through what lies between two points, in document order, until `visitor` gives false: stretches of texts, things
// that are read as one (and whether they lie in it as a whole), and where blocks begin and end.
template <typename Visitor>
void WalkBetween(const LiveRange& range, Visitor& visitor) {
  const Node* const first = range.start.container;
  const Node* const last = range.end.container;
  if (first == last && first->IsText()) {
    visitor.Text(first, range.start.offset, range.end.offset);
    return;
  }
  const Node* node = NodeBehind(range.start);
  const Node* within = first;
  if (first->IsText()) {
    if (!visitor.Text(first, range.start.offset, first->Length())) return;
    within = first->parent();
    node = NextSkippingChildren(first);
  }
  const auto leaveTo = [&](const Node* around) {
    for (; within && !within->Contains(around); within = within->parent())
      if (within->IsElement() && within->tag()->isBlock) visitor.EndOfBlock();
  };
  const Node* const stop = last->IsText() ? nullptr : NodeBehind(range.end);
  while (node && node != stop) {
    leaveTo(node->parent());
    if (node->IsText()) {
      if (!visitor.Text(node, 0, node == last ? range.end.offset : node->Length())) return;
      if (node == last) break;
      node = NextSkippingChildren(node);
    } else if (IsPassedOver(node)) {
      if (EndsInside(node, range.end)) break;
      node = NextSkippingChildren(node);
    } else if (IsLeafOfText(node)) {
      if (!visitor.Leaf(node, !EndsInside(node, range.end))) return;
      node = NextSkippingChildren(node);
    } else {
      if (node->IsElement() && node->tag()->isBlock && !visitor.Block(node)) return;
      within = node;
      node = NextInTree(node);
    }
  }
  leaveTo(last);
}

class Stepper {
 public:
  Stepper(const BoundaryPoint& from, const Node* body) : at_(from), body_(body) {}

  std::optional<BoundaryPoint> Forward() {
    while (true) {
      const Node* const container = at_.container;
      if (container->IsText()) {
        if (at_.offset < container->Length()) {
          const Unit unit = UnitAt(container, at_.offset);
          if (unit.counts) return crossed_ ? at_ : BoundaryPoint::InText(container, unit.to);
          at_.offset = unit.to;
        } else {
          at_ = BoundaryPoint::Behind(container);
        }
        continue;
      }
      const Node* const node = at_.before;
      if (!node) {
        if (const auto end = Leave(container)) return *end;
        if (container == body_) return std::nullopt;
        at_ = BoundaryPoint::Behind(container);
      } else if (IsPassedOver(node)) {
        at_.before = node->next();
      } else if (IsLeafOfText(node)) {
        return crossed_ ? at_ : BoundaryPoint::Behind(node);
      } else {
        Enter(node);
        at_ = BoundaryPoint::AtStart(node);
      }
    }
  }

  std::optional<BoundaryPoint> Backward() {
    while (true) {
      const Node* const container = at_.container;
      if (container->IsText()) {
        if (at_.offset > 0) {
          const Unit unit = UnitAt(container, at_.offset - 1);
          if (unit.counts) return crossed_ ? at_ : BoundaryPoint::InText(container, unit.from);
          at_.offset = unit.from;
        } else {
          at_ = BoundaryPoint::Before(container);
        }
        continue;
      }
      const Node* const node = at_.before ? at_.before->previous() : container->lastChild();
      if (!node) {
        if (const auto end = Leave(container)) return *end;
        if (container == body_) return std::nullopt;
        at_ = BoundaryPoint::Before(container);
      } else if (IsPassedOver(node)) {
        at_.before = node;
      } else if (IsLeafOfText(node)) {
        return crossed_ ? at_ : BoundaryPoint::Before(node);
      } else {
        Enter(node);
        at_ = BoundaryPoint::AtEnd(node);
      }
    }
  }

 private:
  void Enter(const Node* node) {
    if (!node->IsElement() || !node->tag()->isBlock) return;
    crossed_ = true;
    entered_ = node->tag()->holdsText ? node : nullptr;
  }

  // The place to stop at when `container` is left: the inside of an empty block that has just been entered, or the
  // very end of the page behind a block.
  std::optional<BoundaryPoint> Leave(const Node* container) {
    if (container == entered_ || (container == body_ && crossed_)) return at_;
    if (container->IsElement() && container->tag()->isBlock && container != body_) {
      crossed_ = true;
      entered_ = nullptr;
    }
    return std::nullopt;
  }

  BoundaryPoint at_;
  const Node* body_;
  bool crossed_ = false;
  const Node* entered_ = nullptr;  // an empty block so far
};

}  // namespace

std::optional<BoundaryPoint> StepForward(const BoundaryPoint& from, const Node* body) {
  return Stepper(from, body).Forward();
}

std::optional<BoundaryPoint> StepBackward(const BoundaryPoint& from, const Node* body) {
  return Stepper(from, body).Backward();
}

BoundaryPoint EndOfText(const Node* body) {
  BoundaryPoint at = BoundaryPoint::AtEnd(body);
  while (true) {
    const Node* const last = at.before ? at.before->previous() : at.container->lastChild();
    if (!last) return at;
    if (IsPassedOver(last) || (last->IsText() && IsFormattingOnly(last) && last->previous())) {
      at.before = last;  // nothing to stand behind
      continue;
    }
    if (last->IsText()) return BoundaryPoint::AtEnd(last);
    if (IsLeafOfText(last) || last->tag()->isTablePart) return BoundaryPoint::Behind(last);
    at = BoundaryPoint::AtEnd(last);
  }
}

QString TextBetween(const LiveRange& range) {
  struct Reader {
    QString text = {};
    bool edge = false;  // one has been passed since the last character

    void Add(QStringView piece) {
      if (edge && !text.isEmpty()) text += u"\r\n";
      edge = false;
      text += piece;
    }
    bool Text(const Node* node, int from, int to) {
      return VisitUnits(node, from, to, [&](int at, int end, bool formatting) {
        Add(formatting ? QStringView(u" ") : QStringView(node->data()).mid(at, end - at));
        return true;
      });
    }
    bool Leaf(const Node* node, bool whole) {
      if (!whole) return false;
      if (node->tag() == Known().br) Add(u"\r\n");
      if (node->tag() == Known().hr) edge = true;  // it has a line of its own
      return true;
    }
    bool Block(const Node*) { return edge = true; }
    void EndOfBlock() { edge = true; }
  } reader;
  WalkBetween(range, reader);
  return reader.text;
}

bool ShowsOnPage(const Node* text) {
  if (text->data().isEmpty()) return false;
  if (!std::all_of(text->data().begin(), text->data().end(), IsBlank) || KeepsWhiteSpace(text)) return true;
  if (text->parent() && text->parent()->IsElement() && text->parent()->tag()->isTablePart) return false;
  return NeighbourOf(text, false) == Neighbour::Content && NeighbourOf(text, true) == Neighbour::Content;
}

bool SpansContent(const LiveRange& range) {
  if (range.IsCollapsed()) return false;
  if (range.start.container == range.end.container && range.start.IsInText()) return true;
  struct Finder {
    const Node* last;
    bool edge = false;
    bool found = false;

    bool Found() {
      found = true;
      return false;
    }
    bool Text(const Node* node, int from, int to) {
      return VisitUnits(node, from, to, [](int, int, bool) { return false; }) || Found();
    }
    bool Leaf(const Node*, bool) { return Found(); }
    bool Block(const Node* node) {
      // One that lies in the range with both its tags is content, even while it is empty.
      if (!node->Contains(last)) return Found();
      return edge = true;
    }
    void EndOfBlock() { edge = true; }
  } finder{range.end.container};
  WalkBetween(range, finder);
  return finder.found || !finder.edge;
}
