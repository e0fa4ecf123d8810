#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QSignalSpy>

#include "PageOnView.h"
#include "RunningProgram.h"
#include "StringTable.h"

// The program, started by the test itself.
class ProgramTest : public ::testing::Test {
 protected:
  ~ProgramTest() override { EXPECT_EQ("", run_.BrokenUndo()); }

  // Answers in the order in which they are asked for.
  void Answer(const QList<MessageAnswer>& answers, const QStringList& texts = {}) {
    run_.Dialogs().Answers = answers;
    run_.Dialogs().Texts = texts;
    run_.Dialogs().Boxes.clear();
    run_.Dialogs().Questions.clear();
  }
  void SaveProjectAs(const QString& name) {
    Answer({}, {name});
    ASSERT_TRUE(run_.Choose("mSaveProject"));
  }
  void Exit(const QList<MessageAnswer>& answers, const QStringList& texts = {}) {
    Answer(answers, texts);
    ASSERT_TRUE(run_.Choose("mExit"));
    if (run_.ended) run_.Release();
  }
  bool CardExists() const { return QDir(run_.test.program.project.CardPath()).exists(); }
  QByteArray FileIn(const QString& name) const { return FileBytes(run_.PathInApp(name)); }
  QStringList Names(const QString& folder) const {
    return QDir(run_.PathInApp(folder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }
  FWeb& Web() { return run_.Web(); }
  WBUC& View() { return run_.View(); }

  // A hand on the page: what the page view hears of its mouse. The element of that id, or BODY for none.
  HTMLElement Named(const QString& id) {
    return id.isEmpty() ? HTMLElement(View().WBDocument()->tree().bodyNode()) : ElementById(*View().WBDocument(), id);
  }
  void Fire(EventType type, const QString& id, int button = 1) {
    const BoundaryPoint end = BoundaryPoint::AtEnd(View().WBDocument()->tree().bodyNode());
    View().WBDocument()->Dispatch(HTMLEventObj(type).On(Named(id)).Button(button).Caret(end, QPoint(3, 4)));
  }
  void Click(const QString& id) {
    Fire(EventType::MouseDown, id);
    Fire(EventType::MouseUp, id);
    Fire(EventType::Click, id);
  }
  void DoubleClick(const QString& id) {
    Click(id);
    Fire(EventType::DoubleClick, id);
  }
  // As a drag over text in one element.
  void Select(const QString& id, int from, int to) {
    Fire(EventType::MouseDown, id);
    const Node* const text = TextOf(Named(id));
    ASSERT_TRUE(text);
    View().WBDocument()->selection().Mirror({BoundaryPoint::InText(text, from), BoundaryPoint::InText(text, to)});
    Fire(EventType::Click, id);
  }

  RunningProgram run_;
};
