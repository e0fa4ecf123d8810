#include <QIcon>
#include <algorithm>
#include <string>

#include "FTools.h"
#include "FoldersFixture.h"
#include "Swatch.h"

namespace {

struct Theme {
  const char* entry;
  const char* caption;
  const char* picture;
  const char* color;
  qint32 number;  // the colour, red in the low byte
};

constexpr Theme kThemes[] = {
    {"mmtheme0", "Rainbow", "rainbow.jpg", "#0000FF", 0xFF0000},
    {"mmtheme1", "Hearts", "heart.jpg", "#FF0080", 0x8000FF},
    {"mmtheme2", "Metallic", "silver.jpg", "#565F7E", 0x7E5F56},
    {"mmtheme3", "Forest Green", "forest.jpg", "#F9F3EE", 0xEEF3F9},
    {"mmtheme4", "Ruby", "ruby.jpg", "#FFFFFF", 0xFFFFFF},
    {"mmtheme5", "Deep Blue", "deepblue.jpg", "#A6D0FF", 0xFFD0A6},
    {"mmtheme6", "Outer Space", "stars.jpg", "#FFFFFF", 0xFFFFFF},
    {"mmthemeS0", "Parchment", "parchment.jpg", "#3D0264", 0x64023D},
    {"mmthemeS1", "White Marble", "white.jpg", "#565F7E", 0x7E5F56},
    {"mmthemeS2", "Elegant - Linen", "brocade.jpg", "#A68A7B", 0x7B8AA6},
    {"mmthemeS3", "Elegant - Lilac", "brocblue.jpg", "#470176", 0x760147},
    {"mmthemeS4", "Elegant - Peach", "brocred.jpg", "#740140", 0x400174},
    {"mmthemeS5", "Paper", "paper.jpg", "#A68A7B", 0x7B8AA6},
    {"mmthemeS6", "Pink Pinstripe", "pink.jpg", "#71005A", 0x5A0071},
};

class Themes : public FoldersTest {
 protected:
  void PutSamples() {
    for (const Theme& theme : kThemes) PutSample(theme.picture);
    PutSample("hearttop.gif");
  }
  void PutSample(const char* name) { ASSERT_TRUE(PutFile(run_.PathInApp("samples/") + name, name)); }
  QAction* Entry(const char* name) { return Web().findChild<QAction*>(name); }
  int Hearts() { return int(View().Source().count("heartpic")); }
};

TEST_F(Themes, EachHasItsEntryItsPictureAndItsColour) {
  PutSamples();
  MakePages({"text"});
  for (const Theme& theme : kThemes) {
    ASSERT_NE(nullptr, Entry(theme.entry)) << theme.entry;
    EXPECT_EQ(theme.caption, Entry(theme.entry)->text());
    ASSERT_FALSE(Entry(theme.entry)->icon().pixmap(16, 16).isNull()) << theme.entry;
    ASSERT_TRUE(run_.Choose(theme.entry));
    EXPECT_EQ(theme.picture, View().BackPic());
    EXPECT_EQ(theme.color, View().BodyFontColor());
    EXPECT_EQ(theme.number, run_.modMain.Tools()->BoxColor[2]->Color());
    const Attribute* const background = View().WBDocument()->tree().bodyNode()->FindAttribute("background");
    ASSERT_NE(nullptr, background);
    EXPECT_EQ(theme.picture, background->value) << "the bare name";
    EXPECT_EQ(theme.picture, FileIn(QString("card/") + theme.picture));
  }
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  // Each picture has stayed beside the pages, and nothing else was written.
  EXPECT_EQ(16, Names("card").size());
  EXPECT_EQ(FileIn("blank.html"), FileIn("card/wgcard.html"));
}

// The mean of a picture's opaque pixels.
QColor Mean(const QImage& picture) {
  qint64 red = 0, green = 0, blue = 0, count = 0;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) {
      const QRgb pixel = picture.pixel(x, y);
      if (qAlpha(pixel) < 255) continue;
      red += qRed(pixel), green += qGreen(pixel), blue += qBlue(pixel), ++count;
    }
  return count == 0 ? QColor() : QColor(int(red / count), int(green / count), int(blue / count));
}

TEST_F(Themes, EachEntryHasASmallPictureOfItsOwn) {
  QList<QImage> pictures;
  for (std::size_t i = 0; i < std::size(kThemes); ++i) {
    const QImage picture = Entry(kThemes[i].entry)->icon().pixmap(16, 16).toImage();
    EXPECT_EQ(picture, QIcon(QStringLiteral(":/themes/%1.svg").arg(i)).pixmap(16, 16).toImage()) << kThemes[i].entry;
    EXPECT_TRUE(Mean(picture).isValid()) << kThemes[i].entry << " is empty";
    EXPECT_FALSE(pictures.contains(picture)) << kThemes[i].entry;
    pictures.append(picture);
  }
}

// What a small picture is known by, in the order of the menus: red, green or blue leads, or none does.
TEST_F(Themes, TheSmallPicturesStandInTheOrderOfTheMenus) {
  std::string leads;
  for (const Theme& theme : kThemes) {
    const QColor mean = Mean(Entry(theme.entry)->icon().pixmap(32, 32).toImage());
    const auto [least, most] = std::minmax({mean.red(), mean.green(), mean.blue()});
    leads += most - least < 30 ? '-' : most == mean.red() ? 'r' : most == mean.green() ? 'g' : 'b';
  }
  EXPECT_EQ("rr-grb-r--br-r", leads);
}

TEST_F(Themes, AMissingBackgroundRefusesTheThemeWithABox) {
  MakePages({"text"});
  PutSample("hearttop.gif");
  const Tree before = TreeOf();
  const QByteArray view = InView();
  for (const Theme& theme : kThemes) {
    Answer({});
    ASSERT_TRUE(run_.Choose(theme.entry));
    ASSERT_EQ(1, run_.Dialogs().Boxes.size());
    EXPECT_EQ(QString("A file for this theme was not found. %1 should be in the program samples subfolder.")
                  .arg(theme.picture),
              run_.Dialogs().Boxes[0].text);
    EXPECT_EQ(MessageIcon::Information, run_.Dialogs().Boxes[0].icon);
    EXPECT_EQ(MessageButtons::Ok, run_.Dialogs().Boxes[0].buttons);
  }
  EXPECT_EQ(Tree(), Changes(before, TreeOf()));
  EXPECT_EQ(view, InView());
}

TEST_F(Themes, AMissingPictureOfTheHeartsIsSilent) {
  PutSample("heart.jpg");
  ASSERT_TRUE(run_.Choose("mmtheme1"));
  EXPECT_TRUE(run_.Dialogs().Boxes.isEmpty());
  EXPECT_EQ("heart.jpg", View().BackPic());
  EXPECT_EQ(0, Hearts());
}

// Meant in FWeb::ApplyTheme: the theme of hearts chosen twice adds its picture twice.
TEST_F(Themes, HeartsTwiceAddsThePictureTwice) {
  PutSamples();
  ASSERT_TRUE(run_.Choose("mmtheme1"));
  EXPECT_EQ(1, Hearts());
  EXPECT_TRUE(View().Source().contains("<img src=\"hearttop.gif\" id=\"heartpic\" width=\"400\" height=\"80\""));
  ASSERT_TRUE(run_.Choose("mmtheme1"));
  EXPECT_EQ(2, Hearts());
  EXPECT_EQ("hearttop.gif", FileIn("card/hearttop.gif"));
}

// Meant in FWeb::RemoveHeartPic: of two hearts side by side one survives the next theme.
TEST_F(Themes, OfTwoNeighbouringHeartsOneSurvivesTheNextTheme) {
  PutSamples();
  for (const char* next : {"mmtheme4", "mmthemeS5"}) {
    for (const int hearts : {1, 2, 3, 4, 5}) {
      while (Hearts() > 0) ASSERT_TRUE(run_.Choose("mmtheme4"));
      for (int i = 0; i < hearts; ++i) View().AddNewElement(StringText(143));
      ASSERT_EQ(hearts, Hearts());
      ASSERT_TRUE(run_.Choose(next));
      // One removed, one passed over, and so on.
      EXPECT_EQ(hearts / 2, Hearts()) << next;
    }
  }
}

TEST_F(Themes, HeartsApartFromEachOtherAllGo) {
  PutSamples();
  for (int i = 0; i < 3; ++i) {
    View().AddNewElement(StringText(143));
    View().AddNewElement("<FONT>x</FONT>");
  }
  ASSERT_TRUE(run_.Choose("mmtheme0"));
  EXPECT_EQ(0, Hearts());
  EXPECT_EQ("xxx", LettersInView());
}

TEST_F(Themes, OnlyTheExactIdIsAHeart) {
  PutSamples();
  View().AddNewElement("<FONT ID=\"Heartpic\">a</FONT><FONT ID=\"heartpic\">b</FONT>");
  ASSERT_TRUE(run_.Choose("mmtheme0"));
  EXPECT_EQ("a", LettersInView());
}

// Stationery takes the heart away before its picture is copied, the other family after the colour has been set.
// Meant in FWeb::mmthemeS: stationery takes the heart away at another step than the other themes.
TEST_F(Themes, TheTwoFamiliesTakeTheHeartAwayAtDifferentSteps) {
  PutSamples();
  for (const auto& [entry, picture, atCopy] :
       {std::tuple{"mmthemeS5", "paper.jpg", 0}, std::tuple{"mmtheme4", "ruby.jpg", 1}}) {
    View().AddNewElement(StringText(143));
    int hearts = -1;
    const QString sample = run_.PathInApp("samples/") + picture;
    run_.test.platform.attributes.BeforeSet = [&](const QString& path) {
      if (path == sample) hearts = Hearts();
    };
    ASSERT_TRUE(run_.Choose(entry));
    run_.test.platform.attributes.BeforeSet = nullptr;
    EXPECT_EQ(atCopy, hearts) << entry;
    EXPECT_EQ(0, Hearts());
  }
}

TEST_F(Themes, APictureThatIsThereAlreadyIsKeptAsItIs) {
  PutSamples();
  ASSERT_TRUE(PutFile(run_.PathInApp("card/paper.jpg"), "mine"));
  ASSERT_TRUE(PutFile(run_.PathInApp("card/hearttop.gif"), "my hearts"));
  ASSERT_TRUE(run_.Choose("mmtheme1"));
  ASSERT_TRUE(run_.Choose("mmthemeS5"));
  EXPECT_EQ("mine", FileIn("card/paper.jpg"));
  EXPECT_EQ("my hearts", FileIn("card/hearttop.gif"));
  EXPECT_EQ("heart.jpg", FileIn("card/heart.jpg")) << "the picture of the theme before stays";
}

TEST_F(Themes, FontsLinksAndOtherPagesStayAndABusyProgramIsNotAsked) {
  PutSamples();
  MakePages({"one", "two"});
  View().SetBodyFontName("Tahoma");
  View().SetBodyFontSize("5");
  View().SetLinkColor("#123456");
  const QString style = View().WBDocument()->body().style().fontFamily();
  const Tree before = TreeOf();
  Web().Busy = true;
  ASSERT_TRUE(run_.Choose("mmtheme3"));
  EXPECT_EQ((Tree{{"card/forest.jpg", "forest.jpg"}}), Changes(before, TreeOf())) << "no page is written";
  EXPECT_EQ("forest.jpg", View().BackPic());
  EXPECT_EQ("Tahoma", View().BodyFontName());
  EXPECT_EQ("5", View().BodyFontSize());
  EXPECT_EQ("#123456", View().LinkColor());
  EXPECT_EQ(style, View().WBDocument()->body().style().fontFamily());
}

TEST_F(Themes, InASavedProjectThePictureGoesIntoIt) {
  PutSamples();
  SaveProjectAs("ann");
  ASSERT_TRUE(run_.Choose("mmtheme6"));
  EXPECT_EQ("stars.jpg", FileIn("saved/ann/stars.jpg"));
  EXPECT_FALSE(QFile::exists(run_.PathInApp("card/stars.jpg")));
}

}  // namespace
