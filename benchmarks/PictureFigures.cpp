// What the picture editor does to a photo of 12 megapixels: jpeg, a BMP file made into a JPEG at quality 75, against
// cjpeg on the same file; resize, the command "Resize" to half, against ImageMagick's convert with its own filter. And
// to one of 108 megapixels: photo_108, it is opened, resized to a quarter and saved, each in a process of its own,
// against convert from file to file, with the time and the most memory that either takes.
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImageReader>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <cmath>
#include <functional>

#include "Figure.h"
#include "ModPics.h"
#include "TestPlatform.h"

namespace {

constexpr QSize kPhoto = {4000, 3000};
constexpr QSize kLargePhoto = {12000, 9000};
constexpr int kTurns = 9, kLargeTurns = 5;
constexpr char kEditLarge[] = "--edit-large";

// Soft light, edges and the grain of a camera, so that a JPEG of it is as large as one of a photo.
QImage Photo(QSize size) {
  QImage image(size, QImage::Format_RGB32);
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

// A whole process: its time, and the most memory that it had.
struct Run {
  double milliseconds;
  double megabytes;
};
Run RunWhole(const QByteArrayList& command) {
  std::vector<char*> arguments;
  for (const QByteArray& part : command) arguments.push_back(const_cast<char*>(part.constData()));
  arguments.push_back(nullptr);
  rusage used{};
  const double milliseconds = Milliseconds([&] {
    pid_t child = 0;
    int status = 0;
    Expect(posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) == 0, arguments[0]);
    Expect(wait4(child, &status, 0, &used) == child && status == 0, arguments[0]);
  });
  return {milliseconds, double(used.ru_maxrss) / 1024};
}

class Editor {
 public:
  Editor() {
    Expect(Photo(kPhoto).save(bmp_), "the photo's file");
    viewer_.Pic->SetAutoSize(true);
    pics_.Screen = [] { return QRect(0, 0, 1280, 1024); };
  }

  bool Jpeg() {
    const QString jpeg = test_.Path(QStringLiteral("ours.jpg")), peerJpeg = test_.Path(QStringLiteral("peer.jpg"));
    Figure figure("jpeg");
    std::vector<double> whole;
    for (int turn = 0; turn < kTurns; ++turn) {
      QFile::remove(jpeg);
      const double own = Milliseconds([&] { pics_.NView.MakeJpeg(bmp_, jpeg, 75); });
      Expect(QFileInfo(jpeg).size() > 0, "a JPEG file");
      figure.Add(own, Milliseconds([&] {
                   RunPeer(QStringLiteral("cjpeg"), {QStringLiteral("-quality"), QStringLiteral("75"),
                                                     QStringLiteral("-outfile"), peerJpeg, bmp_});
                 }));
      Open();
      whole.push_back(Milliseconds([&] { Expect(pics_.NView.CompressPicture(75), "a compressed picture"); }));
    }
    std::fprintf(stderr, "the whole command, from picture to picture: %.1f ms; files of %lld and %lld bytes\n",
                 Median(whole), QFileInfo(jpeg).size(), QFileInfo(peerJpeg).size());
    return figure.Print(1.1);
  }

  bool Resize() {
    Figure figure("resize");
    for (int turn = 0; turn < kTurns; ++turn) {
      Open();
      const double own = Milliseconds([&] { pics_.ResizePicture(50); });
      Expect(viewer_.Pic->Picture().size() == kPhoto / 2, "a picture of half the size");
      figure.Add(own, Milliseconds([&] {
                   RunPeer(QStringLiteral("convert"), {bmp_, QStringLiteral("-resize"), QStringLiteral("50%"),
                                                       test_.Path(QStringLiteral("peer.bmp"))});
                 }));
    }
    return figure.Print(0.16);
  }

 private:
  void Open() { Expect(viewer_.Pic->LoadPicture(bmp_), "the photo is opened"); }

  TestProgram test_;
  fBitmap viewer_;
  ModPics pics_{test_.program, viewer_};
  const QString bmp_ = test_.Path(QStringLiteral("photo.bmp"));
};

// What a person does with a photo, in a process of its own.
int EditLarge(const char* from, const char* to) {
  TestProgram test;
  fBitmap viewer;
  ModPics pics(test.program, viewer);
  pics.Screen = [] { return QRect(0, 0, 1280, 1024); };
  const bool good = pics.OpenPictureFile(QString::fromLocal8Bit(from)) && pics.ResizePicture(25) &&
                    pics.NView.SavePictureAsJpeg(QString::fromLocal8Bit(to));
  return good ? 0 : 1;
}

// Debian lets convert have 256 MB of memory; the rest of so large a picture it keeps on the disk, where it takes long.
// Here it may have as much as it likes, which makes it fast.
bool LargePhoto(const QByteArray& program) {
  QTemporaryDir folder;
  const auto path = [&](const char* name) { return folder.filePath(QString::fromLatin1(name)).toLocal8Bit(); };
  const QByteArray photo = path("photo.jpg"), ours = path("ours.jpg"), theirs = path("theirs.jpg");
  Expect(PutFile(path("policy.xml"),
                 "<policymap><policy domain=\"resource\" name=\"memory\" value=\"8GiB\"/>"
                 "<policy domain=\"resource\" name=\"area\" value=\"1GP\"/></policymap>"),
         "the peer's policy");
  qputenv("MAGICK_CONFIGURE_PATH", folder.path().toLocal8Bit());
  Expect(Photo(kLargePhoto).save(QString::fromLocal8Bit(photo), "jpg", 90), "the large photo's file");
  Figure time("photo_108"), memory("photo_108_memory", "MB");
  for (int turn = 0; turn < kLargeTurns; ++turn) {
    const Run edited = RunWhole({program, kEditLarge, photo, ours});
    const Run converted = RunWhole({"convert", photo, "-resize", "25%", theirs});
    for (const QByteArray& made : {ours, theirs})
      Expect(QImageReader(QString::fromLocal8Bit(made)).size() == kLargePhoto / 4, "a photo of a quarter");
    time.Add(edited.milliseconds, converted.milliseconds);
    memory.Add(edited.megabytes, converted.megabytes);
  }
  qunsetenv("MAGICK_CONFIGURE_PATH");
  const bool fast = time.Print(0.7);
  return memory.Print(1.0) && fast;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  if (argc == 4 && QByteArray(argv[1]) == kEditLarge) return EditLarge(argv[2], argv[3]);
  bool good = LargePhoto(argv[0]);
  Editor editor;
  good = editor.Jpeg() && good;
  good = editor.Resize() && good;
  return good ? 0 : 1;
}
