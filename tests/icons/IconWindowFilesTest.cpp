// Opening and saving in the icon editor's window.
#include <QFile>

#include "IconWindowFixture.h"
#include "PictureFiles.h"

namespace {

using IconWindowFiles = IconWindowTest;

TEST_F(IconWindowFiles, OpenAsksForPicturesAndKeepsAnIconsName) {
  UseColor(Red);
  Drag({2, 2}, {20, 2});
  const QString path = Open(IconPath("A.IcO"));
  ASSERT_EQ(1, Dialogs().Questions.size());
  const auto& asked = Dialogs().Questions.first();
  EXPECT_EQ("Select Picture", asked.title);
  EXPECT_EQ((QList<FileFilter>{{"Picture Files(*.bmp;*.jpg;*.gif;*.ico)", "*.bmp;*.jpg;*.gif;*.ico"}}), asked.filters);
  EXPECT_EQ("", asked.given);
  EXPECT_EQ(&editor_, asked.owner);
  EXPECT_EQ("Icon Editor - " + path, Title());
  EXPECT_EQ(path, editor_.IconFileName);
  EXPECT_FALSE(UndoEnabled());
  EXPECT_FALSE(editor_.Busy);
}

TEST_F(IconWindowFiles, AnyOtherPictureIsOnlyABeginning) {
  Open(IconPath("a.ico"));
  Open(PicturePath("p.bmp"));
  EXPECT_EQ("Icon Editor", Title());
  EXPECT_EQ("", editor_.IconFileName);
  // Save asks for a name.
  Dialogs().Texts = {test_.Path("new.ico")};
  editor_.mSavePlain();
  EXPECT_EQ("Save Icon", Dialogs().Questions.last().title);
  EXPECT_EQ(766, FileBytes(test_.Path("new.ico")).size());
}

TEST_F(IconWindowFiles, ANameThatEndsInIcoWithoutADotIsNoIconsNameForTheTitle) {
  Open(IconPath("myico"));
  EXPECT_EQ(512, Opaque().size());
  EXPECT_EQ("Icon Editor", Title());
  EXPECT_EQ("", editor_.IconFileName);
}

TEST_F(IconWindowFiles, ACancelledDialogOrAMissingFileChangesNothing) {
  const QString path = Open(IconPath("a.ico"));
  UseColor(Red);
  Drag({2, 2}, {20, 2});
  const QList<QImage> before = AllPlanes();
  for (const QString& name : {QString(), test_.Path("missing.ico"), QFileInfo(path).path()}) {
    Open(name);
    EXPECT_EQ(before, AllPlanes());
    EXPECT_EQ(path, editor_.IconFileName);
    EXPECT_TRUE(UndoEnabled());
  }
}

// --- saving

TEST_F(IconWindowFiles, SaveAsAsksForAnIconsName) {
  SaveAs(test_.Path("x.ico"));
  const auto& asked = Dialogs().Questions.last();
  EXPECT_EQ("Save Icon", asked.title);
  EXPECT_EQ((QList<FileFilter>{{"Icon Files(*.ico)", "*.ico"}}), asked.filters);
  EXPECT_EQ("ico", asked.given);
  EXPECT_EQ(&editor_, asked.owner);
  EXPECT_EQ("Icon Editor - " + test_.Path("x.ico"), Title());
  EXPECT_EQ(test_.Path("x.ico"), editor_.IconFileName);
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(IconWindowFiles, SaveAsOverAFileAsksFirst) {
  const QString path = File("x.ico", QByteArray(2000, 'x'));
  SaveAs(path);  // no answer is No
  EXPECT_EQ(QStringList{"Replace existing file?"}, Messages());
  EXPECT_EQ(MessageButtons::YesNo, Dialogs().Boxes.last().buttons);
  EXPECT_EQ(MessageIcon::Question, Dialogs().Boxes.last().icon);
  EXPECT_EQ("Corvane", Dialogs().Boxes.last().title);
  EXPECT_EQ(QByteArray(2000, 'x'), FileBytes(path));
  EXPECT_EQ("Icon Editor", Title());
  Dialogs().Answers = {MessageAnswer::Yes};
  SaveAs(path);
  EXPECT_EQ(766, FileBytes(path).size());
  EXPECT_EQ(path, editor_.IconFileName);
}

TEST_F(IconWindowFiles, TheQuestionComesBeforeTheSuffix) {
  const QString path = File("x.ico", QByteArray(100, 'x'));
  SaveAs(test_.Path("x"));
  EXPECT_TRUE(Messages().isEmpty());
  EXPECT_EQ(766, FileBytes(path).size());
  EXPECT_EQ(path, editor_.IconFileName);
  // A file that has the name without the suffix is asked about and deleted, and isn't the one that is written.
  const QString plain = File("y", "y");
  Dialogs().Answers = {MessageAnswer::Yes};
  SaveAs(plain);
  EXPECT_EQ(QStringList{"Replace existing file?"}, Messages());
  EXPECT_FALSE(QFile::exists(plain));
  EXPECT_EQ(766, FileBytes(test_.Path("y.ico")).size());
}

TEST_F(IconWindowFiles, TheSuffixInCapitalsIsOne) {
  SaveAs(test_.Path("x.ICO"));
  EXPECT_EQ(766, FileBytes(test_.Path("x.ICO")).size());
  EXPECT_EQ("Icon Editor - " + test_.Path("x.ICO"), Title());
}

TEST_F(IconWindowFiles, SaveWritesTheNamedFileWithoutAQuestion) {
  const QString path = Open(IconPath("a.ico"));
  const QString title = Title();
  UseColor(Blue);
  Drag({0, 0}, {0, 0});
  QFile::setPermissions(path, QFile::ReadOwner);
  editor_.mSavePlain();
  EXPECT_EQ(766, FileBytes(path).size());
  EXPECT_EQ(1, Dialogs().Questions.size());
  EXPECT_EQ(title, Title());
  Open(path);
  EXPECT_EQ(513, Opaque().size());
}

TEST_F(IconWindowFiles, SaveWritesTheNamedFileWhileTheWindowIsBusyAndAsksForNoName) {
  const QString path = Open(IconPath("a.ico"));
  editor_.Busy = true;
  ASSERT_TRUE(PutFile(path, "old"));
  editor_.mSavePlain();
  EXPECT_EQ(766, FileBytes(path).size());
  // Save As, to which it goes without a file, has the guard.
  ASSERT_TRUE(QFile::remove(path));
  Dialogs().Texts = {test_.Path("new.ico")};
  editor_.mSavePlain();
  EXPECT_EQ(1, Dialogs().Questions.size());
  EXPECT_FALSE(QFile::exists(test_.Path("new.ico")));
}

// A second name of the old file keeps what stood in it.
TEST_F(IconWindowFiles, EverySaveOverAFileDeletesTheOldOneFirst) {
  const QString path = Open(IconPath("a.ico")), second = test_.Path("second");
  const QByteArray old = FileBytes(path);
  Drag({0, 0}, {9, 9});
  ASSERT_EQ(0, ::link(qPrintable(path), qPrintable(second)));
  editor_.mSavePlain();
  EXPECT_EQ(old, FileBytes(second));
  EXPECT_NE(old, FileBytes(path));
  // So a longer one leaves nothing behind the new end.
  ASSERT_TRUE(PutFile(path, QByteArray(2000, 'x')));
  editor_.mSavePlain();
  EXPECT_EQ(766, FileBytes(path).size());
  ASSERT_TRUE(QFile::remove(second));
  ASSERT_EQ(0, ::link(qPrintable(path), qPrintable(second)));
  const QByteArray drawn = FileBytes(path);
  editor_.bclear->click();
  Dialogs().Answers = {MessageAnswer::Yes};
  SaveAs(path);
  EXPECT_EQ(drawn, FileBytes(second));
  EXPECT_NE(drawn, FileBytes(path));
}

TEST_F(IconWindowFiles, SaveWithoutANameOrWithADeletedFileIsSaveAs) {
  Dialogs().Texts = {test_.Path("one.ico")};
  editor_.mSavePlain();
  EXPECT_EQ(766, FileBytes(test_.Path("one.ico")).size());
  QFile::remove(test_.Path("one.ico"));
  Dialogs().Texts = {test_.Path("two.ico")};
  editor_.mSavePlain();
  EXPECT_FALSE(QFile::exists(test_.Path("one.ico")));
  EXPECT_EQ(766, FileBytes(test_.Path("two.ico")).size());
  EXPECT_EQ(2, Dialogs().Questions.size());
}

// Meant in fIconMaker::mSaveIco: title and name change even when the file couldn't be written.
TEST_F(IconWindowFiles, TitleAndNameChangeEvenWhenTheWriteFailed) {
  SaveAs(test_.Path("no/such/folder/x.ico"));
  EXPECT_EQ("Icon Editor - " + test_.Path("no/such/folder/x.ico"), Title());
  EXPECT_EQ(test_.Path("no/such/folder/x.ico"), editor_.IconFileName);
  EXPECT_TRUE(Messages().isEmpty());
}

// Meant in fIconMaker::mExit: nothing ever asks whether a drawing shall be saved.
TEST_F(IconWindowFiles, NothingEverAsksAboutSaving) {
  UseColor(Red);
  Drag({2, 2}, {20, 2});
  editor_.bclear->click();
  Drag({2, 2}, {20, 2});
  Open(IconPath("a.ico"));
  Drag({2, 2}, {20, 2});
  editor_.mExit();
  editor_.ResetEditor();
  Drag({2, 2}, {20, 2});
  editor_.close();
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(IconWindowFiles, CommandsWithDialogsDoNothingWhileOneIsUp) {
  editor_.Busy = true;
  Open(IconPath("a.ico"));
  SaveAs(test_.Path("x.ico"));
  EXPECT_TRUE(Dialogs().Questions.isEmpty());
  EXPECT_TRUE(editor_.Busy);
  editor_.Busy = false;
  // A release during the message of a missing mask.
  UseColor(Red);
  Press(InCell({5, 5}));
  Dialogs().WhileShown = [this] { Release(InCell({9, 5})); };
  Open(File("wrong.ico", EncodedPicture(PlacePicture(32, 32), "bmp")));
  EXPECT_EQ(1, Messages().size());
  EXPECT_TRUE(Opaque().isEmpty());
}

}  // namespace
