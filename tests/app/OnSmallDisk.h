// A test whose scratch folder lies on the disk of 2 MB that SmallDisk.sh gives it: filled, emptied, and locked.
#pragma once

#include <gtest/gtest.h>
#include <sys/statvfs.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStorageInfo>

template <typename Base>
class OnSmallDisk : public Base {
 protected:
  static void SetUpTestSuite() { ASSERT_LT(QStorageInfo(QDir::tempPath()).bytesTotal(), 4 << 20); }
  // The process may still stand in a folder of an earlier test, which has gone; the disk can't be locked then.
  OnSmallDisk() { EXPECT_TRUE(QDir::setCurrent(QDir::rootPath())); }
  ~OnSmallDisk() override {
    if (isChanged_) Remount(QStringLiteral("rw,nr_inodes=100000"));
    QFile::remove(Filler());
  }

  static QString Filler() { return QDir::tempPath() + QStringLiteral("/filler"); }
  // To the last byte.
  void Fill() {
    for (const int block : {65536, 4096, 512, 1}) {
      QFile filler(Filler());
      ASSERT_TRUE(filler.open(QIODevice::Append | QIODevice::Unbuffered));
      while (filler.write(QByteArray(block, 'x')) == block) {
      }
    }
  }
  void Free() { ASSERT_TRUE(QFile::remove(Filler())); }
  void MakeWritable(bool yes) { Remount(yes ? QStringLiteral("rw") : QStringLiteral("ro")); }
  // With room for bytes, but for no further file or folder.
  void RefuseNewNames() {
    struct statvfs disk;
    ASSERT_EQ(0, ::statvfs(qPrintable(QDir::tempPath()), &disk));
    Remount(QStringLiteral("nr_inodes=%1").arg(disk.f_files - disk.f_ffree));
  }

 private:
  void Remount(const QString& options) {
    isChanged_ = true;
    EXPECT_EQ(0, QProcess::execute(QStringLiteral("mount"),
                                   {QStringLiteral("-o"), QStringLiteral("remount,") + options, QDir::tempPath()}));
  }

  bool isChanged_ = false;
};
