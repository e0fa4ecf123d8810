#include "WorkWindow.h"

#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

#include "FWebTables.h"
#include "FittedText.h"
#include "Twips.h"

namespace {

// Painted like a title bar. Its text is that of the symbol at its right end: "6" points down, anything else up, to
// where a click sends the window.
class TitleBar : public QAbstractButton {
 public:
  using QAbstractButton::QAbstractButton;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Highlight));
    const QColor ink = palette().color(QPalette::HighlightedText);
    painter.setPen(ink);
    painter.setFont(FontForHeight(this, height(), 1));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("    Work Window"));
    const QPointF middle(rect().right() - 12, rect().center().y() + 0.5);
    const double half = 4.5;
    const double tip = text() == u"6" ? 2.5 : -2.5;
    QPainterPath triangle;
    triangle.moveTo(middle + QPointF(-half, -tip));
    triangle.lineTo(middle + QPointF(half, -tip));
    triangle.lineTo(middle + QPointF(0, tip));
    triangle.closeSubpath();
    painter.fillPath(triangle, ink);
    if (!hasFocus()) return;
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(ink, 1, Qt::DotLine));
    painter.drawRect(rect().adjusted(1, 1, -2, -2));
  }
};

// From left to right.
QList<QWidget*> ButtonsByPlace(const QGroupBox& frame) {
  QList<QWidget*> buttons;
  for (QToolButton* const button : frame.findChildren<QToolButton*>()) buttons.append(button);
  std::sort(buttons.begin(), buttons.end(),
            [](const QWidget* one, const QWidget* other) { return one->x() < other->x(); });
  return buttons;
}

}  // namespace

WorkWindow::WorkWindow(QWidget* parent) : QFrame(parent) {
  setObjectName(QStringLiteral("FrWork"));
  setAccessibleName(QStringLiteral("Work Window"));
  setAutoFillBackground(true);
  resize(TwipsToPixels(kWidth), TwipsToPixels(kHeight));
  LabUp = new TitleBar(this);
  LabUp->setObjectName(QStringLiteral("LabUp"));
  LabUp->setAccessibleName(QStringLiteral("Raise or lower the Work Window"));
  LabUp->setText(QStringLiteral("6"));
  LabUp->setFocusPolicy(Qt::TabFocus);  // a click leaves the page its keys
  LabUp->setGeometry(0, 0, width(), TwipsToPixels(kHeadHeight));
  connect(LabUp, &QAbstractButton::clicked, this, &WorkWindow::HeadClicked);
  BuildButtons();
  LabHover = new FittedLabel(this);
  LabHover->setObjectName(QStringLiteral("LabHover"));
  LabHover->setAccessibleName(QStringLiteral("Under the mouse"));
  LabHover->setFrameShape(QFrame::NoFrame);
  LabHover->setGeometry(10, height() - 26, width() - 20, 18);
  LabHover->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

// Two frames of buttons with a small label under each; places leave each label the room that it needs.
void WorkWindow::BuildButtons() {
  constexpr int button = 28;
  constexpr int widestLabel = 60;
  constexpr int top = 22;
  const auto frame = [this](const char* name, const char* caption, QRect place) {
    auto* const made = new QGroupBox(QLatin1String(caption), this);
    made->setObjectName(QLatin1String(name));
    made->setGeometry(place);
    return made;
  };
  Frame1 = frame("Frame1", "Editing options:", {5, 20, 244, 66});
  FrSel = frame("FrSel", " Move selected element: ", {5, 88, 347, 66});
  LabSel = new FittedLabel(QStringLiteral("Sel. switch places:"), FrSel);
  LabSel->setObjectName(QStringLiteral("LabSel"));
  LabSel->setGeometry(158, top, 94, button);
  LabSel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  bProps = new QPushButton(QStringLiteral("Page Properties"), this);
  bProps->setObjectName(QStringLiteral("bProps"));
  bProps->setToolTip(QStringLiteral("Set page properties: Background, title, etc."));
  bProps->setAccessibleName(bProps->text());
  bProps->setGeometry(254, 42, 98, button);
  bProps->setFont(FontForHeight(bProps, 20, 3));
  const std::span<const WorkRow> rows = WorkRows();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const WorkRow& row = rows[i];
    QGroupBox* const around = row.moves ? FrSel : Frame1;
    auto* const made = new QToolButton(around);
    bSel.push_back(made);
    made->setObjectName(QStringLiteral("bSel%1").arg(i));
    made->setIcon(QIcon(QStringLiteral(":/tools/%1.svg").arg(QLatin1String(row.icon))));
    made->setIconSize({16, 16});
    made->setToolTip(QString::fromLatin1(row.toolTip));
    made->setAccessibleName(QString::fromLatin1(row.toolTip));
    made->setGeometry(row.left, top, button, button);
    auto* const label = new FittedLabel(QString::fromLatin1(row.label), around);
    label->setObjectName(QStringLiteral("Label2_%1").arg(i));
    label->setFont(FontForHeight(label, 12));
    label->setAlignment(Qt::AlignCenter);
    const int width = std::min(widestLabel, label->fontMetrics().horizontalAdvance(label->text()) + 4);
    label->setGeometry(row.left + button / 2 - width / 2, top + button, width, 14);
  }
  // As they are read, which is not the order of their indexes.
  const QList<QWidget*> read = ButtonsByPlace(*Frame1) + QList<QWidget*>{bProps} + ButtonsByPlace(*FrSel);
  for (qsizetype i = 1; i < read.size(); ++i) setTabOrder(read[i - 1], read[i]);
  FrSel->setEnabled(false);
  LabSel->setEnabled(false);
}

QString WorkWindow::UpCaption() const {
  return LabUp->text();
}

void WorkWindow::SetUpCaption(const QString& caption) {
  LabUp->setText(caption);
}
