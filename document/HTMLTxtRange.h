// A stretch of the page's text between two points that keeps its place while the tree changes around it.
// Both points follow the rules for live ranges of the DOM standard. A range never outlives its document's use: when
// the document is gone, reading gives nothing and writing does nothing.
#pragma once

#include <QPoint>
#include <QString>
#include <memory>
#include <optional>

#include "BoundaryPoint.h"
#include "LivePage.h"

class HTMLDocument;
class HTMLElement;
class PageTree;

// `point`, or where it is outside of BODY the end of BODY that is nearer to it.
BoundaryPoint WithinBody(const PageTree& tree, const BoundaryPoint& point);

// Where a range starts in the view, in whole pixels from its left and top edge.
class HTMLTextRangeMetrics {
 public:
  virtual ~HTMLTextRangeMetrics() = default;
  // As last told by the page (moveToPoint, Measure); nothing before that.
  std::optional<int> offsetLeft() const { return position_ ? std::optional(position_->x()) : std::nullopt; }
  std::optional<int> offsetTop() const { return position_ ? std::optional(position_->y()) : std::nullopt; }

 protected:
  std::optional<QPoint> position_;
};

class HTMLTxtRange : public HTMLTextRangeMetrics, public std::enable_shared_from_this<HTMLTxtRange> {
 public:
  HTMLTxtRange(HTMLDocument& document, const LiveRange& range);
  ~HTMLTxtRange() override;
  HTMLTxtRange(const HTMLTxtRange&) = delete;
  HTMLTxtRange& operator=(const HTMLTxtRange&) = delete;

  // The characters in order: a BR and the edge of a block, cell or HR as CR LF, a picture as nothing, U+00A0 kept.
  QString text() const;
  // Puts one run of text, not parsed, in place of the content and leaves the range collapsed behind it.
  void setText(const QString& text);

  // The content as HTML, without the tags of the innermost element around all of it. "" when the range spans nothing
  // but the edges of blocks or cells.
  QString htmlText() const;

  // Puts parsed `html` in place of the content and leaves the range collapsed behind it. "" deletes: an element goes
  // only when both its tags lie inside the range, and the edge of a block or cell alone can't be deleted.
  void pasteHTML(const QString& html);

  // Collapses the range (to its end for a positive count, else to its start) and moves it. "character" steps over one
  // character, line break, picture or block edge each; "textedit" goes to the end (or start) of the page's text. It
  // stops at the first and last position of the page.
  void move(const QString& unit, int count);
  void moveEnd(const QString& unit, int count);

  // Spans the element with its tags; BODY and HTML without them. False, and the range stays, for an element that isn't
  // in the page.
  bool moveToElementText(const HTMLElement& element);

  // Collapses the range at the place nearest to a point of the view, in pixels. The point has to be that of the
  // current event; without an answer it is the end of BODY.
  void moveToPoint(int x, int y);

  void select();
  std::shared_ptr<HTMLTxtRange> duplicate() const;

  // "StartToEnd" and the like; compares that point of this range with that of the other. -1, 0 or 1.
  int compareEndPoints(const QString& how, const HTMLTxtRange& other) const;

  // Formats the text of the range, which keeps it and selects it again; see FormatCommands.h for the commands. False
  // when nothing has been changed. There is nothing to show for `showUI`.
  bool execCommand(const QString& name, bool showUI, const QString& value);
  // What a format command would find at the start of the range.
  QString queryCommandValue(const QString& name) const;

  // Asks the live page where the range starts; offsetLeft and offsetTop hold the answer when `done` is called.
  void Measure(std::function<void()> done);

  const LiveRange& range() const { return range_; }
  void SetRange(const LiveRange& range);
  HTMLDocument* document() const;

 private:
  // Where `count` units from a place lead, within the page's text; nothing where there is no page.
  std::optional<BoundaryPoint> Moved(const BoundaryPoint& from, const QString& unit, int count) const;

  std::weak_ptr<HTMLDocument*> document_;
  LiveRange range_;
};
