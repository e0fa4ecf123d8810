// A page view whose page has what a test shows, with text selected as a drag selects it.
#pragma once

#include <QClipboard>
#include <QGuiApplication>

#include "PageViewFixture.h"

class ElementsTest : public PageViewTest {
 protected:
  void Show(const QString& body) { page_.ShowBody(body); }

  // Selects the text from a place in one element's own text to a place in another's, as a drag does.
  void Select(const QString& from, int start, const QString& to, int end) {
    const Node* const first = TextOf(Named(from));
    const Node* const last = TextOf(Named(to));
    ASSERT_TRUE(first && last);
    Fire(EventType::MouseDown, from);
    page_.Document().selection().Mirror({BoundaryPoint::InText(first, start), BoundaryPoint::InText(last, end)});
    Fire(EventType::MouseUp, to);
    Fire(EventType::Click, to);
  }
  void Select(const QString& id, int start, int end) { Select(id, start, id, end); }

  void PutOnSystemClipboard(const QString& text) { QGuiApplication::clipboard()->setText(text); }

  const QString two = "<font id='a'>one</font><font id='b'>two</font>";
};
