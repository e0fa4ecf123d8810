#include "ScratchFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFileInfo>

#include "TestPlatform.h"

namespace {

class ScratchFileTest : public ::testing::Test {
 protected:
  unsigned RightsOf(const QString& path) const {
    struct stat status{};
    EXPECT_EQ(0, ::stat(qPrintable(path), &status));
    return status.st_mode & 07777;
  }
  bool Write(const QString& path) const {
    ScratchFile file(QFileInfo(path).path());
    return file.open() && file.write("new") == 3 && file.MoveTo(path);
  }

  TestProgram test_;
};

TEST_F(ScratchFileTest, ANewFileHasTheRightsOfTheUsersOtherNewFiles) {
  ASSERT_TRUE(QDir().mkdir(test_.Path("written")));
  const mode_t before = ::umask(0);
  for (const auto& [mask, rights] : {std::pair(0077U, 0600U), std::pair(0022U, 0644U), std::pair(0002U, 0664U)}) {
    ::umask(mask);
    const QString path = test_.Path("written/" + QString::number(mask, 8));
    EXPECT_TRUE(Write(path));
    EXPECT_EQ(rights, RightsOf(path));
  }
  ::umask(before);
  EXPECT_EQ(3, QDir(test_.Path("written")).entryList(QDir::Files | QDir::Hidden).size()) << "nothing else lies there";
}

TEST_F(ScratchFileTest, AFileThatIsThereKeepsItsRights) {
  const QString path = test_.Path("old");
  ASSERT_TRUE(PutFile(path, "old"));
  for (const mode_t rights : {0600, 0664}) {
    ASSERT_EQ(0, ::chmod(qPrintable(path), rights));
    EXPECT_TRUE(Write(path));
    EXPECT_EQ(rights, RightsOf(path));
  }
}

}  // namespace
