#pragma once

#include <QMap>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>

#include "HostFileAttributes.h"
#include "MemorySettings.h"
#include "Platform.h"
#include "Program.h"
#include "RecordingShell.h"
#include "ScriptedDialogs.h"
#include "ScriptedSockets.h"

// File access that refuses the names it is told to, as if another program held those files open.
class RefusingAccess : public FileAccess {
 public:
  QStringList RefusedNames;
  bool CanBeRead(const QString& path) const override;

 private:
  HostFileAccess host_;
};

// The system's attributes, with a look at what is about to be touched: for another program that gets in between.
class WatchedAttributes : public HostFileAttributes {
 public:
  std::function<void(const QString& path)> BeforeSet;
  bool Set(const QString& path, int attributes) override {
    if (BeforeSet) BeforeSet(path);
    return HostFileAttributes::Set(path, attributes);
  }
};

// Always the first instance, unless told.
class FixedInstance : public SingleInstance {
 public:
  bool First = true;
  bool IsFolderFree = true;
  bool Acquire() override { return First; }
  bool AcquireFolder(const QString&) override { return IsFolderFree; }
};

// Folders of the test's own.
class FixedFolders : public StandardFolders {
 public:
  QString DesktopPath;
  QString AppFolder;
  QString Desktop() const override { return DesktopPath; }
  QString AppPath() override { return AppFolder; }
};

// On a network without a proxy, unless told.
class FixedNetwork : public NetworkState {
 public:
  bool Online = true;
  bool Proxy = false;
  bool IsOnline() const override { return Online; }
  bool IsConnectionProxy() const override { return Proxy; }
};

// No mail account, unless values are put in under "key|value".
class FixedMailAccount : public MailAccount {
 public:
  QMap<QString, QString> Values;
  std::optional<QString> ReadRegString(const QString& key, const QString& value) const override;
};

// The same moment all the time, and ids from a list; behind its last one ids of their own.
class FixedStamps : public Stamps {
 public:
  QStringList Guids;
  QDateTime Moment = QDateTime::fromString(QStringLiteral("1994-11-06T08:49:37Z"), Qt::ISODate);
  int Given = 0;
  QString NewGuid() override;
  QDateTime Now() override { return Moment; }
};

// A platform for tests: files are real, and everything else is scripted or recorded.
class TestPlatform {
 public:
  // With a settings store, sockets and dialogs of the test's own in place of those below, if there are any; they must
  // outlive the object.
  explicit TestPlatform(SettingsStore* store = nullptr, Sockets* net = nullptr, Dialogs* boxes = nullptr)
      : services{attributes,
                 access,
                 store ? *store : settings,
                 boxes ? *boxes : dialogs,
                 shell,
                 instance,
                 folders,
                 net ? *net : sockets,
                 network,
                 mailAccount,
                 stamps} {}

  WatchedAttributes attributes;
  RefusingAccess access;
  MemorySettings settings;
  ScriptedDialogs dialogs;
  RecordingShell shell;
  FixedInstance instance;
  FixedFolders folders;
  ScriptedSockets sockets;
  FixedNetwork network;
  FixedMailAccount mailAccount;
  FixedStamps stamps;
  Platform services;
};

// A program in a scratch folder of its own, with `app/card` as its work folder and `desktop` beside `app`. The folders
// go with the object.
class TestProgram {
 public:
  explicit TestProgram(SettingsStore* store = nullptr, Sockets* net = nullptr, Dialogs* boxes = nullptr);

  TestPlatform platform;
  Program program{platform.services};

  // A path in the scratch folder.
  QString Path(const QString& name) const { return scratch_.filePath(name); }
  // A path in WorkPath.
  QString WorkFile(const QString& name) const { return program.project.WorkPath() + u'/' + name; }

 private:
  QTemporaryDir scratch_;
};

// Puts bytes into a file, making the folder above it where needed; false when that can't be done.
bool PutFile(const QString& path, const QByteArray& bytes);

// The bytes of a file; "<missing>" when it can't be read.
QByteArray FileBytes(const QString& path);
