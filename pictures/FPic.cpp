#include "FPic.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>

#include "AsciiText.h"
#include "ControlLook.h"
#include "ModPics.h"
#include "Twips.h"

// Outside of any namespace, as the macro wants it.
static void InitButtonPictures() {
  Q_INIT_RESOURCE(PictureTools);
}

namespace {

constexpr QSize kNormalSize = {1000, 700};  // when the window isn't maximised
constexpr QMargins kFrameMargins = {9, 5, 9, 8};
constexpr int kSpacing = 6;
constexpr int kDigits = 5;        // of a side's length
constexpr int kSmallestFont = 7;  // pixels

// Room for that many digits, whatever stands in it, so that the frame keeps its size.
class NumberBox : public QLineEdit {
 public:
  QSize sizeHint() const override {
    const QSize one = QLineEdit::minimumSizeHint();  // room for one letter
    return {one.width() + (kDigits + 1) * fontMetrics().horizontalAdvance(u'0') - fontMetrics().maxWidth(),
            QLineEdit::sizeHint().height()};
  }
  QSize minimumSizeHint() const override { return sizeHint(); }
};

class SizeLabel : public QLabel {
 public:
  QSize sizeHint() const override {
    const QString widest = QString(kDigits, u'0') + QStringLiteral(" X ") + QString(kDigits, u'0');
    return {fontMetrics().horizontalAdvance(widest) + 2 * margin(), fontMetrics().height() + 2 * margin()};
  }
  QSize minimumSizeHint() const override { return sizeHint(); }
};

// As wide as it is high.
class SmallButton : public QPushButton {
 public:
  QSize sizeHint() const override {
    const int height = QPushButton::sizeHint().height();
    return {height, height};
  }
  QSize minimumSizeHint() const override { return sizeHint(); }
};

// Its edge is that of its look, inside of which the caption stands.
class Toolbar : public QGroupBox {
 public:
  using QGroupBox::QGroupBox;

 protected:
  void paintEvent(QPaintEvent*) override {
    const QRect caption(0, 0, width(), contentsRect().top());
    QPainter(this).drawText(caption.adjusted(kFrameMargins.left() + 5, 2, 0, 0), Qt::AlignVCenter | Qt::TextSingleLine,
                            title());
  }
};

QPushButton* Dress(QPushButton* button, const char* name, const char* toolTip) {
  button->setObjectName(QLatin1String(name));
  button->setToolTip(QLatin1String(toolTip));
  button->setAutoDefault(true);  // the return key presses it
  return button;
}

QPushButton* NewButton(const char* name, const char* caption, const char* toolTip, const char* icon) {
  QPushButton* const button = Dress(new QPushButton(QLatin1String(caption)), name, toolTip);
  button->setAccessibleName(QLatin1String(caption));
  button->setIcon(QIcon(QStringLiteral(":/tools/%1.svg").arg(QLatin1String(icon))));
  return button;
}

QLineEdit* NewNumberBox(const char* name) {
  auto* box = new NumberBox;
  box->setObjectName(QLatin1String(name));
  box->setAlignment(Qt::AlignHCenter);
  box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  return box;
}

// A label, from which its control takes the name for screen readers.
QLabel* NewLabel(const char* text, QWidget* control) {
  auto* label = new QLabel(QLatin1String(text));
  label->setBuddy(control);
  QString name = TrimBlanks(QString::fromLatin1(text));
  if (name.endsWith(u':')) name.chop(1);
  control->setAccessibleName(name);
  return label;
}

QGroupBox* NewFrame(const char* name, const char* caption) {
  auto* frame = new QGroupBox(QLatin1String(caption));
  frame->setObjectName(QLatin1String(name));
  return frame;
}

template <typename Layout>
Layout* Spaced(Layout* layout) {
  layout->setContentsMargins(kFrameMargins);
  layout->setSpacing(kSpacing);
  return layout;
}

}  // namespace

FPic::FPic(Program& program) : program_(program) {
  setObjectName(QStringLiteral("FPic"));
  setWindowTitle(QStringLiteral("Corvane Picture Editor"));
  InitButtonPictures();
  BuildOptions();
  BuildImage();
  BuildOperations();
  BuildFrame();
  OrderTabs();
  ConnectButtons();
  SetControlLook(FrPicEdit, QStringLiteral("framed"));
  setAcceptDrops(true);
  resize(kNormalSize);
  // The viewer goes by the whole screen, at whose bottom the frame is to stand.
  setWindowState(Qt::WindowMaximized);
}

void FPic::BuildOptions() {
  Frame2 = NewFrame("Frame2", "  Options:  ");
  bGetPic = NewButton("bGetPic", "Open File", "Open picture file for conversion to JPG.", "picture-open");
  bSaveJPG = NewButton("bSaveJPG", "Save as JPG", "Save image as JPG file.", "picture-save");
  bClosePicEdit = NewButton("bClosePicEdit", "Close", "Close Picture Editor", "picture-close-editor");
  auto* const grid = Spaced(new QGridLayout(Frame2));
  grid->addWidget(bSaveJPG, 0, 0);
  grid->addWidget(bClosePicEdit, 1, 0);
}

void FPic::BuildImage() {
  Frame1 = NewFrame("Frame1", "  Image:  ");
  const auto readOut = [](const char* name) {
    QLineEdit* const box = NewNumberBox(name);
    box->setReadOnly(true);
    return box;
  };
  tWd = readOut("tWd");
  tHt = readOut("tHt");
  tSz = readOut("tSz");
  tJSz = readOut("tJSz");
  bCloseIm = NewButton("bCloseIm", "Close Image Window", "Close Image Window.", "picture-close");
  auto* const grid = Spaced(new QGridLayout(Frame1));
  grid->addWidget(NewLabel(" Image Width:", tWd), 0, 0);
  grid->addWidget(tWd, 0, 1);
  grid->addWidget(NewLabel(" Image Height:", tHt), 1, 0);
  grid->addWidget(tHt, 1, 1);
  grid->addWidget(NewLabel("Orig. File Size(KB):", tSz), 0, 2);
  grid->addWidget(tSz, 0, 3);
  grid->addWidget(NewLabel("JPG File Size(KB):", tJSz), 1, 2);
  grid->addWidget(tJSz, 1, 3);
  grid->addWidget(bCloseIm, 2, 0, 1, 4, Qt::AlignRight);
}

void FPic::BuildOperations() {
  FrPicOps = NewFrame("FrPicOps", "  Operations:  ");
  tPercSize = NewNumberBox("tPercSize");
  tPercComp = NewNumberBox("tPercComp");
  for (QLineEdit* box : {tPercSize, tPercComp}) box->setText(QStringLiteral("100"));
  LabCropSize = new SizeLabel;
  LabCropSize->setObjectName(QStringLiteral("LabCropSize"));
  bResize = NewButton("bResize", "Resize", "Resize image.", "picture-resize");
  bCompress = NewButton("bCompress", "Compress", "Compress image in JPG format.", "picture-compress");
  bCrop = NewButton("bCrop", "Crop", "Crop picture.", "picture-crop");
  bUnDo = NewButton("bUnDo", "Undo", "Undo last operation.", "picture-undo");
  auto* const grid = Spaced(new QGridLayout(FrPicOps));
  grid->addWidget(NewLabel("Resize:", tPercSize), 0, 0);
  grid->addWidget(tPercSize, 0, 1);
  grid->addWidget(new QLabel(QStringLiteral("% Original Size")), 0, 2);
  grid->addWidget(bResize, 0, 3);
  grid->addWidget(NewLabel("JPG Compress:", tPercComp), 1, 0);
  grid->addWidget(tPercComp, 1, 1);
  grid->addWidget(new QLabel(QStringLiteral("Quality: 5 - 100")), 1, 2);
  grid->addWidget(bCompress, 1, 3);
  grid->addWidget(new QLabel(QStringLiteral("Crop:")), 2, 0);
  auto* const crop = new QHBoxLayout;
  crop->addWidget(LabCropSize);
  crop->addStretch();
  crop->addWidget(bCrop);
  grid->addLayout(crop, 2, 1, 1, 2);
  grid->addWidget(bUnDo, 2, 3);
}

void FPic::BuildFrame() {
  FrPicEdit = new Toolbar(QStringLiteral("Picture Selection:"), this);
  FrPicEdit->setObjectName(QStringLiteral("FrPicEdit"));
  FrPicEdit->setAutoFillBackground(true);
  Label10 = new QLabel(QStringLiteral("   Picture Editor Toolbar"));
  Label10->setObjectName(QStringLiteral("Label10"));
  QFont heading = Label10->font();
  heading.setBold(true);
  Label10->setFont(heading);
  bQPicEdit = Dress(new SmallButton, "bQPicEdit", "Open Help.");
  bQPicEdit->setText(QStringLiteral("?"));
  bQPicEdit->setAccessibleName(QStringLiteral("Help"));
  auto* const grid = Spaced(new QGridLayout(FrPicEdit));
  grid->addWidget(Label10, 0, 0, 1, 2);
  grid->addWidget(bQPicEdit, 0, 2, Qt::AlignRight);
  auto* const left = new QVBoxLayout;
  left->setSpacing(kSpacing);
  left->addWidget(bGetPic);
  left->addWidget(Frame2, 1);
  grid->addLayout(left, 1, 0);
  grid->addWidget(Frame1, 1, 1);
  grid->addWidget(FrPicOps, 1, 2);
  grid->setSizeConstraint(QLayout::SetFixedSize);
  FrPicEdit->installEventFilter(this);
  grid->activate();
  PlaceFrame();
}

void FPic::OrderTabs() {
  QWidget* const order[] = {bGetPic,   bSaveJPG, bClosePicEdit, tWd,       tHt,   tSz,   tJSz,     bCloseIm,
                            tPercSize, bResize,  tPercComp,     bCompress, bCrop, bUnDo, bQPicEdit};
  for (std::size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);
  bGetPic->setFocus();
}

void FPic::SetPictures(ModPics& pics, fBitmap& viewer) {
  pics_ = &pics;
  viewer_ = &viewer;
  pics.FrPicEditHeight = [this] { return double(PixelsToTwips(FrPicEdit->height())); };
  viewer.State.CropDefined = viewer.State.CropDragging = false;
  const PictureNotices& notices = viewer.Notices;
  // Afterwards, as the program that the file comes from waits for the drop to end.
  connect(&notices, &PictureNotices::FileDropped, this, &FPic::OnDrop, Qt::QueuedConnection);
  connect(&notices, &PictureNotices::tWd, tWd, &QLineEdit::setText);
  connect(&notices, &PictureNotices::tHt, tHt, &QLineEdit::setText);
  connect(&notices, &PictureNotices::tSz, tSz, &QLineEdit::setText);
  connect(&notices, &PictureNotices::tJSz, tJSz, &QLineEdit::setText);
  connect(&notices, &PictureNotices::LabCropSize, LabCropSize, [this](const QString& text) {
    LabCropSize->setText(text);
    LabCropSize->setAccessibleName(TrimBlanks(QStringLiteral("Crop size ") + text));
  });
}

void FPic::FitFrame(int room) {
  const auto layOut = [this] {
    for (QWidget* widget : FrPicEdit->findChildren<QWidget*>()) {
      widget->ensurePolished();
      widget->updateGeometry();
    }
    for (QLayout* layout : FrPicEdit->findChildren<QLayout*>()) layout->invalidate();
    FrPicEdit->layout()->activate();
  };
  QFont font;
  FrPicEdit->setFont(font);
  layOut();
  for (int pixels = QFontInfo(FrPicEdit->font()).pixelSize() - 1; FrPicEdit->width() > room && pixels >= kSmallestFont;
       --pixels) {
    font.setPixelSize(pixels);
    FrPicEdit->setFont(font);
    layOut();
  }
}

void FPic::PlaceFrame() {
  setMinimumSize(FrPicEdit->size());
  const int left = PixelsToTwips(width() - FrPicEdit->width()) / 2;
  FrPicEdit->move(TwipsToPixels(left), height() - FrPicEdit->height());
}

// The frame takes another size with another font.
bool FPic::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) PlaceFrame();
  return QWidget::eventFilter(watched, event);
}

void FPic::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  PlaceFrame();
}

// The table that the picture lies on.
void FPic::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Dark));
}

void FPic::closeEvent(QCloseEvent* event) {
  event->ignore();
  ClosePicture(true);
}
