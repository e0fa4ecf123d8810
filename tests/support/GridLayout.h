// A layout without fonts for the headless component: each character takes a cell of 8 by 16 pixels, lines break at BR
// and at the edges of blocks and cells only, and the first cell stands at (8, 8).
#pragma once

#include <QPoint>
#include <optional>
#include <vector>

#include "BoundaryPoint.h"

class PageTree;

class GridLayout {
 public:
  static constexpr int cellWidth = 8;
  static constexpr int cellHeight = 16;
  static constexpr int margin = 8;

  explicit GridLayout(const PageTree& tree);

  // What a mouse event at a point of the view meets: the element, and the nearest place in the text.
  struct Hit {
    const Node* element = nullptr;
    BoundaryPoint caret;
    QPoint caretPosition;
  };
  Hit At(QPoint point) const;

  // Left and top of a place; for one that is not in text those of what stands behind it, else the right edge of what
  // stands before it, else those of its element, else the corner of the content.
  std::optional<QPoint> PositionOf(const BoundaryPoint& point) const;

 private:
  struct Cell {
    const Node* node;  // text or atomic element
    int offset;        // in text: of the character
    int length;
  };
  struct Line {
    const Node* block;  // innermost block or cell that the line belongs to
    std::vector<Cell> cells;
  };
  static QPoint Corner(std::size_t line, std::size_t column);
  std::optional<QPoint> EdgeOf(const Node* node, bool right) const;

  const Node* body_;
  std::vector<Line> lines_;
};
