#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "PictureWindowFixture.h"

namespace {

// Picture files that other programs write, and other programs' readers on ours.
class OtherPrograms : public PictureWindowTest {
 protected:
  void SetUp() override {
    for (const char* tool : {"convert", "djpeg", "cjpeg", "icotool"}) {
      if (!QStandardPaths::findExecutable(tool).isEmpty()) continue;
      if (qEnvironmentVariable("CI") == "true") FAIL() << tool << " is not there";
      GTEST_SKIP() << tool << " is not there";
    }
  }

  // What the program writes to its standard output; its error output must stay empty.
  QByteArray Run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setWorkingDirectory(test_.Path(""));
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60000)) << qPrintable(program);
    EXPECT_EQ(0, process.exitCode()) << process.readAllStandardError().constData();
    EXPECT_EQ("", process.readAllStandardError());
    return process.readAllStandardOutput();
  }
  // ImageMagick's picture of a file, or of something that it makes.
  QImage Theirs(const QStringList& what) {
    return PictureOf(Run("convert", what + QStringList{"-background", "white", "-flatten", "-depth", "8", "ppm:-"}));
  }
  // A file of 8-bit colours: "P6", width, height, 255 and the bytes.
  static QImage PictureOf(const QByteArray& ppm) {
    int width = 0, height = 0, from = 0;
    if (sscanf(ppm.constData(), "P6 %d %d 255%n", &width, &height, &from) != 2) return QImage();
    const auto* bytes = reinterpret_cast<const uchar*>(ppm.constData()) + from + 1;
    if (ppm.size() < from + 1 + 3 * width * height) return QImage();
    return QImage(bytes, width, height, 3 * width, QImage::Format_RGB888).convertToFormat(QImage::Format_RGB32);
  }
  // The largest difference of a channel; 256 for other sizes.
  static int Difference(const QImage& one, const QImage& other) {
    if (one.size() != other.size() || one.isNull()) return 256;
    int most = 0;
    for (int y = 0; y < one.height(); ++y)
      for (int x = 0; x < one.width(); ++x) {
        const QRgb a = one.pixel(x, y), b = other.pixel(x, y);
        most = std::max(
            {most, std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
      }
    return most;
  }
  // A drawing with soft and hard edges.
  static QStringList Drawing(const char* size) {
    return {"-size", size,    "gradient:navy-orange", "-fill", "white", "-draw", "circle 30,20 40,20", "-fill",
            "green", "-draw", "rectangle 5,30 25,44"};
  }
};

TEST_F(OtherPrograms, TheirPicturesOpenAsTheySeeThem) {
  struct Row {
    const char* name;
    QStringList how;
    int difference;
  };
  const QStringList colors = {"-dither", "None", "-colors"};
  const Row rows[] = {
      {"true.bmp", {"-type", "truecolor"}, 0},
      {"true3.bmp", {"-type", "truecolor", "BMP3:true3.bmp"}, 0},
      {"true2.bmp", {"-type", "truecolor", "BMP2:true2.bmp"}, 0},
      {"palette.bmp", colors + QStringList{"200", "-type", "palette", "BMP3:palette.bmp"}, 0},
      {"sixteen.bmp", colors + QStringList{"12", "-type", "palette", "BMP3:sixteen.bmp"}, 0},
      {"two.bmp", {"-monochrome", "BMP3:two.bmp"}, 0},
      {"runs.bmp", colors + QStringList{"60", "-type", "palette", "-compress", "RLE", "BMP3:runs.bmp"}, 0},
      {"high.bmp", {"-define", "bmp:subtype=RGB565"}, 8},
      {"plain.gif", {}, 0},
      {"rows.gif", {"-interlace", "GIF"}, 0},
      {"two.gif", colors + QStringList{"2"}, 0},
      {"best.jpg", {"-quality", "100"}, 3},
      {"usual.jpg", {}, 3},
      {"progressive.jpg", {"-interlace", "JPEG"}, 3},
      {"grey.jpg", {"-colorspace", "Gray"}, 3},
      {"full.jpg", {"-sampling-factor", "4:4:4"}, 3},
      {"wide.jpg", {"-sampling-factor", "4:2:2"}, 3},
      {"poor.jpg", {"-quality", "5"}, 3},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const bool named = !row.how.isEmpty() && row.how.last().contains(u':') && row.how.last().endsWith(row.name);
    Run("convert", Drawing("61x47") + row.how + (named ? QStringList() : QStringList{row.name}));
    const QString path = test_.Path(row.name);
    Choose(path);
    EXPECT_TRUE(TakeMessages().isEmpty());
    EXPECT_EQ("61", window_.tWd->text());
    EXPECT_EQ("47", window_.tHt->text());
    EXPECT_EQ(QString::number(FileSizeKb(path)), window_.tSz->text());
    EXPECT_LE(Difference(Theirs({path}), Shown()), row.difference);
  }
}

TEST_F(OtherPrograms, AnAnimationShowsItsFirstPicture) {
  Run("convert", {"-delay", "10", "-size", "40x30", "xc:red", "xc:lime", "-page", "+5+5", "(", "-size", "10x10",
                  "xc:blue", ")", "-loop", "0", "moving.gif"});
  Choose(test_.Path("moving.gif"));
  EXPECT_EQ(QSize(40, 30), Shown().size());
  EXPECT_EQ(QColor(Qt::red), PixelShown(7, 7));
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(OtherPrograms, WhatIsSeeThroughStandsOnWhite) {
  Run("convert", {"-size", "40x30", "xc:none", "-fill", "red", "-draw", "rectangle 0,0 19,29", "half.gif"});
  Choose(test_.Path("half.gif"));
  EXPECT_EQ(QColor(Qt::red), PixelShown(10, 10));
  EXPECT_EQ(QColor(Qt::white), PixelShown(30, 10));
}

TEST_F(OtherPrograms, IconsOpenWithTheirFirstPicture) {
  Run("convert", {"-size", "32x32", "xc:none", "-fill", "red", "-draw", "rectangle 0,0 15,31", "one.ico"});
  Choose(test_.Path("one.ico"));
  EXPECT_TRUE(TakeMessages().isEmpty());
  EXPECT_EQ(QSize(32, 32), Shown().size());
  EXPECT_EQ(QColor(Qt::red), PixelShown(5, 5));
  EXPECT_EQ(QColor(Qt::white), PixelShown(25, 5));
  Run("convert", {"-size", "16x16", "xc:blue", "small.png"});
  Run("convert", {"-size", "48x48", "xc:lime", "large.png"});
  Run("icotool", {"-c", "-o", "two.ico", "small.png", "large.png"});
  Choose(test_.Path("two.ico"));
  EXPECT_TRUE(TakeMessages().isEmpty());
  EXPECT_EQ(QSize(16, 16), Shown().size());
  EXPECT_EQ(QColor(Qt::blue), PixelShown(8, 8));
}

TEST_F(OtherPrograms, OurJpegsAreReadByTheJpegLibrarysOwnTool) {
  Run("convert", Drawing("333x217") + QStringList{"-type", "truecolor", "a.bmp"});
  for (const char* quality : {"5", "50", "75", "100"}) {
    SCOPED_TRACE(quality);
    Choose(test_.Path("a.bmp"));
    Compress(quality);
    // The picture on show is the JPEG's.
    EXPECT_EQ(Shown(), PictureOf(Run("djpeg", {"-ppm", Scratch("cvtemp.jpg")})));
    Save(test_.Path("copied.jpg"), {MessageAnswer::Ok});
    EXPECT_EQ(Shown(), PictureOf(Run("djpeg", {"-ppm", test_.Path("copied.jpg")})));
    Save(test_.Path("anew.jpg"), {MessageAnswer::Ok});
    EXPECT_LE(Difference(Shown(), PictureOf(Run("djpeg", {"-ppm", test_.Path("anew.jpg")}))), 30);
    TakeMessages();
  }
}

TEST_F(OtherPrograms, TheJpegLibrarysOwnToolMakesTheSameFile) {
  Run("convert", Drawing("333x217") + QStringList{"-type", "truecolor", "BMP3:a.bmp"});
  for (const int quality : {30, 75, 95, 100}) {
    pics_.NView.MakeJpeg(test_.Path("a.bmp"), test_.Path("ours.jpg"), qint16(quality));
    // The full colours at the best quality.
    Run("cjpeg", {"-quality", QString::number(quality), "-sample", quality == 100 ? "1x1" : "2x2", "-outfile",
                  "theirs.jpg", "a.bmp"});
    EXPECT_EQ(PictureOf(Run("djpeg", {"-ppm", "theirs.jpg"})), PictureOf(Run("djpeg", {"-ppm", "ours.jpg"})))
        << quality;
  }
}

TEST_F(OtherPrograms, TheirCutAndBentFilesAreToldOrShown) {
  for (const char* name : {"a.bmp", "a.gif", "a.jpg", "a.ico"}) {
    Run("convert", {"-size", "32x32", "gradient:red-blue", name});
    const QByteArray whole = FileBytes(test_.Path(name));
    for (const qsizetype length : {qsizetype(1), qsizetype(10), whole.size() / 2, whole.size() - 2}) {
      Choose(File("cut", whole.left(length)));
      const QStringList told = TakeMessages();
      // A JPEG whose end alone is missing is shown.
      const bool isShown = name == std::string("a.jpg") && length == whole.size() - 2;
      EXPECT_EQ(isShown ? QStringList() : QStringList{"Error loading image file."}, told) << name << ' ' << length;
    }
  }
}

// What the smooth filter makes of a photo is near to what others make of it.
TEST_F(OtherPrograms, HalfASizeLooksLikeTheirs) {
  Run("convert", Drawing("400x300") + QStringList{"-blur", "0x2", "-type", "truecolor", "a.bmp"});
  Choose(test_.Path("a.bmp"));
  Resize("50");
  EXPECT_LE(Difference(Theirs({test_.Path("a.bmp"), "-filter", "Box", "-resize", "50%"}), Shown()), 2);
}

}  // namespace
