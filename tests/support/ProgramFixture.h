#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QSignalSpy>

#include "RunningProgram.h"
#include "StringTable.h"

// The program, started by the test itself.
class ProgramTest : public ::testing::Test {
 protected:
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

  RunningProgram run_;
};
