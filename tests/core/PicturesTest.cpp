#include <gtest/gtest.h>

#include <QIcon>
#include <QImage>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>

// Outside of any namespace, as the macro wants it.
static void InitPictures() {
  Q_INIT_RESOURCE(Tools);
  Q_INIT_RESOURCE(PictureTools);
  Q_INIT_RESOURCE(Themes);
  Q_INIT_RESOURCE(IconEditor);
}

namespace {

QStringList ToolPictures() {
  return QString(
             "new-project open-project new-page save-page delete-page picture-editor icon-editor email web-pack "
             "sel-cut "
             "sel-copy sel-paste sel-link sel-picture sel-table sel-forward sel-left sel-up sel-right sel-down "
             "sel-back picture-open picture-save picture-close-editor picture-close picture-resize picture-compress "
             "picture-crop picture-undo")
      .split(u' ')
      .replaceInStrings(QRegularExpression("(.+)"), ":/tools/\\1.svg");
}

QStringList IconEditorPictures() {
  return QString("line rectangle solid-rectangle ellipse solid-ellipse")
      .split(u' ')
      .replaceInStrings(QRegularExpression("(.+)"), ":/iconeditor/\\1.svg");
}

QStringList ThemePictures() {
  QStringList pictures;
  for (int i = 0; i < 14; ++i) pictures << QString(":/themes/%1.svg").arg(i);
  return pictures;
}

// The picture as the program shows it; null when it can't be drawn.
QImage Drawn(const QString& picture, int size) {
  return QIcon(picture).pixmap(size, size).toImage().convertToFormat(QImage::Format_ARGB32);
}

double Luminance(QRgb color) {
  const auto linear = [](int channel) {
    const double c = channel / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

// Contrast by the rules for accessible web content: 1 for none, 21 for black on white.
double Contrast(QRgb one, QRgb other) {
  const double a = Luminance(one) + 0.05;
  const double b = Luminance(other) + 0.05;
  return a > b ? a / b : b / a;
}

// What isn't see-through, or hardly.
QList<QRgb> OwnPixels(const QImage& picture) {
  QList<QRgb> pixels;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x)
      if (qAlpha(picture.pixel(x, y)) >= 200) pixels.append(picture.pixel(x, y));
  return pixels;
}

// Share of the picture's own pixels that stand out from the ground, as marks and graphics have to.
double ShareThatShows(const QImage& picture, QRgb ground) {
  const QList<QRgb> pixels = OwnPixels(picture);
  const auto shown = std::count_if(pixels.begin(), pixels.end(), [&](QRgb p) { return Contrast(p, ground) >= 3; });
  return pixels.isEmpty() ? 0 : double(shown) / double(pixels.size());
}

class Pictures : public ::testing::Test {
 protected:
  Pictures() { InitPictures(); }
  const QStringList all_ = ToolPictures() + ThemePictures() + IconEditorPictures();
};

TEST_F(Pictures, EachIsDrawnAtItsSizeAndTwiceAsLarge) {
  for (const QString& picture : all_)
    for (const int size : {16, 32}) {
      const QImage drawn = Drawn(picture, size);
      EXPECT_EQ(QSize(size, size), drawn.size()) << picture.toStdString();
      EXPECT_LE(size * size / 5, OwnPixels(drawn).size()) << picture.toStdString();
    }
}

TEST_F(Pictures, EachShowsOnLightAndOnDarkGround) {
  for (const QString& picture : all_)
    for (const QRgb ground : {qRgb(0xff, 0xff, 0xff), qRgb(0x2b, 0x2b, 0x2b)})
      EXPECT_LE(0.2, ShareThatShows(Drawn(picture, 16), ground)) << picture.toStdString() << " on " << ground;
}

TEST_F(Pictures, NoTwoLookAlike) {
  for (qsizetype i = 0; i < all_.size(); ++i)
    for (qsizetype j = i + 1; j < all_.size(); ++j) {
      const QImage one = Drawn(all_[i], 16);
      const QImage other = Drawn(all_[j], 16);
      int differing = 0;
      for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) {
          const QRgb a = one.pixel(x, y);
          const QRgb b = other.pixel(x, y);
          if (std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b)) > 60 ||
              std::abs(qAlpha(a) - qAlpha(b)) > 60)
            ++differing;
        }
      EXPECT_LE(20, differing) << all_[i].toStdString() << " and " << all_[j].toStdString();
    }
}

}  // namespace
