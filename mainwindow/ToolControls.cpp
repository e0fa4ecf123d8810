#include "ToolControls.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>
#include <utility>

#include "AsciiText.h"
#include "FittedText.h"
#include "Swatch.h"

namespace {

constexpr int kFrameMargins[] = {7, 4, 7, 6};
constexpr QSize kSmallestSwatch = {36, 20};
constexpr int kDigits = 5;

class NumberBox : public QLineEdit {
 public:
  QSize minimumSizeHint() const override {
    const QSize one = QLineEdit::minimumSizeHint();  // room for one letter
    const int more = kDigits * fontMetrics().horizontalAdvance(u'0') - fontMetrics().maxWidth();
    return {one.width() + std::max(0, more), one.height()};
  }

 protected:
  // What is typed takes the place of the number that is there, not one beside it.
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    if (event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason) return;
    selectAll();
    isPressed_ = event->reason() == Qt::MouseFocusReason;
  }
  // A press puts the insertion point where the mouse is; a drag selects what it means.
  void mouseReleaseEvent(QMouseEvent* event) override {
    QLineEdit::mouseReleaseEvent(event);
    if (std::exchange(isPressed_, false) && !hasSelectedText()) selectAll();
  }

 private:
  bool isPressed_ = false;  // by the press that brought the keys here
};

// The list of Qt goes on asking for the room that it needed with a larger font.
class List : public FittedList {
 public:
  QSize minimumSizeHint() const override { return sizeHint(); }
};

}  // namespace

void SetName(QWidget* control, const char* name, int index) {
  control->setObjectName(QLatin1String(name) + (index == kNoIndex ? QString() : QString::number(index)));
}

QPushButton* NewButton(const char* name, int index, const ButtonRow& row) {
  auto* button = new QPushButton(QLatin1String(row.caption));
  SetName(button, name, index);
  button->setToolTip(QLatin1String(row.toolTip));
  return button;
}

Swatch* NewSwatch(int index, const char* toolTip) {
  auto* swatch = new Swatch;
  SetName(swatch, "BoxColor", index);
  swatch->setToolTip(QLatin1String(toolTip));
  swatch->setMinimumSize(kSmallestSwatch);
  swatch->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  return swatch;
}

QLineEdit* NewBox(const char* name, int index) {
  auto* box = new QLineEdit;
  SetName(box, name, index);
  return box;
}

QLineEdit* NewNumberBox(const char* name, int index) {
  auto* box = new NumberBox;
  SetName(box, name, index);
  return box;
}

QComboBox* NewList(const char* name, const QStringList& items, const char* toolTip) {
  auto* list = new List;
  SetName(list, name);
  list->addItems(items);
  if (toolTip) list->setToolTip(QLatin1String(toolTip));
  return list;
}

QLabel* NewLabel(const char* text, QWidget* control, const char* toolTip) {
  auto* label = new QLabel(QLatin1String(text));
  label->setBuddy(control);
  if (toolTip) label->setToolTip(QLatin1String(toolTip));
  QString name = TrimBlanks(QString::fromLatin1(text));
  if (name.endsWith(u':')) name.chop(1);
  control->setAccessibleName(name);
  return label;
}

void AddRow(QGridLayout* grid, int row, int column, const char* label, QWidget* control, const char* labelToolTip) {
  grid->addWidget(NewLabel(label, control, labelToolTip), row, column);
  grid->addWidget(control, row, column + 1);
}

QGroupBox* NewOptions(const char* caption, const char* name, const std::array<const char*, 3>& captions, bool firstIsOn,
                      ThreeOptions& made) {
  QGroupBox* const frame = NewFrame(caption);
  auto* row = new QHBoxLayout(frame);
  row->setContentsMargins(kFrameMargins[0], kFrameMargins[1], kFrameMargins[2], kFrameMargins[3]);
  row->setSpacing(4);
  for (std::size_t index = 0; index < made.size(); ++index) {
    made[index] = new QRadioButton(QLatin1String(captions[index]));
    SetName(made[index], name, int(index));
    row->addWidget(made[index]);
  }
  row->addStretch(1);
  made[0]->setChecked(firstIsOn);
  return frame;
}

QHBoxLayout* RowAtRight(std::initializer_list<QWidget*> buttons) {
  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  row->addStretch(1);
  for (QWidget* button : buttons) row->addWidget(button);
  return row;
}

QGroupBox* NewFrame(const char* caption) {
  return new QGroupBox(QLatin1String(caption));
}
