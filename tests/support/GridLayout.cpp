#include "GridLayout.h"

#include <algorithm>

#include "PageTree.h"

GridLayout::GridLayout(const PageTree& tree) : body_(tree.bodyNode()) {
  if (!body_) return;
  lines_.push_back({body_, {}});
  // A block starts a line and so does what follows it; a line that nothing came onto is used again.
  const auto startLine = [&](const Node* block) {
    if (lines_.back().cells.empty() && lines_.back().block->Contains(block)) {
      lines_.back().block = block;
    } else {
      lines_.push_back({block, {}});
    }
  };
  const Node* node = body_->firstChild();
  while (node) {
    if (node->IsText()) {
      const bool structure = node->parent()->tag()->isTablePart;
      for (int at = 0; at < node->Length() && !structure; ++at) {
        const bool pair = node->data()[at].isHighSurrogate() && at + 1 < node->Length();
        if (node->data()[at] != u'\n' && node->data()[at] != u'\r')
          lines_.back().cells.push_back({node, at, pair ? 2 : 1});
        at += pair;
      }
    } else if (node->IsElement() && !node->tag()->isHidden) {
      if (node->tag() == Known().br) {
        lines_.back().cells.push_back({node, 0, 0});
        lines_.push_back({lines_.back().block, {}});
      } else if (node->tag()->isAtomic) {
        lines_.back().cells.push_back({node, 0, 1});
      } else {
        if (node->tag()->isBlock) startLine(node);
        if (node->firstChild()) {
          node = node->firstChild();
          continue;
        }
      }
    }
    while (node && !node->next()) {
      if (node->IsElement() && node->tag()->isBlock && node->parent() && node != body_) {
        const Node* block = node->parent();
        while (!block->tag()->isBlock) block = block->parent();
        lines_.push_back({block, {}});
      }
      node = node->parent();
      if (node == body_) return;
    }
    if (!node) return;
    if (node->IsElement() && node->tag()->isBlock && !node->tag()->isHidden) {
      const Node* block = node->parent();
      while (!block->tag()->isBlock) block = block->parent();
      lines_.push_back({block, {}});
    }
    node = node->next();
  }
}

QPoint GridLayout::Corner(std::size_t line, std::size_t column) {
  return {margin + int(column) * cellWidth, margin + int(line) * cellHeight};
}

std::optional<QPoint> GridLayout::EdgeOf(const Node* node, bool right) const {
  std::optional<QPoint> edge;
  for (std::size_t l = 0; l < lines_.size(); ++l)
    for (std::size_t c = 0; c < lines_[l].cells.size(); ++c)
      if (node->Contains(lines_[l].cells[c].node)) {
        edge = Corner(l, right ? c + 1 : c);
        if (!right) return edge;
      }
  return edge;
}

std::optional<QPoint> GridLayout::PositionOf(const BoundaryPoint& point) const {
  if (!body_) return std::nullopt;
  if (point.IsInText()) {
    std::optional<QPoint> end;
    for (std::size_t l = 0; l < lines_.size(); ++l)
      for (std::size_t c = 0; c < lines_[l].cells.size(); ++c) {
        const Cell& cell = lines_[l].cells[c];
        if (cell.node != point.container) continue;
        if (cell.offset >= point.offset) return Corner(l, c);
        end = Corner(l, c + 1);
      }
    return end;
  }
  if (point.before)
    if (const auto edge = EdgeOf(point.before, false)) return edge;
  if (const Node* previous = point.before ? point.before->previous() : point.container->lastChild())
    if (const auto edge = EdgeOf(previous, true)) return edge;
  for (std::size_t l = 0; l < lines_.size(); ++l)
    if (lines_[l].block == point.container) return Corner(l, 0);
  if (const auto edge = EdgeOf(point.container, false)) return edge;
  return Corner(0, 0);
}

GridLayout::Hit GridLayout::At(QPoint point) const {
  Hit hit;
  if (!body_) return hit;
  const int row = (point.y() - margin) / cellHeight;
  const int column = point.x() < margin ? 0 : (point.x() - margin) / cellWidth;
  if (point.y() < margin || row < int(lines_.size())) {
    const Line& line = lines_[std::size_t(std::max(row, 0))];
    const auto visible = std::size_t(
        std::count_if(line.cells.begin(), line.cells.end(), [](const Cell& cell) { return cell.length > 0; }));
    if (std::size_t(column) < visible && point.x() >= margin) {
      const Cell& cell = line.cells[std::size_t(column)];
      // The nearer side of the character.
      const bool behind = (point.x() - margin) % cellWidth >= cellWidth / 2;
      if (cell.node->IsText()) {
        hit.element = cell.node->parent();
        hit.caret = BoundaryPoint::InText(cell.node, cell.offset + (behind ? cell.length : 0));
      } else {
        hit.element = cell.node;
        hit.caret = behind ? BoundaryPoint::Behind(cell.node) : BoundaryPoint::Before(cell.node);
      }
    } else {
      hit.element = line.block;
      if (visible == 0) {
        hit.caret = line.cells.empty() ? BoundaryPoint::AtEnd(line.block) : BoundaryPoint::Before(line.cells[0].node);
      } else if (point.x() < margin) {
        const Cell& first = line.cells[0];
        hit.caret =
            first.node->IsText() ? BoundaryPoint::InText(first.node, first.offset) : BoundaryPoint::Before(first.node);
      } else {
        const Cell& last = line.cells[visible - 1];
        hit.caret = last.node->IsText() ? BoundaryPoint::InText(last.node, last.offset + last.length)
                                        : BoundaryPoint::Behind(last.node);
      }
    }
  } else {
    hit.element = body_;
    for (auto line = lines_.rbegin(); line != lines_.rend() && !hit.caret; ++line) {
      if (line->cells.empty()) continue;
      const Cell& last = line->cells.back();
      hit.caret = last.node->IsText() ? BoundaryPoint::InText(last.node, last.offset + last.length)
                                      : BoundaryPoint::Behind(last.node);
    }
    if (!hit.caret) hit.caret = BoundaryPoint::AtStart(body_);
  }
  if (hit.element->tag()->isTablePart) hit.element = hit.element->tag() == Known().table ? hit.element : body_;
  if (hit.element == body_) {
    // Beside or below a table the page itself was hit: the place is behind the table, not in its last cell.
    for (const Node* n = hit.caret.container; n && n != body_; n = n->parent())
      if (n->tag() == Known().table) hit.caret = BoundaryPoint::Behind(n);
  }
  hit.caretPosition = PositionOf(hit.caret).value_or(Corner(0, 0));
  return hit;
}
