// A window that is there from start to exit: its close box only hides it.
#pragma once

#include <QWidget>

class ShellWindow : public QWidget {
  Q_OBJECT

 public:
  ShellWindow(const QString& name, const QString& caption);

 protected:
  void closeEvent(QCloseEvent* event) override;
};
