// The controls of FSets that the settings fill, for as long as that window hasn't all of them.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include "FSets.h"
#include "FTools.h"
#include "FWeb.h"
#include "ModMain.h"
#include "Resource.h"

// A usable icon file: directory, entry and the image of a built-in icon.
inline QByteArray IconFile() {
  return QByteArray::fromHex(
             "000001000100"
             "202010000100"
             "0400e802000016000000") +
         Resource("WP");
}

template <typename Control>
void MakeIfMissing(QWidget* window, const QString& name) {
  if (!window->findChild<QWidget*>(name)) (new Control(window))->setObjectName(name);
}

// Gives the window what it lacks as soon as it is made, before the settings are loaded. A control that it has already
// is left as it is.
inline void MakeMissingControls(ModMain& modMain) {
  QObject::connect(&modMain, &ModMain::WindowMade, &modMain, [&modMain](const QString& made) {
    if (made != u"FSets") return;
    for (const char* name : {"tPath", "tLink"}) MakeIfMissing<QLineEdit>(modMain.Sets(), name);
    MakeIfMissing<QLabel>(modMain.Sets(), "ImCustom");
    MakeIfMissing<QCheckBox>(modMain.Sets(), "Ck4");
    for (int i = 0; i <= 10; ++i) MakeIfMissing<QRadioButton>(modMain.Sets(), QString("OpIco%1").arg(i));
  });
}

inline QComboBox* FaceList(const ModMain& modMain) {
  return modMain.Tools()->BoxFace;
}

template <typename Control>
Control* SetsControl(const ModMain& modMain, const QString& name) {
  return modMain.Sets()->findChild<Control*>(name);
}

// Index of the icon option that is selected; -1 for none or more than one.
inline int SelectedIcon(const ModMain& modMain) {
  int selected = -1;
  for (int i = 0; i <= 10; ++i) {
    if (!SetsControl<QRadioButton>(modMain, QString("OpIco%1").arg(i))->isChecked()) continue;
    if (selected != -1) return -1;
    selected = i;
  }
  return selected;
}
