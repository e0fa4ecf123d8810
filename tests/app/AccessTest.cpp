// Every window by keys alone and by a screen reader: all controls have a name and a role, and Tab reaches them in the
// order in which they are read.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <algorithm>
#include <functional>

#include "FOps.h"
#include "FSets.h"
#include "FSplash.h"
#include "FTip.h"
#include "FTools.h"
#include "ProgramFixture.h"
#include "WorkWindow.h"

namespace {

std::string NameOf(const QObject* object) {
  return object->objectName().isEmpty() ? object->metaObject()->className() : qPrintable(object->objectName());
}

bool IsInside(const QWidget* widget, const QWidget* group) {
  return widget == group || group->isAncestorOf(widget);
}

class Access : public ProgramTest {
 protected:
  struct View {
    std::string name;
    QWidget* window;
  };

  void SetUp() override { ASSERT_TRUE(run_.Start()); }

  static QWidget* Window(const char* name) {
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (widget->objectName() == QLatin1String(name)) return widget;
    return nullptr;
  }

  // Brings each window, and each panel of those that have several, into view, one after the other.
  void ForEachView(const std::function<void(const View&)>& look) {
    const auto shown = [&](const std::string& name, QWidget* window) {
      ASSERT_TRUE(window) << name;
      window->show();
      run_.Settle();
      SCOPED_TRACE(name);
      look({name, window});
      if (window != &Web()) window->hide();
    };
    // What is disabled until something is selected counts as well.
    Web().ShowSelFrame(true);
    shown("FWeb", &Web());
    FTools& tools = *run_.modMain.Tools();
    for (int panel = 0; panel < 5; ++panel) {
      tools.ShowTool(ToolTask(panel), "picture.gif");
      shown("FTools " + std::to_string(panel), &tools);
    }
    FOps& ops = *run_.modMain.Ops();
    for (int kind = 0; kind < 3; ++kind) {
      ops.ShowOps(OpsTask(kind));
      shown("FOps " + std::to_string(kind), &ops);
    }
    FSets& sets = *run_.modMain.Sets();
    shown("FSets general", &sets);
    sets.bSetWins[1]->click();
    shown("FSets icon", &sets);
    sets.bIcoSets[1]->click();
    shown("FSets custom icons", &sets);
    run_.modMain.Tip()->ShowTip(0, "What can I do with Corvane?");
    shown("FTip", run_.modMain.Tip());
    run_.modMain.Splash()->ShowAbout();
    shown("FSplash", run_.modMain.Splash());
    for (const char* name : {"FPic", "fBitmap", "fIconMaker"}) shown(name, Window(name));
  }

  // The control itself, where it is a part of another one as the box of an editable list is.
  static bool IsControl(const QWidget* widget) {
    if (qobject_cast<const QComboBox*>(widget->parentWidget())) return false;
    if (widget->objectName().startsWith(QLatin1String("qt_"))) return false;  // the innards of Qt's own
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QPlainTextEdit*>(widget) ||
           qobject_cast<const QTextEdit*>(widget) || qobject_cast<const QAbstractItemView*>(widget);
  }

  // What Tab comes by, in its order; what is disabled now among it.
  static QList<QWidget*> Stops(const QWidget* window) {
    QList<QWidget*> stops;
    for (QWidget* widget = window->nextInFocusChain(); widget != window; widget = widget->nextInFocusChain())
      if (widget->window() == window && widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus) &&
          !widget->focusProxy())
        stops.append(widget);
    return stops;
  }

  static QString SpokenName(QWidget* widget) {
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
  }

  static QWidget* GroupOf(const QWidget* widget) {
    QWidget* group = widget->parentWidget();
    while (!group->isWindow() && !qobject_cast<QGroupBox*>(group)) group = group->parentWidget();
    return group;
  }

  static QRect Place(const QWidget* widget) { return {widget->mapTo(widget->window(), QPoint(0, 0)), widget->size()}; }
  // Whether a reader who goes down, or on to the next column, comes to `second` after `first`.
  static bool ComesAfter(const QRect& first, const QRect& second) {
    return second.bottom() > first.top() || second.left() >= first.right();
  }
  static bool ComesBeforeInLine(const QRect& first, const QRect& second) {
    return second.top() <= first.bottom() && second.bottom() >= first.top() && second.right() <= first.left() &&
           qAbs(second.center().y() - first.center().y()) < first.height() / 2;
  }
};

// Whatever can be worked with has a name that can be read out, and a role.
TEST_F(Access, EveryControlHasANameAndARole) {
  int controls = 0;
  ForEachView([&](const View& view) {
    const std::function<void(QAccessibleInterface*)> walk = [&](QAccessibleInterface* one) {
      if (!one || !one->isValid() || one->state().invisible) return;
      const auto* widget = qobject_cast<const QWidget*>(one->object());
      if (widget && widget != view.window && (IsControl(widget) || one->state().focusable)) {
        // The text box inside a list is read out under the list's name.
        const bool isPart = qobject_cast<const QComboBox*>(widget->parentWidget()) != nullptr;
        EXPECT_TRUE(isPart || !one->text(QAccessible::Name).trimmed().isEmpty()) << NameOf(widget);
        EXPECT_NE(QAccessible::NoRole, one->role()) << NameOf(widget);
        if (IsControl(widget)) {
          EXPECT_NE(QAccessible::Client, one->role()) << NameOf(widget);
          ++controls;
        }
      }
      for (int child = 0; child < one->childCount(); ++child) walk(one->child(child));
    };
    QAccessibleInterface* const top = QAccessible::queryAccessibleInterface(view.window);
    ASSERT_TRUE(top);
    EXPECT_FALSE(top->text(QAccessible::Name).isEmpty()) << "the window's title";
    walk(top);
  });
  EXPECT_GT(controls, 120);
}

TEST_F(Access, ControlsOfAKindWithinAGroupHaveNamesThatDiffer) {
  ForEachView([&](const View& view) {
    QHash<QString, QWidget*> known;  // by kind and name
    for (QWidget* widget : Stops(view.window)) {
      const int role = QAccessible::queryAccessibleInterface(widget)->role();
      QWidget*& other =
          known[QStringLiteral("%1 %2 %3").arg(quintptr(GroupOf(widget))).arg(role).arg(SpokenName(widget))];
      EXPECT_FALSE(other) << qPrintable(SpokenName(widget)) << ": " << NameOf(widget) << " and "
                          << NameOf(other ? other : widget);
      other = widget;
    }
  });
}

TEST_F(Access, TabReachesEveryControl) {
  int reached = 0;
  ForEachView([&](const View& view) {
    const QList<QWidget*> stops = Stops(view.window);
    for (QWidget* widget : view.window->findChildren<QWidget*>()) {
      if (!IsControl(widget) || !widget->isVisible()) continue;
      const auto* box = qobject_cast<const QLineEdit*>(widget);
      // What only shows something need not be stopped at.
      if (box && box->isReadOnly()) continue;
      // A box that shows the colour in use is no choice.
      if (widget->objectName() == QLatin1String("PicColor")) continue;
      // A second place to click for what is reached under the same name, as a bar beside its option.
      const bool isReached = std::any_of(stops.begin(), stops.end(), [widget](QWidget* stop) {
        return stop == widget || (GroupOf(stop) == GroupOf(widget) && SpokenName(stop) == SpokenName(widget));
      });
      EXPECT_TRUE(isReached) << NameOf(widget);
      ++reached;
    }
  });
  EXPECT_GT(reached, 110);
}

// Group by group, and inside of each downwards, or column by column.
TEST_F(Access, TabGoesInTheOrderOfReading) {
  ForEachView([&](const View& view) {
    const QList<QWidget*> stops = Stops(view.window);
    QList<QWidget*> groups;
    for (QWidget* stop : stops)
      for (QWidget* group = GroupOf(stop);; group = GroupOf(group)) {
        if (!groups.contains(group)) groups.append(group);
        if (group->isWindow()) break;
      }
    for (const QWidget* group : groups) {
      qsizetype first = -1, last = -1, count = 0;
      for (qsizetype at = 0; at < stops.size(); ++at) {
        if (!IsInside(stops[at], group)) continue;
        if (first < 0) first = at;
        last = at;
        ++count;
      }
      EXPECT_EQ(count, last - first + 1) << "the keys leave " << NameOf(group) << " and come back to it";
      // The direct members, each a control or a group of its own.
      QList<const QWidget*> members;
      for (const QWidget* stop : stops) {
        if (!IsInside(stop, group)) continue;
        const QWidget* member = stop;
        while (GroupOf(member) != group) member = GroupOf(member);
        if (members.isEmpty() || members.last() != member) members.append(member);
      }
      for (qsizetype at = 1; at < members.size(); ++at) {
        // The page lies under all that floats over it, and what stands in a head of its own comes when it comes.
        if (group->isWindow() && view.name == "FWeb") continue;
        const bool isGroup =
            qobject_cast<const QGroupBox*>(members[at]) || qobject_cast<const QGroupBox*>(members[at - 1]);
        const bool bothAre =
            qobject_cast<const QGroupBox*>(members[at]) && qobject_cast<const QGroupBox*>(members[at - 1]);
        if (isGroup && !bothAre) continue;
        const QRect before = Place(members[at - 1]), now = Place(members[at]);
        EXPECT_TRUE(ComesAfter(before, now) && !ComesBeforeInLine(before, now))
            << NameOf(members[at - 1]) << " then " << NameOf(members[at]) << " in " << NameOf(group);
      }
    }
  });
}

// Those of the main window by their places in words: strip, font controls, page, Work Window.
TEST_F(Access, TheMainWindowIsReadFromTheStripToTheWorkWindow) {
  QStringList names;
  Web().ShowSelFrame(true);
  for (const QWidget* stop : Stops(&Web())) names += stop->objectName();
  names.removeAll(QString());
  const QStringList wanted = {
      "ImTool1", "ImTool2", "ImTool0",   "ImTool3",   "ImTool4", "ImTool5", "ImTool6", "ImTool7", "ImTool8", "BoxPage",
      "BoxFace", "BoxSize", "BoxColor0", "BoxColor1", "bBold",   "LabUp",   "bSel0",   "bSel1",   "bSel2",   "bSel3",
      "bSel4",   "bSel5",   "bProps",    "bSel7",     "bSel8",   "bSel9",   "bSel10",  "bSel11",  "bSel6"};
  QStringList controls;
  for (const QString& name : names)
    if (wanted.contains(name)) controls += name;
  EXPECT_EQ(wanted.join(u' ').toStdString(), controls.join(u' ').toStdString());
}

TEST_F(Access, TheWorkWindowGoesDownAndUpByKeys) {
  Web().FrWork->LabUp->setFocus();
  QTest::keyClick(Web().FrWork->LabUp, Qt::Key_Space);
  EXPECT_EQ("5", Web().FrWork->UpCaption());
  QTest::keyClick(Web().FrWork->LabUp, Qt::Key_Space);
  EXPECT_EQ("6", Web().FrWork->UpCaption());
}

TEST_F(Access, EveryMenuEntryHasWords) {
  int entries = 0;
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    for (const auto* action : window->findChildren<QAction*>()) {
      if (action->isSeparator() || !action->objectName().startsWith(u'm')) continue;
      EXPECT_FALSE(action->text().trimmed().isEmpty()) << NameOf(action);
      ++entries;
    }
  }
  EXPECT_GT(entries, 80);
}

}  // namespace
