// Web-packs out of the whole program: what a build does to the project, and that every picture that a user added is in
// it.
#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

#include "FSets.h"
#include "FTools.h"
#include "FoldersFixture.h"
#include "IconImage.h"
#include "PackPanel.h"
#include "PackedFiles.h"
#include "Resource.h"
#include "Settings.h"
#include "Swatch.h"
#include "fIconMaker.h"

namespace {

using Files = QMap<QString, QByteArray>;

class WebPacks : public FoldersTest {
 protected:
  PackPanel& Panel() { return *run_.modMain.Ops()->FrOps0; }
  FSets& Sets() { return *run_.modMain.Sets(); }
  FTools& Tools() { return *run_.modMain.Tools(); }

  // Through the menu and the panel; what is in the finished file.
  Files Build() {
    EXPECT_TRUE(run_.Choose("mMakePack"));
    return BuildAgain();
  }
  // With the panel open already: the page in view isn't written.
  Files BuildAgain() {
    Panel().tMakePath->setText(run_.test.Path("desktop"));
    Panel().tMakeFileName->setText("pack");
    QFile::remove(run_.test.Path("desktop/pack.exe"));
    Answer({MessageAnswer::No});
    Panel().bCreate[0]->click();
    EXPECT_EQ(1, run_.Dialogs().Boxes.size());
    Files files;
    for (const PackedFile& file : FilesInPack(run_.test.Path("desktop/pack.exe"))) files[file.name] = file.bytes;
    return files;
  }
  static QByteArray Link(int page, const QByteArray& text = "Next Page") {
    return "<A HREF=\"Page" + QByteArray::number(page) + ".html\">" + text + "</A></FONT></DIV><BR><BR></body>";
  }

  // Pictures out of a folder of the user's.
  QString Outside(const QString& name, const QByteArray& bytes) {
    const QString path = run_.test.Path("pictures/") + name;
    EXPECT_TRUE(PutFile(path, bytes));
    return path;
  }
  void AddByPanel(const QString& path) {
    Answer({}, {path});
    Tools().AddPicture(&Web());
    if (Tools().isVisible()) Tools().bOKPic[0]->click();
    run_.Settle();
  }
};

const QByteArray kGif(
    "GIF89a\x01\0\x01\0\x80\0\0\xff\xff\xff\0\0\0,\0\0\0\0\x01\0\x01\0\0\x02\x02"
    "D\x01\0;",
    35);

TEST_F(WebPacks, ABuildChangesTheProjectForGoodEvenWhenItFails) {
  MakePages({"one", "two"});
  ASSERT_TRUE(PutFile(run_.test.WorkFile("unused.gif"), "x"));
  run_.program().CurIconName = "NONE";
  EXPECT_EQ(Files(), Build());
  EXPECT_FALSE(QFile::exists(run_.test.WorkFile("unused.gif")));
  EXPECT_TRUE(FileIn("card/wgcard.html").contains(Link(2)));
  EXPECT_EQ(QStringList{StringText(130)}, run_.Dialogs().Messages());
}

// Meant in PreparePackPages: the link to the next page is put into the file and not into the page in view, so the next
// save drops it.
TEST_F(WebPacks, TheLinkIsInTheFileAndNotInThePageInViewSoTheNextSaveDropsIt) {
  MakePages({"one", "two"});
  GoToPage(1);
  Files files = Build();
  EXPECT_TRUE(files["wgcard.html"].contains(Link(2)));
  EXPECT_TRUE(FileIn("card/wgcard.html").contains(Link(2)));
  EXPECT_FALSE(InView().contains("Next Page"));
  ASSERT_TRUE(run_.Choose("mSavePage"));
  EXPECT_FALSE(FileIn("card/wgcard.html").contains("Next Page"));
  // And the next build adds it again.
  files = Build();
  EXPECT_EQ(1, files["wgcard.html"].count("Next Page"));
}

TEST_F(WebPacks, ASecondBuildAddsNoSecondLinkButAnotherTextDoes) {
  MakePages({"one", "two"});
  Build();
  const QByteArray page = FileIn("card/wgcard.html");
  BuildAgain();
  EXPECT_EQ(page, FileIn("card/wgcard.html"));
  Sets().tLink->setText("More & <i>more</i>");
  Sets().bSets[2]->click();
  const Files files = BuildAgain();
  EXPECT_EQ(1, files["wgcard.html"].count("Next Page"));
  // The text goes in as HTML.
  EXPECT_TRUE(files["wgcard.html"].contains(Link(2, "More & <i>more</i>"))) << files["wgcard.html"].constData();
}

TEST_F(WebPacks, Page10LinksToPage1AndPage12ToPage3) {
  QStringList texts;
  for (int i = 0; i < 12; ++i) texts.append(QString(QChar(u'a' + i)));
  MakePages(texts);
  const Files files = Build();
  ASSERT_EQ(12, files.size());
  EXPECT_TRUE(files["wgcard.html"].contains(Link(2)));
  EXPECT_TRUE(files["Page9.html"].contains(Link(10)));
  EXPECT_TRUE(files["Page10.html"].contains(Link(1)));
  EXPECT_TRUE(files["Page11.html"].contains(Link(2)));
  EXPECT_TRUE(files["Page12.html"].contains(Link(3)));
}

// Meant in PreparePackPages: a picture of a page that can't be read is unused, and is deleted.
TEST_F(WebPacks, APictureOfAPageThatCantBeReadIsDeleted) {
  MakePages({"one", "two"});
  AddPicture("two.gif", "two.gif");
  ASSERT_TRUE(run_.Choose("mSavePage"));
  GoToPage(1);
  const QString page = run_.test.WorkFile("Page2.html");
  ASSERT_TRUE(run_.Choose("mMakePack"));
  ASSERT_TRUE(PutFile(page, ""));  // what can't be read counts as empty
  const Files files = BuildAgain();
  EXPECT_EQ(QStringList({"Page2.html", "wgcard.html"}), files.keys());
  EXPECT_FALSE(QFile::exists(run_.test.WorkFile("two.gif")));
}

// Meant in PreparePackPages: the background picture of a table or cell is unused, and is deleted.
TEST_F(WebPacks, ABackgroundOfATableOrACellIsDeleted) {
  for (const char* name : {"table.gif", "cell.gif", "body.gif", "shown.gif"})
    ASSERT_TRUE(PutFile(run_.test.WorkFile(name), name));
  run_.browser->SetHtml(
      PageAround("<table background=\"table.gif\"><tr><td background=\"cell.gif\"><img "
                 "src=\"shown.gif\"></td></tr></table>"));
  View().SetBackPic("body.gif");
  EXPECT_EQ(QStringList({"body.gif", "shown.gif", "wgcard.html"}), Build().keys());
}

TEST_F(WebPacks, EveryWayOfAddingAPictureBringsItIntoThePack) {
  for (const char* name : {"heart.jpg", "hearttop.gif", "paper.jpg", "ruby.jpg"})
    ASSERT_TRUE(PutFile(run_.PathInApp("samples/") + name, name));
  QSet<QString> expected = {"wgcard.html", "Page2.html", "Page3.html"};
  // By the picture panel: a GIF and a JPEG with their sizes, a PNG without, names with blanks and of other scripts.
  run_.Type("one");
  const QString bear = QString::fromUtf8("b\xC3\xA4r \xE7\x86\x8A.gif");
  for (const QString& name : {QString("a b.gif"), QString("c.PNG"), QString("d.png"), bear}) {
    AddByPanel(Outside(name, name.endsWith("gif") ? kGif : QByteArray("\x89PNG")));
    expected.insert(QString(name).replace(u' ', u'_'));
  }
  // The same picture in another place, cut and pasted.
  View().AddNewElement("<FONT ID=f>x</FONT>");
  // The background of the page.
  Answer({}, {Outside("back.jpg", "back")});
  Tools().OpenPageProps();
  Tools().bBackPic[0]->click();
  expected.insert("back.jpg");
  // Page 2: into a table's first cell, and two themes of which the second one counts.
  ASSERT_TRUE(run_.Choose("mNewPage"));
  run_.browser->SetHtml(PageAround("<table><tr><td><font id=\"c\">cell</font></td></tr></table>"));
  run_.browser->Click(*run_.browser->PointAt(BoundaryPoint::InText(TextOf(ElementById(*View().WBDocument(), "c")), 1)));
  AddByPanel(Outside("in_cell.gif", kGif));
  EXPECT_TRUE(View().Source().contains("in_cell.gif"));
  expected.insert("in_cell.gif");
  ASSERT_TRUE(run_.Choose("mmtheme4"));
  ASSERT_TRUE(run_.Choose("mmtheme1"));
  expected += QSet<QString>{"heart.jpg", "hearttop.gif"};
  // Page 3: stationery.
  ASSERT_TRUE(run_.Choose("mNewPage"));
  ASSERT_TRUE(run_.Choose("mmthemeS5"));
  expected.insert("paper.jpg");
  SaveProjectAs("ann");
  ASSERT_TRUE(run_.Choose("mSaveProject"));
  const Files files = Build();
  EXPECT_EQ(expected, QSet<QString>(files.keyBegin(), files.keyEnd()));
  EXPECT_EQ(kGif, files["in_cell.gif"]);
  EXPECT_EQ("heart.jpg", files["heart.jpg"]);
}

// What a recipient's system can't have as a name is changed where the picture comes in, so page and pack agree.
TEST_F(WebPacks, PicturesOfAnyNameAreInThePackUnderNamesThatWindowsCanHave) {
  const QMap<QString, QString> names = {{"Shot_2024 12:30:45.png", "Shot_2024_12_30_45.png"},
                                        {"con.png", "_con.png"},
                                        {"Aux.PNG", "_Aux.PNG"},
                                        {"com1.tar.png", "_com1.tar.png"},
                                        {"what?.png", "what_.png"},
                                        {"star*.png", "star_.png"},
                                        {"a\"b<c>d|e.png", "a_b_c_d_e.png"},
                                        {"tab\there.png", "tab_here.png"},
                                        {QString::fromUtf8("b\xC3\xA4r.png"), QString::fromUtf8("b\xC3\xA4r.png")}};
  QSet<QString> expected = {"wgcard.html"};
  for (auto name = names.begin(); name != names.end(); ++name) {
    AddByPanel(Outside(name.key(), name.key().toUtf8()));
    expected.insert(name.value());
  }
  const Files files = Build();
  EXPECT_EQ(expected, QSet<QString>(files.keyBegin(), files.keyEnd()));
  for (auto name = names.begin(); name != names.end(); ++name) EXPECT_EQ(name.key().toUtf8(), files[name.value()]);
}

TEST_F(WebPacks, PicturesWhoseNamesDifferOnlyInCaseAreOne) {
  AddByPanel(Outside("one/Cat.png", "first"));
  AddByPanel(Outside("two/cat.png", "second"));
  const Files files = Build();
  EXPECT_EQ(QStringList({"Cat.png", "wgcard.html"}), files.keys());
  EXPECT_EQ("second", files["Cat.png"]);
  EXPECT_EQ(2, files["wgcard.html"].count("src=\"Cat.png\""));
}

// One that somebody else put into the folder: the list of names can't hold it, the folder can.
TEST_F(WebPacks, AStarInANameLosesNoFile) {
  ASSERT_TRUE(PutFile(run_.test.WorkFile("star*.gif"), "star"));
  SaveProjectAs("ann");
  EXPECT_EQ("star", FileIn("saved/ann/star*.gif"));
  EXPECT_EQ("star", Build()["star*.gif"]);
  EXPECT_EQ("star", FileIn("saved/ann/star*.gif"));
}

TEST_F(WebPacks, AChosenIconAndTheUsersOwnOneAreInThePack) {
  const auto icon = [this] { return FileBytes(run_.test.Path("desktop/pack.exe")).mid(0x124B0, 744); };
  Build();
  EXPECT_EQ(Resource("WP"), icon());
  Sets().OpIco[5]->click();
  BuildAgain();
  EXPECT_EQ(Resource("WP"), icon()) << "not applied yet";
  Sets().bIcoSets[0]->click();
  BuildAgain();
  EXPECT_EQ(Resource("ROSE"), icon());
  QByteArray own = IconFileOf(Resource("HAND"));
  own[22 + 104] = 0x21;
  ASSERT_TRUE(PutFile(run_.PathInApp("icons/own.ico"), own));
  Settings::Save(run_.test.platform.settings, Settings::CustomIcon, "own.ico");
  Sets().OpIco[10]->click();
  Sets().bIcoSets[0]->click();
  BuildAgain();
  EXPECT_EQ(own.mid(22), icon());
}

TEST_F(WebPacks, AnIconDrawnInTheEditorIsInThePack) {
  ASSERT_TRUE(run_.Choose("mOpenIcoEd"));
  fIconMaker* editor = nullptr;
  for (QWidget* const window : QApplication::topLevelWidgets())
    if (window->isVisible() && window->objectName() == QLatin1String("fIconMaker"))
      editor = static_cast<fIconMaker*>(window);
  ASSERT_NE(nullptr, editor);
  // A solid ellipse in blue, then a line of another width across it.
  editor->bOps[4]->click();
  QTest::mouseClick(editor->PCols[12], Qt::LeftButton);
  QTest::mousePress(editor->Surfaces.PicBig, Qt::LeftButton, {}, {24, 31});
  QTest::mouseRelease(editor->Surfaces.PicBig, Qt::LeftButton, {}, {200, 192});
  editor->bOps[0]->click();
  editor->OpW[2]->click();
  QTest::mouseClick(editor->PCols[9], Qt::LeftButton);
  QTest::mousePress(editor->Surfaces.PicBig, Qt::LeftButton, {}, {10, 10});
  QTest::mouseRelease(editor->Surfaces.PicBig, Qt::LeftButton, {}, {215, 210});
  const QString file = run_.test.Path("pictures/drawn.ico");
  QDir().mkpath(run_.test.Path("pictures"));
  Answer({}, {file});
  editor->findChild<QAction*>("mSaveIco")->trigger();
  const QByteArray drawn = FileBytes(file);
  ASSERT_EQ(766, drawn.size());
  EXPECT_GT(QSet<char>(drawn.begin() + 126, drawn.begin() + 638).size(), 3) << "something is drawn in it";
  // The way of the user: the settings window's list, the choice, Apply.
  ASSERT_TRUE(run_.Choose("mSettings"));
  Sets().bSetWins[1]->click();
  Sets().bIcoSets[1]->click();
  Answer({}, {file});
  Sets().bCustomIco[0]->click();
  Sets().bCustomIco[1]->click();
  Sets().BoxIcons->setCurrentRow(0);
  Sets().bCustomIco[2]->click();
  EXPECT_EQ(QStringList{StringText(124)}, run_.Dialogs().Messages());
  Sets().bCustomIco[3]->click();
  Sets().OpIco[10]->click();
  Sets().bIcoSets[0]->click();
  Build();
  EXPECT_EQ(drawn.mid(22), FileBytes(run_.test.Path("desktop/pack.exe")).mid(0x124B0, 744));
}

// The commands on projects stay open to the user while files are packed.
TEST_F(WebPacks, ANewProjectDuringABuildLeavesTheSavedOnesPackWhole) {
  run_.Type("one");
  SaveProjectAs("ann");
  for (const char* name : {"a.txt", "b.txt"}) ASSERT_TRUE(PutFile(run_.PathInApp("saved/ann/") + name, name));
  ASSERT_TRUE(run_.Choose("mMakePack"));
  Panel().tMakePath->setText(run_.test.Path("desktop"));
  Panel().tMakeFileName->setText("pack");
  Answer({MessageAnswer::Ok, MessageAnswer::No});
  QMetaObject::invokeMethod(qApp, [this] { Web().mNewProject(); }, Qt::QueuedConnection);
  Panel().bCreate[0]->click();
  EXPECT_EQ("Project1", run_.program().project.ProjectName());
  QStringList packed;
  for (const PackedFile& file : FilesInPack(run_.test.Path("desktop/pack.exe"))) packed += file.name;
  EXPECT_EQ(QStringList({"a.txt", "b.txt", "wgcard.html"}), packed);
  // No archive stays behind in the old project, and none comes into the new one.
  EXPECT_EQ(QStringList({"a.txt", "b.txt", "wgcard.html"}), Names("saved/ann"));
  EXPECT_EQ(QStringList{"wgcard.html"}, Names("card"));
}

TEST_F(WebPacks, ANewProjectInPlaceOfTheUnsavedOneDuringItsBuildIsToldAsAnOpenFile) {
  run_.Type("one");
  ASSERT_TRUE(PutFile(run_.test.WorkFile("a.txt"), "a"));
  ASSERT_TRUE(run_.Choose("mMakePack"));
  Panel().tMakePath->setText(run_.test.Path("desktop"));
  Answer({MessageAnswer::Ok});
  QMetaObject::invokeMethod(qApp, [this] { Web().mNewProject(); }, Qt::QueuedConnection);
  Panel().bCreate[0]->click();
  EXPECT_EQ(StringText(134), run_.Dialogs().Messages().last());
  EXPECT_EQ(QStringList{"wgcard.html"}, Names("card"));
  EXPECT_EQ(QStringList(), QDir(run_.test.Path("desktop")).entryList(QDir::Files));
}

TEST_F(WebPacks, AProjectOpenedDuringABuildHasNoPartInIt) {
  run_.Type("ann");
  SaveProjectAs("ann");
  const QByteArray other = "<html><body>bob</body></html>";
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/bob/wgcard.html"), other));
  run_.program().project.OpenSaved("ann", run_.PathInApp("saved/ann"));
  ASSERT_TRUE(PutFile(run_.PathInApp("saved/ann/a.txt"), "a"));
  Panel().tMakePath->setText(run_.test.Path("desktop"));
  Panel().tMakeFileName->setText("pack");
  Answer({MessageAnswer::No});
  QMetaObject::invokeMethod(
      qApp, [this] { Web().OpenProject("bob", run_.PathInApp("saved/bob")); }, Qt::QueuedConnection);
  Panel().bCreate[0]->click();
  EXPECT_EQ("bob", run_.program().project.ProjectName());
  EXPECT_EQ(2, FilesInPack(run_.test.Path("desktop/pack.exe")).size());
  EXPECT_EQ(QStringList({"a.txt", "wgcard.html"}), Names("saved/ann"));
  EXPECT_EQ(other, FileIn("saved/bob/wgcard.html"));
}

TEST_F(WebPacks, TheFolderOfThePanelAndOfTheSettingsIsOne) {
  ASSERT_TRUE(run_.Choose("mMakePack"));
  EXPECT_EQ(Sets().tPath->text(), Panel().tMakePath->text());
  QDir().mkpath(run_.test.Path("packs"));
  Answer({}, {run_.test.Path("packs")});
  Panel().bCreate[1]->click();
  EXPECT_EQ(run_.test.Path("packs"), Sets().tPath->text());
  EXPECT_EQ(run_.test.Path("packs"), run_.program().CardFolder);
  // A build keeps its folder to itself.
  QDir().mkpath(run_.test.Path("elsewhere"));
  Panel().tMakePath->setText(run_.test.Path("elsewhere"));
  Answer({MessageAnswer::No});
  Panel().bCreate[0]->click();
  EXPECT_EQ(run_.test.Path("packs"), run_.program().CardFolder);
  EXPECT_EQ(run_.test.Path("packs"), Settings::Get(run_.test.platform.settings, Settings::CardFol));
}

TEST_F(WebPacks, TheSettingsWindowOpensFromItsMenuAndStaysBesideTheOthers) {
  ASSERT_TRUE(run_.Choose("mSettings"));
  EXPECT_TRUE(Sets().isVisible());
  EXPECT_EQ("Next Page", Sets().tLink->text());
  EXPECT_EQ(run_.program().CardFolder, Sets().tPath->text());
  EXPECT_TRUE(Sets().OpIco[0]->isChecked());
  ASSERT_TRUE(run_.Choose("mMakePack"));
  EXPECT_TRUE(Sets().isVisible());
}

}  // namespace
