#pragma once

#include <QList>
#include <QString>

#include "Shell.h"

// A shell that opens nothing: it answers as told and keeps what was asked of it.
class RecordingShell : public Shell {
 public:
  struct Call {
    QString file;
    QString folder;
    ShowMode mode;
    QWidget* owner;
  };

  int OpenResult = kFirstSuccess;
  bool StartResult = true;
  QList<Call> Opened;
  QList<Call> Started;

  int OpenFile(QWidget* owner, const QString& file, const QString& folder, ShowMode mode) override {
    Opened.append({file, folder, mode, owner});
    return OpenResult;
  }
  bool StartProgram(const QString& path, ShowMode mode) override {
    Started.append({path, QString(), mode, nullptr});
    return StartResult;
  }
};
