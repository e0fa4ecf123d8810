// Work on a whole page in view, in milliseconds until the live page has had it and is laid out.
#pragma once

#include <QElapsedTimer>
#include <QString>

#include "HTMLDocument.h"
#include "WBUC.h"
#include "Waiting.h"

// The place of a range is there when all that was sent before it is done.
inline void Settle(HTMLTxtRange& range) {
  Wait measured;
  bool done = false;
  range.Measure([&] {
    done = true;
    measured.Done();
  });
  if (!done) measured.Run("our place");
}

inline double ColorWhole(WBUC& view, const QString& color) {
  const auto whole = view.WBDocument()->body().createTextRange();
  whole->select();
  Settle(*whole);
  QElapsedTimer clock;
  clock.start();
  view.SetSelColor(color);
  Settle(*whole);
  return double(clock.nsecsElapsed()) / 1e6;
}

// Takes back what the last command did.
inline double UndoWhole(WBUC& view) {
  const auto whole = view.WBDocument()->body().createTextRange();
  Settle(*whole);
  QElapsedTimer clock;
  clock.start();
  view.Undo();
  Settle(*whole);
  return double(clock.nsecsElapsed()) / 1e6;
}
