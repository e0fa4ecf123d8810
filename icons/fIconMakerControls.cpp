// Makes the window's controls: the tools at the left, the work area within its rulers, the icon in its real size with
// Undo and Clear at the right, and the colours along the bottom.
#include <QAction>
#include <QGridLayout>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "IconColors.h"
#include "LineBar.h"
#include "Swatch.h"
#include "fIconMaker.h"

// Outside of any namespace, as the macro wants it.
static void InitPictures() {
  Q_INIT_RESOURCE(IconEditor);
}

namespace {

constexpr int kGap = 6;
constexpr int kRulerMargin = 8;
constexpr qint32 kRulerColor = 0xD0D0D0, kStripeColor = 0xD8D8D8;

struct ToolRow {
  const char* picture;
  const char* toolTip;
};
constexpr ToolRow kTools[] = {{"line", "line or dot."},
                              {"rectangle", "outline rectangle."},
                              {"solid-rectangle", "solid rectangle."},
                              {"ellipse", "outline ellipse."},
                              {"solid-ellipse", "solid ellipse."}};

// Tips, and what a reader of the screen says; the pictures say it to the others.
constexpr const char* kMoves[] = {"right", "down", "left", "up"};
constexpr const char* kColorNames[] = {"Black", "Dark blue",  "Dark green", "Teal", "Dark red", "Purple",
                                       "Olive", "Light grey", "Dark grey",  "Blue", "Green",    "Cyan",
                                       "Red",   "Magenta",    "Yellow",     "White"};

template <typename Control>
Control* Named(Control* control, const char* name, int index = -1) {
  control->setObjectName(QLatin1String(name) + (index < 0 ? QString() : QString::number(index)));
  return control;
}

QGroupBox* NewFrame(const char* name, const char* caption, QLayout* content) {
  auto* frame = Named(new QGroupBox(QLatin1String(caption)), name);
  content->setContentsMargins(kGap, kGap, kGap, kGap);
  content->setSpacing(kGap);
  frame->setLayout(content);
  return frame;
}

QPushButton* NewPictureButton(const char* name, int index, const char* picture) {
  constexpr QSize size(34, 30), pictureSize(20, 20);
  auto* button =
      Named(new QPushButton(QIcon(QStringLiteral(":/iconeditor/%1.svg").arg(QLatin1String(picture))), ""), name, index);
  button->setIconSize(pictureSize);
  button->setFixedSize(size);
  return button;
}

QLabel* NewStripe(const char* name, int index, qint32 color, const QRect& place, QWidget* parent) {
  auto* stripe = Named(new QLabel(parent), name, index);
  QPalette palette;
  palette.setColor(QPalette::Window, PixelOf(color));
  stripe->setPalette(palette);
  stripe->setAutoFillBackground(true);
  stripe->setGeometry(place);
  return stripe;
}

}  // namespace

fIconMaker::fIconMaker(Program& program) : program_(program) {
  InitPictures();  // those of a static library have to be asked for
  setObjectName(QStringLiteral("fIconMaker"));
  BuildMenus();
  auto* const client = new QWidget(this);
  auto* const grid = new QGridLayout(client);
  grid->setSpacing(2 * kGap);
  grid->addWidget(NewToolFrame(), 0, 0);
  grid->addWidget(NewWorkArea(), 0, 1);
  grid->addWidget(NewSide(), 0, 2);
  grid->addWidget(NewColorFrame(), 1, 0, 1, 3);
  setCentralWidget(client);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
  ConnectMouse();
  ConnectControls();
  ResetEditor();
  Drawing.CurColor = TransparentColor;
  PicColor->SetColor(TransparentColor);
}

void fIconMaker::BuildMenus() {
  struct Row {
    const char* name;
    const char* caption;            // null for a separator
    void (fIconMaker::*command)();  // null for a menu of the bar
  };
  static const Row rows[] = {{"mFile", "&File", nullptr},
                             {"mOpen", "&Open", &fIconMaker::mOpen},
                             {"micol5", nullptr, nullptr},
                             {"mSavePlain", "&Save", &fIconMaker::mSavePlain},
                             {"mSaveIco", "Save &As", &fIconMaker::mSaveIco},
                             {"mlineico6", nullptr, nullptr},
                             {"mExit", "E&xit Icon Editor", &fIconMaker::mExit},
                             {"mEdit", "&Edit", nullptr},
                             {"mPaste", "&Paste Image from Clipboard", &fIconMaker::mPaste},
                             {"mHelp", "&Help", nullptr},
                             {"mIcoHelp", "Corvane &Help", &fIconMaker::mIcoHelp}};
  QMenu* menu = nullptr;
  for (const Row& row : rows) {
    if (row.caption && !row.command) {
      menu = Named(menuBar()->addMenu(QLatin1String(row.caption)), row.name);
      continue;
    }
    QAction* const action = row.caption ? menu->addAction(QLatin1String(row.caption)) : menu->addSeparator();
    Named(action, row.name);
    action->setMenuRole(QAction::NoRole);  // macOS would take "Exit" for the program's own
    if (row.command) connect(action, &QAction::triggered, this, row.command);
  }
}

QWidget* fIconMaker::NewToolFrame() {
  auto* column = new QVBoxLayout;
  column->addWidget(NewShapeFrame());
  column->addWidget(NewMoveFrame());
  column->addWidget(NewLineFrame());
  column->addStretch(1);
  return FrTools = NewFrame("FrTools", "TOOLS", column);
}

QWidget* fIconMaker::NewShapeFrame() {
  auto* row = new QHBoxLayout;
  for (std::size_t index = 0; index < bOps.size(); ++index) {
    const ToolRow& tool = kTools[index];
    bOps[index] = NewPictureButton("bOps", int(index), tool.picture);
    bOps[index]->setToolTip(QLatin1String(tool.toolTip));
    bOps[index]->setAccessibleName(QLatin1String(tool.toolTip));
    row->addWidget(bOps[index]);
  }
  row->addStretch(1);
  return Frame6 = NewFrame("Frame6", "Shapes", row);
}

QWidget* fIconMaker::NewMoveFrame() {
  auto* row = new QHBoxLayout;
  for (std::size_t index = 0; index < bMoveIm.size(); ++index) {
    bMoveIm[index] = NewPictureButton("bMoveIm", int(index), kMoves[index]);
    bMoveIm[index]->setToolTip(QLatin1String(kMoves[index]));
    bMoveIm[index]->setAutoRepeat(true);
    bMoveIm[index]->setAccessibleName(QStringLiteral("Move image ") + QLatin1String(kMoves[index]));
    row->addWidget(bMoveIm[index]);
  }
  row->addStretch(1);
  return Frame3 = NewFrame("Frame3", "Move image", row);
}

QWidget* fIconMaker::NewLineFrame() {
  auto* grid = new QGridLayout;
  for (std::size_t index = 0; index < OpW.size(); ++index) {
    const int width = int(index) + 1;
    const QString name = QStringLiteral("Line width %1").arg(width);
    OpW[index] = Named(new QRadioButton, "OpW", int(index));
    OpW[index]->setAccessibleName(name);
    LabLine[index] = Named(new LineBar(width), "LabLine", int(index));
    LabLine[index]->setAccessibleName(name);
    grid->addWidget(OpW[index], int(index), 0);
    grid->addWidget(LabLine[index], int(index), 1);
  }
  grid->setColumnStretch(1, 1);
  OpW[0]->setChecked(true);
  return Frame1 = NewFrame("Frame1", "Line width", grid);
}

QWidget* fIconMaker::NewWorkArea() {
  const int side = Surfaces.PicBig->width() + 2 * kRulerMargin, pitch = 2 * kCellSide;
  Label1 = NewStripe("Label1", -1, kRulerColor, QRect(), nullptr);
  Label1->setFixedSize(side, side);
  const int count = int(Label2.size()) / 2;
  for (int index = 0; index < count; ++index) {
    const int at = kRulerMargin + index * pitch;
    Label2[std::size_t(index)] = NewStripe("Label2", index, kStripeColor, QRect(at, 0, kCellSide, side), Label1);
    Label2[std::size_t(count + index)] =
        NewStripe("Label2", count + index, kStripeColor, QRect(0, at, side, kCellSide), Label1);
  }
  Surfaces.PicBig->setParent(Label1);
  Surfaces.PicBig->move(kRulerMargin, kRulerMargin);
  Surfaces.PicBig->setFocusPolicy(Qt::StrongFocus);
  Surfaces.PicBig->setAccessibleName(QStringLiteral("Work area"));
  Surfaces.PicBig->show();
  auto* const area = new QWidget;
  auto* const middle = new QVBoxLayout(area);
  middle->setContentsMargins(0, 0, 0, 0);
  middle->addWidget(Label1, 0, Qt::AlignCenter);
  return area;
}

QWidget* fIconMaker::NewSide() {
  Surfaces.Pic1->setAccessibleName(QStringLiteral("Icon in its real size"));
  bUndo = Named(new QPushButton(QStringLiteral("Undo")), "bUndo");
  bUndo->setToolTip(QStringLiteral("Undo last drawing action."));
  bclear = Named(new QPushButton(QStringLiteral("Clear")), "bclear");
  bclear->setToolTip(QStringLiteral("Clear editor image."));
  auto* const side = new QWidget;
  auto* const column = new QVBoxLayout(side);
  column->setContentsMargins(0, kGap, 0, kGap);
  column->setSpacing(kGap);
  auto* const frame = new QFrame;
  frame->setFrameStyle(int(QFrame::StyledPanel) | int(QFrame::Sunken));
  auto* const inside = new QVBoxLayout(frame);
  inside->setContentsMargins(2 * kGap, 2 * kGap, 2 * kGap, 2 * kGap);
  inside->addWidget(Surfaces.Pic1);
  column->addWidget(frame, 0, Qt::AlignHCenter);
  column->addStretch(1);
  column->addWidget(bUndo);
  column->addWidget(bclear);
  return side;
}

QWidget* fIconMaker::NewColorFrame() {
  constexpr QSize box(24, 24), current(40, 30);
  auto* row = new QHBoxLayout;
  bTrans = Named(new QPushButton(QStringLiteral("T")), "bTrans");
  bTrans->setToolTip(QStringLiteral("Use transparent color."));
  bTrans->setAccessibleName(QStringLiteral("Transparent color"));
  bTrans->setFixedWidth(current.width());
  row->addWidget(bTrans);
  PicColor = Named(new Swatch, "PicColor");
  PicColor->setToolTip(QStringLiteral("Current color"));
  PicColor->setAccessibleName(QStringLiteral("Current color"));
  PicColor->setFixedSize(current);
  PicColor->setFocusPolicy(Qt::NoFocus);
  row->addWidget(PicColor);
  row->addSpacing(kGap);
  for (std::size_t index = 0; index < PCols.size(); ++index) {
    PCols[index] = Named(new Swatch, "PCols", int(index));
    PCols[index]->SetColor(kColorRow[index]);
    PCols[index]->setFixedSize(box);
    PCols[index]->setToolTip(QLatin1String(kColorNames[index]));
    PCols[index]->setAccessibleName(QLatin1String(kColorNames[index]));
    row->addWidget(PCols[index]);
  }
  row->addStretch(1);
  return Frame2 = NewFrame("Frame2", "Color Menu", row);
}
