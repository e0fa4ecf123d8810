#include <QBuffer>
#include <QImage>

#include "ToolsFixture.h"

namespace {

const QByteArray gif(
    "GIF89a\x01\0\x01\0\x80\0\0\xff\xff\xff\0\0\0,\0\0\0\0\x01\0\x01\0\0\x02\x02"
    "D\x01\0;",
    35);

QByteArray Jpeg(int width, int height, int length) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(Qt::red);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  EXPECT_TRUE(image.save(&buffer, "JPG"));
  return bytes.leftJustified(length, '\0');
}

class PicturePanel : public ToolsTest {
 protected:
  PicturePanel() {
    Web().showNormal();
    ShowBody("<font id=\"a\">one</font>");
  }
  void Add(const QString& path) {
    Dialogs().Texts = {path};
    Tools().AddPicture(&Web());
  }
  void AddAndOk(const QString& path) {
    Add(path);
    Tools().bOKPic[0]->click();
  }
  QString Added() { return Body().mid(QString("<font id=\"a\">one</font>").size()); }
};

TEST_F(PicturePanel, AsksForAPictureOnBehalfOfTheCaller) {
  Add(QString());
  ASSERT_EQ(1, Dialogs().Questions.size());
  const ScriptedDialogs::Question& question = Dialogs().Questions[0];
  EXPECT_EQ(ScriptedDialogs::Question::Kind::OpenFile, question.kind);
  EXPECT_EQ("Select Picture", question.title);
  EXPECT_EQ(QList<FileFilter>({{"Web Graphics(*.gif;*.jpg;*.png)", "*.gif;*.jpg;*.png"}}), question.filters);
  EXPECT_EQ(&Web(), question.owner);
  EXPECT_FALSE(Tools().isVisible());
}

TEST_F(PicturePanel, APictureIsLookedAtFirst) {
  const QString path = Picture("a b.jpg", Jpeg(30, 20, 5000));
  Add(path);
  EXPECT_TRUE(Tools().isVisible());
  EXPECT_EQ("View Image", Tools().windowTitle());
  EXPECT_TRUE(Viewer().isVisible());
  EXPECT_EQ(path, Tools().TPicPath->text());
  EXPECT_EQ("30", Tools().TSpec[0]->text());
  EXPECT_EQ("20", Tools().TSpec[1]->text());
  EXPECT_EQ("4", Tools().TSpec[2]->text());
  EXPECT_TRUE(Tools().TPicPath->isReadOnly());
  for (const QLineEdit* box : Tools().TSpec) {
    EXPECT_TRUE(box->isReadOnly());
    EXPECT_TRUE(box->alignment() & Qt::AlignHCenter);
  }
  EXPECT_EQ("", Added());
  EXPECT_EQ(QStringList{"wgcard.html"}, WorkFolder());
}

TEST_F(PicturePanel, OkCopiesThePictureAndInsertsItWithItsSize) {
  const QByteArray bytes = Jpeg(30, 20, 900);
  AddAndOk(Picture("house.jpg", bytes));
  EXPECT_EQ("<img src=\"house.jpg\" width=\"30\" height=\"20\" />", Added());
  EXPECT_EQ(bytes, WorkFile("house.jpg"));
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_FALSE(IsOnTop());
  EXPECT_FALSE(Viewer().isVisible());
}

TEST_F(PicturePanel, CancelAddsNothing) {
  Add(Picture("house.GIF", gif));
  ASSERT_TRUE(Viewer().isVisible());
  Tools().bOKPic[1]->click();
  EXPECT_EQ("", Added());
  EXPECT_EQ(QStringList{"wgcard.html"}, WorkFolder());
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_FALSE(IsOnTop());
  EXPECT_FALSE(Viewer().isVisible());
}

TEST_F(PicturePanel, APngGoesStraightIntoThePageWithoutASize) {
  ShowBody("<table id=\"t\"><tr><td></td><td></td></tr></table>");
  View().SetCurrentElement(Element("t"));
  Add(Picture("a b.PNG"));
  EXPECT_EQ("<table id=\"t\"><tbody><tr><td><img src=\"a_b.PNG\" /></td><td></td></tr></tbody></table>", Body());
  EXPECT_EQ("picture", WorkFile("a_b.PNG"));
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_FALSE(Viewer().isVisible());
}

// Meant in FTools::TakePicture: a file named ".jpeg" is refused without a word.
TEST_F(PicturePanel, AJpegWithFourLettersIsRefusedWithoutAWord) {
  for (const char* name : {"a.jpeg", "a.bmp", "a", "agif", "jpg", "a.gif.txt"}) {
    Add(Picture(name, gif));
    EXPECT_FALSE(Tools().isVisible()) << name;
  }
  EXPECT_EQ("", Added());
  EXPECT_EQ(QStringList{"wgcard.html"}, WorkFolder());
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
}

TEST_F(PicturePanel, OnlyTheLastFourCharactersCount) {
  for (const char* name : {".GIF", "a.bmp.gIf"}) {
    Add(Picture(name, gif));
    EXPECT_TRUE(Tools().isVisible()) << name;
    EXPECT_EQ("1", Tools().TSpec[0]->text());
    Tools().close();
  }
}

TEST_F(PicturePanel, OnlyBlanksInANameBecomeUnderscores) {
  Add(Picture(QString::fromUtf8("a  b\u00a0c-\u00e4'&.png")));
  EXPECT_TRUE(WorkFolder().contains(QString::fromUtf8("a__b\u00a0c-\u00e4'&.png")))
      << qPrintable(WorkFolder().join('|'));
  EXPECT_EQ(2, WorkFolder().size());
  EXPECT_TRUE(Added().startsWith("<img src=\"a__b&nbsp;c-")) << qPrintable(Added());
}

// Meant in CopyBesidePages: a picture chosen out of the project's own folder is gone before it can be copied.
TEST_F(PicturePanel, APictureOutOfTheProjectsOwnFolderIsDeletedBeforeItCanBeCopied) {
  const QString path = run_.test.WorkFile("house.gif");
  ASSERT_TRUE(PutFile(path, gif));
  AddAndOk(path);
  EXPECT_EQ(QStringList{"wgcard.html"}, WorkFolder());
  EXPECT_EQ("<img src=\"house.gif\" width=\"1\" height=\"1\" />", Added());
}

TEST_F(PicturePanel, APictureOfTheSameNameReplacesTheFirst) {
  Add(Picture("one/a.png", "first"));
  Add(Picture("two/a.png", "second"));
  EXPECT_EQ("second", WorkFile("a.png"));
  EXPECT_EQ("<img src=\"a.png\" /><img src=\"a.png\" />", Added());
}

// Meant in FTools::OnOKPic: a picture is put into the page even when its file couldn't be copied.
TEST_F(PicturePanel, ThePictureIsInsertedEvenWhenTheCopyFailed) {
  ASSERT_TRUE(PutFile(run_.test.WorkFile("house.gif/in the way"), "x"));
  AddAndOk(Picture("house.gif", gif));
  EXPECT_EQ("<img src=\"house.gif\" width=\"1\" height=\"1\" />", Added());
  EXPECT_EQ("<missing>", WorkFile("house.gif"));
}

// Meant in FTools::OnOKPic: behind an element that is no longer in the page nothing is inserted, though the file has
// been copied.
TEST_F(PicturePanel, AStaleElementGetsNothingThoughTheFileHasBeenCopied) {
  View().SetCurrentElement(Element("a"));
  Element("a").setOuterHTML(QString());
  ASSERT_EQ("", Body());
  AddAndOk(Picture("house.gif", gif));
  EXPECT_EQ("", Body());
  EXPECT_EQ(gif, WorkFile("house.gif"));
}

TEST_F(PicturePanel, AFileThatHasGoneMissingAddsNothingAndSaysNothing) {
  Add(run_.test.Path("pictures/none.png"));
  const QString path = Picture("house.gif", gif);
  Add(path);
  ASSERT_TRUE(QFile::remove(path));
  Tools().bOKPic[0]->click();
  EXPECT_EQ("", Added());
  EXPECT_EQ(QStringList{"wgcard.html"}, WorkFolder());
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
  EXPECT_FALSE(Tools().isVisible());
}

TEST_F(PicturePanel, APictureThatCannotBeReadIsToldAndThePanelOpensAllTheSame) {
  Tools().TSpec[0]->setText("before");
  Add(Picture("house.gif", "no picture"));
  EXPECT_EQ(QStringList{StringText(FixedText::ErrorLoadingImage)}, Dialogs().Messages());
  EXPECT_FALSE(Viewer().isVisible());
  EXPECT_TRUE(Tools().isVisible());
  EXPECT_EQ("before", Tools().TSpec[0]->text());
}

TEST_F(PicturePanel, APathIsCutTo253CharactersAndThenNotFound) {
  QString folder = run_.test.Path("pictures/");
  folder += QString(253 - folder.size() - 6, 'd') + '/';
  ASSERT_TRUE(PutFile(folder + "a.png", "fits"));  // 252 characters
  ASSERT_TRUE(PutFile(folder + "abc.png", "too long"));
  Add(folder + "a.png");
  EXPECT_EQ("<img src=\"a.png\" />", Added());
  Add(folder + "abc.png");
  EXPECT_EQ("<img src=\"a.png\" />", Added());
}

TEST_F(PicturePanel, WhileBusyNothingHappens) {
  Add(Picture("house.gif", gif));
  Tools().Busy = true;
  Tools().bOKPic[0]->click();
  Tools().bOKPic[1]->click();
  EXPECT_TRUE(Tools().isVisible());
  EXPECT_TRUE(Tools().Busy);
  EXPECT_EQ("", Added());
  Tools().Busy = false;
  Tools().bOKPic[0]->click();
  EXPECT_NE("", Added());
  EXPECT_FALSE(Tools().Busy);
}

}  // namespace
