// The email panel's buttons Close and Save Copy.
#include "EmailPanel.h"

#include <QSignalSpy>

#include "PanelFixture.h"

namespace {

using SaveCopy = PanelTest;

TEST_F(SaveCopy, CloseEndsWhatIsUnderWayAndAsksToHideTheWindow) {
  QSignalSpy hide(&panel_, &EmailPanel::HideRequested);
  Send();
  panel_.bEmail[2]->setEnabled(true);
  Click(1);
  EXPECT_EQ(1, hide.size());
  EXPECT_FALSE(Net().IsOpen());
  EXPECT_EQ(1, Net().CleanUps);
  EXPECT_FALSE(panel_.bEmail[2]->isEnabled());
  EXPECT_FALSE(MUC_.EmailAvailable());
}

TEST_F(SaveCopy, ACopyIsSavedUnderTheChosenName) {
  Send();
  Accept();
  Dialogs().Texts = {test_.Path("copy.eml")};
  Click(2);
  const QByteArray saved = FileBytes(test_.Path("copy.eml"));
  EXPECT_TRUE(saved.startsWith("FROM: <ann@example.org>\r\nTO: <bob@example.net>\r\nSubject: \r\nDate: "));
  EXPECT_EQ(MUC_.EmailFileText(), saved);
  ASSERT_EQ(1, Dialogs().Questions.size());
  const ScriptedDialogs::Question& question = Dialogs().Questions.first();
  EXPECT_EQ("Save Email", question.title);
  EXPECT_EQ(&main_, question.owner);
  EXPECT_EQ(3, question.filters.size());
}

TEST_F(SaveCopy, ACancelledDialogSavesNothing) {
  Send();
  Accept();
  Dialogs().Texts = {""};
  Click(2);
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
}

TEST_F(SaveCopy, AFileThatIsThereIsAskedFor) {
  Send();
  Accept();
  const QString path = test_.Path("copy.eml");
  ASSERT_TRUE(PutFile(path, QByteArray(100000, 'x')));
  Dialogs().Texts = {path, path};
  Dialogs().Answers = {MessageAnswer::Cancel, MessageAnswer::Ok};
  Click(2);
  EXPECT_EQ(100000, FileBytes(path).size());
  ASSERT_EQ(1, Dialogs().Boxes.size());
  EXPECT_EQ("File exists. Replace it?", Dialogs().Boxes.first().text);
  EXPECT_EQ(MessageIcon::None, Dialogs().Boxes.first().icon);
  EXPECT_EQ(MessageButtons::OkCancel, Dialogs().Boxes.first().buttons);
  Click(2);
  EXPECT_EQ(MUC_.EmailFileText(), FileBytes(path));
}

// A second name of the old file keeps what stood in it.
// Meant in EmailPanel::SaveEmailCopy: the old file goes before the copy is written.
TEST_F(SaveCopy, ACopyDeletesTheFileThatWasThere) {
  Send();
  Accept();
  const QString path = test_.Path("copy.eml"), second = test_.Path("second");
  ASSERT_TRUE(PutFile(path, "old"));
  ASSERT_EQ(0, ::link(qPrintable(path), qPrintable(second)));
  Dialogs().Texts = {path};
  Dialogs().Answers = {MessageAnswer::Ok};
  Click(2);
  EXPECT_EQ("old", FileBytes(second));
  EXPECT_EQ(MUC_.EmailFileText(), FileBytes(path));
}

TEST_F(SaveCopy, WithNothingToSaveABoxTellsIt) {
  panel_.bEmail[2]->setEnabled(true);
  Click(2);
  EXPECT_EQ(QStringList{"There is not currently a fully finished email to save."}, Dialogs().Messages());
  EXPECT_EQ(MessageIcon::Information, Dialogs().Boxes.first().icon);
}

}  // namespace
