// The pictures that the build leaves beside the program, held against the program's own themes.
#include <gtest/gtest.h>

#include <QFileInfo>
#include <map>

#include "ThemedProgram.h"
#include "TileMeasures.h"

namespace {

constexpr qint64 mostBytes = 60000;
constexpr double wantedContrast = 4.5;

// Their colour is too light for any white, and their names promise a light ground. The ratio is what they reach; on
// pure white it would be 3.21.
const std::map<QString, double> shortOfContrast{{"Elegant - Linen", 3.05}, {"Paper", 3.10}};

QImage Picture(const QString& name) {
  return QImage(SampleFolder() + u'/' + name).convertToFormat(QImage::Format_ARGB32);
}

class ThemePictures : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(run_.Start());
    for (const QString& entry : ThemedProgram::Entries()) themes_ += run_.Dress(entry);
  }

  ThemedProgram run_;
  QList<ThemeShown> themes_;
};

TEST_F(ThemePictures, EveryThemeOfTheMenusFindsItsPicture) {
  EXPECT_EQ(0, run_.Dialogs().Boxes.size()) << "a theme was refused";
  QStringList shown{"hearttop.gif"};
  for (const ThemeShown& theme : themes_) {
    shown += theme.picture;
    EXPECT_EQ(FileBytes(SampleFolder() + u'/' + theme.picture), FileBytes(run_.test.WorkFile(theme.picture)))
        << qPrintable(theme.caption);
  }
  shown.sort();
  EXPECT_EQ(shown, QDir(SampleFolder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name));
  EXPECT_EQ(15, shown.size());
  EXPECT_EQ(15, QSet<QString>(shown.begin(), shown.end()).size());
}

TEST_F(ThemePictures, AreSmallFiles) {
  for (const QFileInfo& file : QDir(SampleFolder()).entryInfoList(QDir::Files)) {
    EXPECT_LT(file.size(), mostBytes) << qPrintable(file.fileName());
    EXPECT_GT(file.size(), 1000) << qPrintable(file.fileName());
  }
}

TEST_F(ThemePictures, RepeatWithoutASeam) {
  for (const ThemeShown& theme : themes_) {
    const QImage tile = Picture(theme.picture);
    ASSERT_FALSE(tile.isNull()) << qPrintable(theme.picture);
    for (const QImage& way : {tile, OnItsSide(tile)}) {
      const SeamMeasure seam = Seam(way);
      EXPECT_TRUE(HasNoSeam(seam)) << qPrintable(theme.picture) << " edge " << seam.edge << ", within " << seam.inner
                                   << " to " << seam.most;
    }
  }
}

// What the test above would say of tiles that don't fit their neighbours. Stripes fit wherever they are cut.
TEST_F(ThemePictures, ACutTileHasASeam) {
  for (const ThemeShown& theme : themes_) {
    const QImage tile = Picture(theme.picture);
    if (theme.caption == "Pink Pinstripe") continue;
    EXPECT_FALSE(HasNoSeam(Seam(tile.copy(0, 0, tile.width() - 24, tile.height())))) << qPrintable(theme.picture);
  }
}

TEST_F(ThemePictures, TextStandsOutFromThem) {
  for (const ThemeShown& theme : themes_) {
    const QImage tile = Picture(theme.picture);
    const double ratio = Contrast(theme.color, MeanColor(tile, tile.rect()));
    const double least = LeastContrast(tile, theme.color);
    std::printf("%-16s %s on %s: %5.2f, at least %5.2f in any place\n", qPrintable(theme.caption),
                qPrintable(theme.color.name()), qPrintable(MeanColor(tile, tile.rect()).name()), ratio, least);
    const auto known = shortOfContrast.find(theme.caption);
    if (known == shortOfContrast.end()) {
      EXPECT_GE(ratio, wantedContrast) << qPrintable(theme.caption);
      EXPECT_GE(least, 4.4) << qPrintable(theme.caption);
    } else {
      EXPECT_LT(Contrast(theme.color, Qt::white), wantedContrast) << "there is no reason to fall short";
      EXPECT_GE(ratio, known->second) << qPrintable(theme.caption);
      EXPECT_GE(least, 0.95 * ratio) << qPrintable(theme.caption);
    }
  }
}

TEST_F(ThemePictures, TheBannerOfHeartsIsSeeThroughAroundThem) {
  const QImage banner = Picture("hearttop.gif");
  ASSERT_EQ(QSize(400, 80), banner.size()) << "the size that its element gives";
  int opaque = 0;
  for (int y = 0; y < banner.height(); ++y)
    for (int x = 0; x < banner.width(); ++x) opaque += qAlpha(banner.pixel(x, y)) == 255;
  EXPECT_GT(opaque, 3000);
  EXPECT_LT(opaque, 12000);
  for (int x = 0; x < banner.width(); ++x)
    EXPECT_EQ(0, qAlpha(banner.pixel(x, 0)) + qAlpha(banner.pixel(x, 79))) << "cut off at column " << x;
  const QColor middle = banner.pixelColor(200, 45);
  EXPECT_GT(middle.red(), 180);
  EXPECT_LT(middle.green(), 110);
  EXPECT_TRUE(run_.test.program.Files.FileExists(run_.test.WorkFile("hearttop.gif")));
}

}  // namespace
