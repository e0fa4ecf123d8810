// The window itself: which panel shows, where, and how it goes.
#include "FTools.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include "FWeb.h"
#include "ModPics.h"
#include "PlainTip.h"
#include "Program.h"
#include "ToolPanel.h"
#include "Twips.h"
#include "WindowOrder.h"
#include "WindowPlace.h"

namespace {

struct Tool {
  const char* caption;
  int height, width;  // twips
  std::size_t panel;
};

// By the number of the task.
constexpr Tool kTools[] = {{"View Image", 2835, 5355, 0},
                           {"Page Source", 7065, 9330, 1},
                           {"Page Properties", 4845, 6525, 2},
                           {"Tables", 4845, 6525, 3},
                           {"Tables", 4845, 6525, 3}};

constexpr const char* kPanelCaptions[] = {"  Add this picture to page?  ", "  Page Source Code  ",
                                          "  Page Properties  ", "  Create new table   "};

constexpr int kGapBelow = 60;  // twips

}  // namespace

FTools::FTools(Program& program, FWeb& web) : program_(program), web_(web) {
  setObjectName(QStringLiteral("FTools"));
  setWindowTitle(QStringLiteral("Tools"));
  setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                 Qt::WindowCloseButtonHint);
  for (std::size_t index = 0; index < FrTool.size(); ++index)
    FrTool[index] = new ToolPanel(int(index), QLatin1String(kPanelCaptions[index]), this);
  BuildPicturePanel();
  BuildSourcePanel();
  BuildPagePanel();
  BuildTablePanel();
  setFixedSize(TwipsToPixels(kTools[0].width), TwipsToPixels(kTools[0].height));
  ShowPanel(0);
}

void FTools::ShowPanel(std::size_t index) {
  for (std::size_t other = 0; other < FrTool.size(); ++other) FrTool[other]->setVisible(other == index);
  FrTool[index]->FillRoom(size());
  FrTool[index]->raise();
}

void FTools::ShowTool(ToolTask iOp, const QString& sArg) {
  const int number = int(iOp);
  if (isVisible()) HideFromTop();
  if (number >= 0 && number < int(std::size(kTools))) {
    const Tool& tool = kTools[number];
    setWindowTitle(QLatin1String(tool.caption));
    setFixedSize(TwipsToPixels(tool.width), TwipsToPixels(tool.height));
    if (iOp == ToolTask::AddPicture) {
      TPicPath->setText(sArg);
      TPicPath->setToolTip(PlainTip(sArg));
    }
    if (iOp == ToolTask::PageSource) bCloseText[1]->setEnabled(false);
    if (iOp == ToolTask::NewTable || iOp == ToolTask::TableProperties) {
      const bool isNew = iOp == ToolTask::NewTable;
      FrTool[3]->SetCaption(isNew ? QStringLiteral("  Create new table  ")
                                  : QStringLiteral("  Edit table properties  "));
      LabNewTable->setVisible(isNew);
    }
    ShowPanel(tool.panel);
  }
  PlaceAtBottom();
  show();
  raise();
  activateWindow();
  if (iOp > ToolTask::PageProperties) {
    TTable[0]->setFocus();
    TTable[0]->selectAll();  // the window gets the keys only later
  }
  SetTopmost(this);
  LearnEdges();
}

// In the middle of the main window's lower edge, and on the screen.
void FTools::PlaceAtBottom() {
  const QRect web = WithEdges(web_);
  const QSize own = size().grownBy(edges_.value_or(EdgesOf(web_).value_or(QMargins())));
  const double left = PixelsToTwips(web.x()) + PixelsToTwips(web.width()) / 2.0 - PixelsToTwips(own.width()) / 2.0;
  const int top = PixelsToTwips(web.y()) + PixelsToTwips(web.height()) - PixelsToTwips(own.height()) - kGapBelow;
  const QRect place(QPoint(TwipsToPixels(left), TwipsToPixels(top)), own);
  MoveWithEdges(*this, KeepWithin(place, FreeAreas()).topLeft(), edges_);
}

// The desktop makes the edges when the window is shown for the first time. What was taken for them until then may be
// wrong, and the window would stand lower or higher than at all later times. Nothing tells when they are there.
void FTools::LearnEdges() {
  constexpr int pauseMs = 50;
  constexpr int mostTries = 20;
  if (edges_ || !isVisible()) return;
  edges_ = EdgesOf(*this);
  if (edges_)
    PlaceAtBottom();
  else if (++tries_ < mostTries)
    QTimer::singleShot(pauseMs, this, &FTools::LearnEdges);
}

void FTools::HideFromTop() {
  SetNotTopmost(this);
  hide();
}

// The desktop's font or style may change while the window is there.
void FTools::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  for (ToolPanel* panel : FrTool)
    if (panel && !panel->isHidden()) panel->FillRoom(size());
}

void FTools::keyPressEvent(QKeyEvent* event) {
  struct Row {
    ToolPanel* panel;
    QPushButton* ok;
    QPushButton* out;
  };
  const bool inTitle = TTitle->hasFocus();
  const Row rows[] = {{FrTool[0], bOKPic[0], bOKPic[1]},
                      {FrTool[2], inTitle ? bTitle : bOKProps, bOKProps},
                      {FrTool[3], bOKTable[0], bOKTable[1]}};
  const bool isOk = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  for (const Row& row : rows) {
    if (!row.panel->isVisible() || (!isOk && event->key() != Qt::Key_Escape)) continue;
    (isOk ? row.ok : row.out)->click();
    return;
  }
  // Text that isn't saved yet isn't thrown away by one stray key.
  if (FrTool[1]->isVisible() && event->key() == Qt::Key_Escape && !bCloseText[1]->isEnabled()) bCloseText[0]->click();
  QWidget::keyPressEvent(event);
}

// The close box only hides.
void FTools::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (isVisible()) HideFromTop();
}

void FTools::HideViewer() {
  if (pictures_) pictures_->HideViewer();
}
