// The panel that adds a picture to the page.
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "AsciiText.h"
#include "BusyGuard.h"
#include "CopyBesidePages.h"
#include "FTools.h"
#include "FWeb.h"
#include "ModBrowse.h"
#include "ModPics.h"
#include "Program.h"
#include "ToolPanel.h"
#include "Twips.h"
#include "WorkOps.h"
#include "WorkWindow.h"

namespace {

constexpr ButtonRow kButtons[] = {{"OK", "Add this picture to page."},
                                  {"Cancel", "Close without adding picture to page."}};
constexpr const char* kSpecLabels[] = {" W:", " H:", "Size (KB):"};

}  // namespace

void FTools::BuildPicturePanel() {
  Frame1 = NewFrame("Add picture to page:");
  SetName(Frame1, "Frame1");
  auto* column = new QVBoxLayout(Frame1);
  column->setContentsMargins(7, 4, 7, 6);
  column->setSpacing(6);
  TPicPath = NewBox("TPicPath");
  TPicPath->setReadOnly(true);
  TPicPath->setAccessibleName(QStringLiteral("Picture"));
  column->addWidget(TPicPath);
  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  column->addLayout(row);
  for (std::size_t index = 0; index < std::size(kSpecLabels); ++index) {
    TSpec[index] = NewNumberBox("TSpec", int(index));
    TSpec[index]->setReadOnly(true);
    TSpec[index]->setAlignment(Qt::AlignHCenter);
    row->addWidget(NewLabel(kSpecLabels[index], TSpec[index]));
    row->addWidget(TSpec[index], 1);
  }
  for (std::size_t index = 0; index < std::size(kButtons); ++index) {
    bOKPic[index] = NewButton("bOKPic", int(index), kButtons[index]);
    connect(bOKPic[index], &QPushButton::clicked, this, [this, index] { OnOKPic(int(index)); });
  }
  FrTool[0]->Column()->addWidget(Frame1, 1);
  FrTool[0]->Column()->addLayout(RowAtRight({bOKPic[0], bOKPic[1]}));
}

void FTools::AddPicture(QWidget* owner) {
  waitingPictures_.clear();
  TakePicture(ShowOpenDialog(program_, owner, QStringLiteral("Select Picture"),
                             QStringLiteral("Web Graphics(*.gif;*.jpg;*.png)"), QStringLiteral("*.gif;*.jpg;*.png")));
}

// While the panel asks about one, they wait behind those that wait.
void FTools::AddPictures(const QStringList& paths) {
  if (Busy) return;
  const bool isAsking = Frame1->isVisible();
  if (!isAsking) waitingPictures_.clear();
  waitingPictures_ += paths;
  if (!isAsking) TakeNextPicture();
}

// Up to one that the user has to decide about.
void FTools::TakeNextPicture() {
  while (!waitingPictures_.isEmpty()) {
    const QString path = waitingPictures_.takeFirst();
    TakePicture(path);
    if (isVisible() && TPicPath->text() == path) return;
  }
}

// Only the last four characters count, so ".jpeg" is refused, and that without a word.
void FTools::TakePicture(const QString& path) {
  if (path.isEmpty() || !program_.Files.FileExists(path)) return;
  const QString ending = UpperAscii(path.right(4));
  if (ending == u".GIF" || ending == u".JPG") {
    if (pictures_) {
      if (const auto picture = pictures_->LoadPictureFile(path, PixelsToTwips(web_.FrWork->height()), &web_)) {
        TSpec[0]->setText(QString::number(picture->Width));
        TSpec[1]->setText(QString::number(picture->Height));
        TSpec[2]->setText(QString::number(picture->SizeKb));
      }
    }
    ShowTool(ToolTask::AddPicture, path);
  } else if (ending == u".PNG") {
    InsertPageHTML(*web_.jWB, QStringLiteral("<IMG SRC=\"%1\">").arg(CopyBesidePages(program_, path)));
  }
}

// The picture's tag goes into the page even where the copy failed.
void FTools::OnOKPic(int Index) {
  const BusyGuard guard(Busy);
  if (!guard) return;
  HideViewer();
  HideFromTop();
  const QString path = TPicPath->text();
  if (Index == 0 && program_.Files.FileExists(path)) {
    const QString name = CopyBesidePages(program_, path);
    InsertPageHTML(*web_.jWB, QStringLiteral("<IMG SRC=\"") + name + QStringLiteral("\" WIDTH=") + TSpec[0]->text() +
                                  QStringLiteral(" HEIGHT=") + TSpec[1]->text() + u'>');
  }
  TakeNextPicture();
}
