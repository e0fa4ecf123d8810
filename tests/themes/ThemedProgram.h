// The program on the headless component with the built pictures of the themes beside it, and what its menu says of
// them.
#pragma once

#include <QDir>
#include <QMenu>

#include "RunningProgram.h"

inline QString SampleFolder() {
  return QStringLiteral(CORVANE_SAMPLES);
}

struct ThemeShown {
  QString entry;    // name of the menu entry
  QString caption;  // without the mark of its key
  QString picture;  // the page's background
  QColor color;     // the page's text
};

class ThemedProgram : public RunningProgram {
 public:
  bool Start() {
    const QString folder = PathInApp(QStringLiteral("samples"));
    bool good = QDir().mkpath(folder);
    for (const QString& name : QDir(SampleFolder()).entryList(QDir::Files))
      good = QFile::copy(SampleFolder() + u'/' + name, folder + u'/' + name) && good;
    return RunningProgram::Start() && good;
  }

  // Chooses a theme's entry and tells how the page looks then.
  ThemeShown Dress(const QString& entry) {
    Choose(entry);
    QString caption = Web().findChild<QAction*>(entry)->text();
    return {entry, caption.remove(u'&'), View().BackPic(), QColor(View().BodyFontColor())};
  }

  // All entries of both families, in the order of the menus.
  static QStringList Entries() {
    QStringList names;
    for (const char* const family : {"mmtheme", "mmthemeS"})
      for (int index = 0; index < 7; ++index) names += QString::fromLatin1(family) + QString::number(index);
    return names;
  }
};
