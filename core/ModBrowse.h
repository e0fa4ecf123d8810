#pragma once

#include <QString>

class QWidget;
struct Program;

// The program's own face of the system's dialogs. Those for paths return one in native form, or "" on Cancel.

QString BrowseForFolder(Program& program, QWidget* Owner, const QString& Title);

// `Pattern` is a list with ";" between its items. A start folder that isn't there is left out. At most 253 characters.
QString ShowOpenDialog(Program& program, QWidget* Owner, const QString& Title, const QString& Description,
                       const QString& Pattern, const QString& StartFolder = QString());

// Doesn't ask about a file that is there already. At most 254 characters.
QString ShowSaveDialog(Program& program, QWidget* Owner, const QString& Title, const QString& Description,
                       const QString& Pattern, const QString& DefaultExtension);

// The same with "eml" and the three types of a saved message.
QString ShowSaveEmailDialog(Program& program, QWidget* Owner, const QString& Title);

// A colour as 0x00BBGGRR, so 0 is black, or -1 on Cancel. What the user stores in the dialog goes into the program's
// CustColors at once, and stays there after Cancel too.
qint32 ShowColorDialog(Program& program, QWidget* Owner, qint32 StartColor);
