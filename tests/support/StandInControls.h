// The controls of FTools and FSets that the settings fill, for as long as those windows haven't all of them.
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

// Gives the two windows what they lack as soon as they are made, before the settings are loaded. A control that the
// window has already is left as it is. The list of faces has nothing selected.
inline void MakeMissingControls(ModMain& modMain) {
  QObject::connect(&modMain, &ModMain::WindowMade, &modMain, [&modMain](const QString& name) {
    const auto make = [](auto* control, QWidget* window, const QString& controlName) {
      using Control = std::remove_pointer_t<decltype(control)>;
      if (window->findChild<QWidget*>(controlName)) return static_cast<Control*>(nullptr);
      auto* const made = new Control(window);
      made->setObjectName(controlName);
      return made;
    };
    if (name == u"FTools") {
      if (auto* const box = make(static_cast<QComboBox*>(nullptr), modMain.Tools(), "BoxFace")) {
        for (int i = 0; i < modMain.Web()->BoxFace->count(); ++i) box->addItem(modMain.Web()->BoxFace->itemText(i));
        box->setCurrentIndex(-1);
      }
    } else if (name == u"FSets") {
      make(static_cast<QLineEdit*>(nullptr), modMain.Sets(), "tPath");
      make(static_cast<QLineEdit*>(nullptr), modMain.Sets(), "tLink");
      make(static_cast<QLabel*>(nullptr), modMain.Sets(), "ImCustom");
      make(static_cast<QCheckBox*>(nullptr), modMain.Sets(), "Ck4");
      for (int i = 0; i <= 10; ++i)
        make(static_cast<QRadioButton*>(nullptr), modMain.Sets(), QString("OpIco%1").arg(i));
    }
  });
}

inline QComboBox* FaceList(const ModMain& modMain) {
  return modMain.Tools()->findChild<QComboBox*>("BoxFace");
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
