// The text that the user has selected in the page, mirrored from the live page.
// select() of a range and empty() change it at once; what the page reports of an older moment doesn't undo that.
#pragma once

#include <QString>
#include <memory>

#include "BoundaryPoint.h"

class HTMLDocument;
class HTMLTxtRange;

class HTMLSelectionObject {
 public:
  explicit HTMLSelectionObject(HTMLDocument& document);
  ~HTMLSelectionObject();

  QString type() const;                         // "Text" where something is selected, else "None"
  std::shared_ptr<HTMLTxtRange> createRange();  // collapsed where nothing is selected: at the caret, else at the start
  void empty();

  // By the program: shown in the live page.
  void Select(const LiveRange& range);

  // By the page: the user has selected this; a range without points is no selection.
  void Mirror(const LiveRange& range) { range_ = range; }
  const LiveRange& range() const { return range_; }

 private:
  HTMLDocument& document_;
  LiveRange range_;
};
