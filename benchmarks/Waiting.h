// Waiting for answers with a bound.
#pragma once

#include <QEventLoop>
#include <QObject>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

// Runs until `done`; the program ends where that never comes, as no figure would be honest.
class Wait {
 public:
  void Done() { loop_.quit(); }
  void Run(const char* what) {
    constexpr int patienceMs = 900000;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &loop_, [what] {
      std::fprintf(stderr, "never came: %s\n", what);
      std::exit(1);
    });
    limit.start(patienceMs);
    loop_.exec();
  }

 private:
  QEventLoop loop_;
};

inline void Pause(int ms) {
  QEventLoop loop;
  QTimer::singleShot(ms, &loop, &QEventLoop::quit);
  loop.exec();
}
