// The window with the three panels web-pack, open project and email; one of them shows at a time.
#pragma once

#include <QWidget>

#include "MailUC.h"
#include "WindowTasks.h"

class EmailPanel;
class FWeb;
class OpenProjectPanel;
class PackPanel;
struct Program;

class FOps : public QWidget {
  Q_OBJECT

 public:
  FOps(Program& program, FWeb& web);
  ~FOps() override;

  // Caption and size for the task, its panel in front, shown modeless. Another number does nothing.
  void ShowOps(OpsTask Kind);

  bool Busy = false;
  MailUC MUC;
  PackPanel* FrOps0 = nullptr;
  OpenProjectPanel* FrOps1 = nullptr;
  EmailPanel* FrOps2 = nullptr;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};
