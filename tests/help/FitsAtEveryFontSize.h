// Whether a window shows all of its words at the letters' sizes that desktops use.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <functional>
#include <memory>

// Makes the window anew at 8 to 14 points by `make`, which also shows it. Where CORVANE_PICTURES names a folder, a
// picture of each is left there.
inline void ExpectFitsAtEveryFontSize(const std::function<std::unique_ptr<QWidget>()>& make) {
  const QFont before = QApplication::font();
  for (int points = 8; points <= 14; ++points) {
    QFont font = before;
    font.setPointSize(points);
    QApplication::setFont(font);
    const std::unique_ptr<QWidget> window = make();
    int seen = 0;
    for (QWidget* const control : window->findChildren<QWidget*>()) {
      const auto* label = qobject_cast<QLabel*>(control);
      if (!control->isVisible() || (!label && !qobject_cast<QAbstractButton*>(control))) continue;
      ++seen;
      const QRect place(control->mapTo(window.get(), QPoint(0, 0)), control->size());
      EXPECT_TRUE(window->rect().contains(place)) << points << qPrintable(control->objectName());
      if (label && label->wordWrap()) {
        EXPECT_GE(label->height(), label->heightForWidth(label->width())) << points << qPrintable(label->objectName());
      } else {
        EXPECT_GE(control->width(), control->sizeHint().width()) << points << qPrintable(control->objectName());
      }
    }
    EXPECT_GT(seen, 0);
    const QString folder = qEnvironmentVariable("CORVANE_PICTURES");
    if (!folder.isEmpty()) window->grab().save(QString("%1/%2-%3.png").arg(folder, window->objectName()).arg(points));
  }
  QApplication::setFont(before);
}
