// The whole program on the headless component, in a scratch folder, with scripted dialogs.
#pragma once

#include <QAction>
#include <QCoreApplication>
#include <QMenu>

#include "FOps.h"
#include "FWeb.h"
#include "ModMain.h"
#include "PageOnView.h"

// The letters a to z that a page's body shows.
inline QString ShownLetters(const HTMLDocument& document) {
  QString letters;
  const Node* const body = document.tree().bodyNode();
  for (const Node* node = body; node; node = NextInTree(node, body)) {
    if (!node->IsText()) continue;
    for (const QChar c : node->data())
      if (c >= u'a' && c <= u'z') letters.append(c);
  }
  return letters;
}

class RunningProgram {
 public:
  TestProgram test;
  HeadlessWebBrowser* browser = nullptr;
  ModMain modMain{test.program, MakeHeadless(browser)};
  bool ended = false;

  // With a settings store and dialogs that outlive the program, or with its own.
  explicit RunningProgram(SettingsStore* store = nullptr, Dialogs* boxes = nullptr) : test(store, nullptr, boxes) {
    QObject::connect(&modMain, &ModMain::Ended, &modMain, [this] { ended = true; });
  }

  bool Start() {
    const bool started = modMain.Main();
    if (started) habit_.emplace(View());
    Settle();
    return started;
  }

  // Lets pending loads happen. Nothing here takes time: all of it is posted.
  void Settle() {
    for (int pass = 0; pass < 5; ++pass) {
      QCoreApplication::sendPostedEvents();
      QCoreApplication::processEvents();
    }
  }

  // See UndoHabit.
  QString BrokenUndo() { return modMain.Web() && habit_ ? habit_->Broken() : QString(); }

  // What `main` does when the application's loop has ended.
  void Release() { modMain.ReleaseWindows(); }

  Program& program() { return test.program; }
  ScriptedDialogs& Dialogs() { return test.platform.dialogs; }
  FWeb& Web() { return *modMain.Web(); }
  WBUC& View() { return *Web().jWB; }

  // Chooses an entry of the menus as the user can: its menu opens first. False when there is none of that name, or when
  // it or a menu around it is switched off.
  bool Choose(const QString& name) {
    auto* const action = Web().findChild<QAction*>(name);
    if (!action || !IsOpenTo(qobject_cast<QMenu*>(action->parent())) || !action->isEnabled()) return false;
    action->trigger();
    Settle();
    return true;
  }

  // Types letters behind the last one of the page in view, as the user does: a click below the text, then keys.
  void Type(const QString& letters) {
    browser->Click(QPoint(600, 20000));
    for (const QChar letter : letters) browser->KeyUp(letter.toUpper().unicode());
    Settle();
  }

  QString PathInApp(const QString& name) const { return test.program.AppPath + u'/' + name; }

 private:
  std::optional<UndoHabit> habit_;

  // Opens the menus on the way to a menu, the outermost first.
  static bool IsOpenTo(QMenu* menu) {
    if (!menu) return true;
    if (!IsOpenTo(qobject_cast<QMenu*>(menu->parentWidget()))) return false;
    // The head of a popup is hidden, and so counts as switched off.
    if (menu->menuAction()->isVisible() && !menu->menuAction()->isEnabled()) return false;
    emit menu->aboutToShow();
    return true;
  }
};
