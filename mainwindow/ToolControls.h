// Makes the controls of the tool window's panels from their texts. An array's control has its index behind its name.
#pragma once

#include <QStringList>
#include <Qt>
#include <array>
#include <initializer_list>

class QComboBox;
class QGridLayout;
class QGroupBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QWidget;
class Swatch;

// Where a control isn't part of an array.
inline constexpr int kNoIndex = -1;

struct ButtonRow {
  const char* caption;
  const char* toolTip;
};

using ThreeOptions = std::array<QRadioButton*, 3>;

void SetName(QWidget* control, const char* name, int index = kNoIndex);
QPushButton* NewButton(const char* name, int index, const ButtonRow& row);
Swatch* NewSwatch(int index, const char* toolTip);
QLineEdit* NewBox(const char* name, int index = kNoIndex);
QLineEdit* NewNumberBox(const char* name, int index);  // never narrower than five digits
QComboBox* NewList(const char* name, const QStringList& items, const char* toolTip = nullptr);

// The label of a control, which takes its name for screen readers from it.
QLabel* NewLabel(const char* text, QWidget* control, const char* toolTip = nullptr);

// A label and its control side by side.
void AddRow(QGridLayout* grid, int row, int column, const char* label, QWidget* control,
            const char* labelToolTip = nullptr);

// Three option buttons in a frame of their own; the first is on where `firstIsOn`.
QGroupBox* NewOptions(const char* caption, const char* name, const std::array<const char*, 3>& captions, bool firstIsOn,
                      ThreeOptions& made);

// The buttons at the bottom of a panel.
QHBoxLayout* RowAtRight(std::initializer_list<QWidget*> buttons);

QGroupBox* NewFrame(const char* caption);
