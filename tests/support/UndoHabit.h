// Whatever a test has done to a page can be undone and done again: held at the end of each test that has a page view,
// without the test asking for it.
#pragma once

#include <QJsonArray>
#include <QJsonDocument>

#include "HTMLDocument.h"
#include "TreeCodec.h"
#include "WBUC.h"

class UndoHabit : public QObject {
 public:
  explicit UndoHabit(WBUC& view) : view_(view) {
    connect(&view_, &WBUC::DocComplete, this, [this] { start_ = Page(); });
  }

  // Puts the page through it and leaves it as it is. Tells what was not as it should be; "" for nothing.
  QString Broken() {
    if (!view_.WBDocument()) return {};
    const QByteArray end = Page();
    const int undone = UndoAll();
    const QByteArray start = Page();
    const QString about = QStringLiteral(" of %1 commands gives\n").arg(undone);
    if (view_.History().IsWhole() && start != start_) return "undo" + about + start + "\nand not\n" + start_;
    RedoAll(undone);
    if (Page() != end) return "redo" + about + Page() + "\nand not\n" + end;
    if (UndoAll() != undone || Page() != start) return "the second undo" + about + Page() + "\nand not\n" + start;
    RedoAll(undone);
    return {};
  }

 private:
  // The tree with the numbers of its nodes: the same nodes are to come back.
  QByteArray Page() const {
    QJsonArray flat;
    if (view_.WBDocument()) EncodeTree(view_.WBDocument()->tree().root(), flat);
    return QJsonDocument(flat).toJson(QJsonDocument::Compact);
  }
  int UndoAll() {
    int count = 0;
    for (; view_.History().CanUndo(); ++count) view_.Undo();
    return count;
  }
  // What the test itself has undone stays so.
  void RedoAll(int count) {
    for (; count > 0; --count) view_.Redo();
  }

  WBUC& view_;
  QByteArray start_;
};
