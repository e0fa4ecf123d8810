#include "FOps.h"

#include <QCloseEvent>
#include <QKeyEvent>

#include "EmailPanel.h"
#include "FWeb.h"
#include "OpenProjectPanel.h"
#include "PackPanel.h"
#include "Program.h"
#include "Twips.h"
#include "WindowOrder.h"

namespace {

struct Task {
  const char* caption;
  int width, height;  // twips
};

// By the number of the task.
constexpr Task kTasks[] = {
    {"Make Web-Pack File", 6780, 4140}, {"Open Saved Project", 6780, 4140}, {"Email Current Page", 6780, 5940}};

}  // namespace

FOps::FOps(Program& program, FWeb& web) : MUC(program.platform) {
  setObjectName(QStringLiteral("FOps"));
  FrOps0 = new PackPanel(program, Busy, this);
  FrOps1 = new OpenProjectPanel(program, web, Busy, this);
  FrOps2 = new EmailPanel(program, MUC, Busy, &web, this);
  connect(FrOps0, &PackPanel::HideRequested, this, &QWidget::hide);
  connect(FrOps1, &OpenProjectPanel::HideRequested, this, &QWidget::hide);
  connect(FrOps2, &EmailPanel::HideRequested, this, &QWidget::hide);
}

// The panel refers to the mail client, which would go before it.
FOps::~FOps() {
  delete FrOps2;
}

void FOps::ShowOps(OpsTask Kind) {
  QWidget* const panels[] = {FrOps0, FrOps1, FrOps2};
  const int kind = int(Kind);
  if (kind < 0 || kind >= int(std::size(kTasks))) return;
  const Task& task = kTasks[kind];
  if (Kind == OpsTask::WebPack) FrOps0->LoadBoxes();
  if (Kind == OpsTask::OpenProject) FrOps1->LoadList();
  if (Kind == OpsTask::Email) FrOps2->LoadEmailDefaults();
  setWindowTitle(QString::fromLatin1(task.caption));
  setFixedSize(TwipsToPixels(task.width), TwipsToPixels(task.height));
  for (QWidget* const panel : panels) panel->setVisible(panel == panels[kind]);
  panels[kind]->setGeometry(rect());
  panels[kind]->raise();
  if (Kind == OpsTask::Email) FrOps2->StartUp();
  ShowInFront(*this);
}

// The close box only hides, and ends a message that is on its way.
void FOps::closeEvent(QCloseEvent* event) {
  event->ignore();
  MUC.CloseDown();
  hide();
}

// Escape does what the close box does, but where a message would be lost by one stray key.
void FOps::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && !MUC.EmailAvailable()) close();
  QWidget::keyPressEvent(event);
}
