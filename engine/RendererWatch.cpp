#include "RendererWatch.h"

#include <utility>

namespace {

constexpr int deathsInARow = 5;
constexpr qint64 rowOfDeathsMs = 10000;
constexpr int leisureMs = 5000;  // less than the row's time, so that the row goes on

}  // namespace

RendererWatch::RendererWatch(std::function<void()> recover) {
  recovery_.setSingleShot(true);
  QObject::connect(&recovery_, &QTimer::timeout, &recovery_, std::move(recover));
}

bool RendererWatch::Died() {
  if (!sinceDeath_.isValid() || sinceDeath_.elapsed() > rowOfDeathsMs) deaths_ = 0;
  sinceDeath_.restart();
  return ++deaths_ > deathsInARow;
}

void RendererWatch::ScheduleRecovery() {
  recovery_.start(deaths_ > deathsInARow ? leisureMs : 0);
}
