// The controls that the settings fill.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include "FSets.h"
#include "FTools.h"
#include "FWeb.h"
#include "IconImage.h"
#include "ModMain.h"
#include "Resource.h"

// A usable icon file.
inline QByteArray IconFile() {
  return IconFileOf(Resource(QStringLiteral("WP")));
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
