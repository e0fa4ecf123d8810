// How long a stroke in the icon editor takes from the button's release to the repainted work area, in a window on the
// display. There is no peer, but one frame of the screen.
#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <cstdio>
#include <vector>

#include "Figure.h"
#include "Swatch.h"
#include "TestPlatform.h"
#include "Waiting.h"
#include "fIconMaker.h"

namespace {

constexpr int kStrokes = 300, kWarmUp = 10;
constexpr double kFrameMs = 16;

class PaintWatch : public QObject {
 public:
  bool painted = false;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) painted = true;
    return false;
  }
};

void Send(QWidget* widget, QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held) {
  QMouseEvent event(type, at, widget->mapToGlobal(at), button, held, Qt::NoModifier);
  QApplication::sendEvent(widget, &event);
}

double Stroke(fIconMaker& editor, PaintWatch& watch, int number) {
  Surface* const area = editor.Surfaces.PicBig;
  editor.bOps[std::size_t(number % 5)]->click();
  editor.OpW[std::size_t(number % 4)]->click();
  emit editor.PCols[std::size_t(number % 16)]->pressed();
  const QPointF from(double(number * 37 % 224), double(number * 53 % 224)),
      to(double(number * 71 % 224), double(number * 29 % 224));
  Send(area, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
  for (int step = 1; step <= 5; ++step)
    Send(area, QEvent::MouseMove, from + (to - from) * step / 5, Qt::NoButton, Qt::LeftButton);
  Pause(20);
  watch.painted = false;
  QElapsedTimer clock;
  clock.start();
  Send(area, QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
  while (!watch.painted) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  return double(clock.nsecsElapsed()) / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  TestProgram test;
  fIconMaker editor(test.program);
  PaintWatch watch;
  editor.Surfaces.PicBig->installEventFilter(&watch);
  editor.show();
  Pause(500);
  if (!watch.painted) {
    std::fprintf(stderr, "the icon editor isn't seen\n");
    return 1;
  }
  Figure stroke("stroke");
  std::vector<double> times;
  for (int number = 0; number < kWarmUp + kStrokes; ++number) {
    const double ms = Stroke(editor, watch, number);
    if (number < kWarmUp) continue;
    times.push_back(ms);
    stroke.Add(ms, kFrameMs);
  }
  const double p99 = Quantile(times, 0.99);
  stroke.Note("p99", p99);
  stroke.Print();
  return p99 <= kFrameMs ? 0 : 1;
}
