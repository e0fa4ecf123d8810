#pragma once

#include <QByteArray>
#include <QString>
#include <array>

#include "ModFileOps.h"
#include "PathRules.h"
#include "Platform.h"
#include "Project.h"

// The one value that the whole program shares; the application owns it and hands it down. Folder paths have no
// separator at the end.
struct Program {
  explicit Program(Platform& services) : platform(services) {}
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  Platform& platform;

  // The folder from which all others hang.
  QString AppPath;
  // The user's desktop folder, or "" when it isn't there.
  QString DesktopPath;
  // True from the moment at which the main window has been shown.
  bool AppStarted = false;
  bool Compat4On = false;
  QByteArray BrClear = "<BR CLEAR=\"all\">";
  // Folder for web-packs, text of the link between their pages, name of their icon.
  QString CardFolder;
  QString LinkTextValue;
  QString CurIconName;
  // The folder of the user's own icons.
  QString IconFolder() const { return PathRules::Join(AppPath, QStringLiteral("icons")); }
  // The colour dialog's own colours, 0x00BBGGRR.
  CustomColors CustColors{};

  ModFileOps Files{platform.fileAttributes, AppPath};
  Project project{Files, AppPath};
};
