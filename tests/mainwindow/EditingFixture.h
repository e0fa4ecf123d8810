// The program with a page in view, and what a user does to it by the window's editing controls.
#pragma once

#include <QAction>
#include <QMenu>
#include <QToolButton>

#include "ProgramFixture.h"
#include "RealClicks.h"
#include "Serializer.h"
#include "WorkWindow.h"

class EditingCommands : public ProgramTest {
 protected:
  EditingCommands() { EXPECT_TRUE(run_.Start()); }

  void Page(const QString& body) { run_.browser->SetHtml(PageAround(body)); }
  QString Body() { return InnerHtml(View().WBDocument()->tree().bodyNode(), false); }

  // The insertion point of the page itself, as a click leaves it.
  void PlaceCaret(const QString& id, int at) {
    const BoundaryPoint point = BoundaryPoint::InText(TextOf(Named(id)), at);
    View().WBDocument()->selection().Mirror({point, point});
  }

  void Press(int button) { Web().FrWork->bSel[std::size_t(button)]->click(); }
  bool IsOn(const char* entry) { return Web().findChild<QAction*>(entry)->isEnabled(); }
  void OpenEdit() { emit Web().findChild<QAction*>("mEdit")->menu()->aboutToShow(); }
  const ScriptedDialogs::Box& LastBox() { return run_.Dialogs().Boxes.last(); }
};

inline const QString two = "<font id=\"a\">one</font><font id=\"b\">two</font>";
