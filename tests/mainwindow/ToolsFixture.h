#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "FTools.h"
#include "RealClicks.h"
#include "RunningProgram.h"
#include "Serializer.h"
#include "StringTable.h"
#include "Swatch.h"
#include "ToolPanel.h"

// The started program with its tool window.
class ToolsTest : public ::testing::Test {
 protected:
  ToolsTest() { EXPECT_TRUE(run_.Start()); }
  ~ToolsTest() override { EXPECT_EQ("", run_.BrokenUndo()); }

  FTools& Tools() { return *run_.modMain.Tools(); }
  FWeb& Web() { return run_.Web(); }
  WBUC& View() { return run_.View(); }
  ScriptedDialogs& Dialogs() { return run_.Dialogs(); }

  void ShowBody(const QString& body) { run_.browser->SetHtml(PageAround(body)); }
  HTMLElement Element(const QString& id) { return ElementById(*View().WBDocument(), id); }
  QString Body() { return InnerHtml(View().WBDocument()->tree().bodyNode(), false); }
  // An attribute of BODY as it stands.
  QString Raw(const QString& name) {
    const Attribute* const attribute = View().WBDocument()->tree().bodyNode()->FindAttribute(name);
    return attribute ? attribute->value : QString("<absent>");
  }
  HTMLStyle Style() { return View().WBDocument()->body().style(); }

  QWidget& Viewer() {
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->objectName() == "fBitmap") return *window;
    ADD_FAILURE() << "there is no viewer";
    return Tools();
  }
  bool IsOnTop() { return Tools().windowFlags().testFlag(Qt::WindowStaysOnTopHint); }

  // The caption of the option that is on; "" for none.
  static QString On(const ThreeOptions& options) {
    for (const QRadioButton* option : options)
      if (option->isChecked()) return option->text();
    return {};
  }
  static QStringList Items(const QComboBox& list) {
    QStringList items;
    for (int i = 0; i < list.count(); ++i) items.append(list.itemText(i));
    return items;
  }
  // With the panel in view, as the user does it.
  static void Pick(QComboBox& list, int index) { PickEntry(list, index); }

  // A picture outside of the project.
  QString Picture(const QString& name, const QByteArray& bytes = "picture") {
    const QString path = run_.test.Path("pictures/" + name);
    EXPECT_TRUE(PutFile(path, bytes));
    return path;
  }
  QByteArray WorkFile(const QString& name) { return FileBytes(run_.test.WorkFile(name)); }
  QStringList WorkFolder() {
    return QDir(run_.program().project.WorkPath()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }

  RunningProgram run_;
};
