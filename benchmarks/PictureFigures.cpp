// What the picture editor does to a photo of 12 megapixels: jpeg, a BMP file made into a JPEG at quality 75, against
// cjpeg on the same file; resize, the command "Resize" to half, against ImageMagick's convert with its own filter.
#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <cmath>
#include <functional>

#include "ModPics.h"
#include "TestPlatform.h"
#include "Waiting.h"

namespace {

constexpr QSize kPhoto = {4000, 3000};
constexpr int kTurns = 9;

// Soft light, edges and the grain of a camera, so that a JPEG of it is as large as one of a photo.
QImage Photo() {
  QImage image(kPhoto, QImage::Format_RGB32);
  QRandomGenerator grain(1);
  for (int y = 0; y < image.height(); ++y) {
    auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      const double light = 120 + 60 * std::sin(x / 310.0 + std::cos(y / 170.0)) + 30 * std::sin(x / 17.0 + y / 23.0);
      const int edge = (x / 400 + y / 300) % 3 * 15, noise = int(grain.generate() % 13) - 6;
      const auto part = [&](double shift) { return std::clamp(int(light + shift) + edge + noise, 0, 255); };
      line[x] = qRgb(part(20), part(0), part(-30));
    }
  }
  return image;
}

double Milliseconds(const std::function<void()>& work) {
  QElapsedTimer clock;
  clock.start();
  work();
  return double(clock.nsecsElapsed()) / 1e6;
}

void RunPeer(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  if (process.waitForFinished(300000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
    return;
  std::fprintf(stderr, "%s: %s\n", qPrintable(program), process.readAllStandardError().constData());
  std::exit(1);
}

// The product of a turn has to be there, else the time is that of nothing.
void Expect(bool good, const char* what) {
  if (good) return;
  std::fprintf(stderr, "failed: %s\n", what);
  std::exit(1);
}

bool Print(const char* name, const std::vector<double>& own, const std::vector<double>& others, double bound) {
  const double ours = Quantile(own, 0.5), peer = Quantile(others, 0.5);
  std::printf("BENCH name=%s ours=%.1f peer=%.1f ratio=%.3f unit=ms\n", name, ours, peer, ours / peer);
  return ours / peer <= bound;
}

class Editor {
 public:
  Editor() {
    Expect(Photo().save(bmp_), "the photo's file");
    viewer_.Pic->SetAutoSize(true);
    pics_.Screen = [] { return QRect(0, 0, 1280, 1024); };
  }

  bool Jpeg() {
    const QString jpeg = test_.Path(QStringLiteral("ours.jpg")), peerJpeg = test_.Path(QStringLiteral("peer.jpg"));
    std::vector<double> own, peer, whole;
    for (int turn = 0; turn < kTurns; ++turn) {
      QFile::remove(jpeg);
      own.push_back(Milliseconds([&] { pics_.NView.MakeJpeg(bmp_, jpeg, 75); }));
      Expect(QFileInfo(jpeg).size() > 0, "a JPEG file");
      peer.push_back(Milliseconds([&] {
        RunPeer(QStringLiteral("cjpeg"),
                {QStringLiteral("-quality"), QStringLiteral("75"), QStringLiteral("-outfile"), peerJpeg, bmp_});
      }));
      Open();
      whole.push_back(Milliseconds([&] { Expect(pics_.NView.CompressPicture(75), "a compressed picture"); }));
    }
    std::fprintf(stderr, "the whole command, from picture to picture: %.1f ms; files of %lld and %lld bytes\n",
                 Quantile(whole, 0.5), QFileInfo(jpeg).size(), QFileInfo(peerJpeg).size());
    return Print("jpeg", own, peer, 1.2);
  }

  bool Resize() {
    std::vector<double> own, peer;
    for (int turn = 0; turn < kTurns; ++turn) {
      Open();
      own.push_back(Milliseconds([&] { pics_.ResizePicture(50); }));
      Expect(viewer_.Pic->Picture().size() == kPhoto / 2, "a picture of half the size");
      peer.push_back(Milliseconds([&] {
        RunPeer(QStringLiteral("convert"),
                {bmp_, QStringLiteral("-resize"), QStringLiteral("50%"), test_.Path(QStringLiteral("peer.bmp"))});
      }));
    }
    return Print("resize", own, peer, 1.0);
  }

 private:
  void Open() { Expect(viewer_.Pic->LoadPicture(bmp_), "the photo is opened"); }

  TestProgram test_;
  fBitmap viewer_;
  ModPics pics_{test_.program, viewer_};
  const QString bmp_ = test_.Path(QStringLiteral("photo.bmp"));
};

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  Editor editor;
  const bool jpeg = editor.Jpeg();
  const bool resize = editor.Resize();
  return jpeg && resize ? 0 : 1;
}
