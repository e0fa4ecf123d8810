#pragma once

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "PageOnView.h"
#include "Serializer.h"

// A page view whose document gets events on elements named by their id; "" is BODY.
class PageViewTest : public ::testing::Test {
 protected:
  ~PageViewTest() override { EXPECT_EQ("", page_.habit.Broken()); }

  static constexpr QPoint mouse{40, 60};  // pixels
  static constexpr QPoint caretCorner{17, 33};

  HTMLElement Named(const QString& id) {
    return id.isEmpty() ? HTMLElement(page_.Document().tree().bodyNode()) : page_.Element(id);
  }

  // The event as the live page would tell it, with the caret at the end of BODY.
  void Fire(EventType type, const QString& id, int button = 1) {
    ASSERT_TRUE(Named(id)) << qPrintable(id);
    const BoundaryPoint end = BoundaryPoint::AtEnd(page_.Document().tree().bodyNode());
    page_.Document().Dispatch(
        HTMLEventObj(type).At(mouse.x(), mouse.y()).On(Named(id)).Button(button).Caret(end, caretCorner));
  }
  // As a user does it: everything that comes before a click or double click comes too.
  void Click(const QString& id) {
    Fire(EventType::MouseDown, id);
    Fire(EventType::MouseUp, id);
    Fire(EventType::Click, id);
  }
  void DoubleClick(const QString& id) {
    Click(id);
    Click(id);
    Fire(EventType::DoubleClick, id);
  }

  QString Body() { return InnerHtml(page_.Document().tree().bodyNode(), false); }
  QString Raw(const QString& name) {
    const Attribute* const attribute = page_.Document().tree().bodyNode()->FindAttribute(name);
    return attribute ? attribute->value : QString("<absent>");
  }

  PageOnView page_;
  WBUC& view_ = page_.view;
};
