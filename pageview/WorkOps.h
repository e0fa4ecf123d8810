// What stands between the windows and the page view: where new content goes, and the values of a table.
#pragma once

#include <QString>
#include <optional>

#include "HTMLElement.h"

class WBUC;

// Puts HTML behind the current text block or picture, into the current cell, into the first cell of the current table,
// or at the end of the page where anything else or nothing is current. Nothing happens behind a stale element.
void InsertPageHTML(WBUC& view, const QString& Html);

// The first TD inside the table, of tables inside it too; none when there is none.
HTMLElement FirstCell(const HTMLElement& table);

// The attributes of a TABLE as its panel shows them.
struct TableProps {
  QString Width;
  QString Height;
  bool HasNoBorder = false;   // the attribute is "0"
  std::optional<int> Border;  // pixels otherwise; nothing when the attribute is empty or not a number
  qint32 Color = 0;           // 0x00BBGGRR
  int PaddingIndex = 0;       // in a list of 0, 5, 10 and so on; may lie beyond its end
  QString Align;              // of the table
  QString CellAlign;          // of its first cell
  QString CellVAlign;
};
TableProps ReadTableProps(const HTMLElement& table);
