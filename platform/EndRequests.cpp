#include "EndRequests.h"

#include <QSocketNotifier>

#ifdef Q_OS_UNIX

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>

namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

// What a handler may do is little more than to write: the loop hears it at the other end.
int ends[2] = {-1, -1};

void Tell(int) {
  const int before = errno;
  const char one = 1;
  (void)!::write(ends[1], &one, sizeof one);
  errno = before;
}

bool IsIgnored(int number) {
  struct sigaction now{};
  return ::sigaction(number, nullptr, &now) == 0 && now.sa_handler == SIG_IGN;
}

void Handle(int number, void (*handler)(int)) {
  struct sigaction action{};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART | int(SA_RESETHAND);
  ::sigemptyset(&action.sa_mask);
  ::sigaction(number, &action, nullptr);
}

}  // namespace

EndRequests::EndRequests() {
  if (::pipe(ends) != 0) return;
  for (const int end : ends) {
    ::fcntl(end, F_SETFD, FD_CLOEXEC);
    ::fcntl(end, F_SETFL, O_NONBLOCK);
  }
  notifier_ = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
  connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
    char read[16];
    while (::read(ends[0], read, sizeof read) > 0) {
    }
    emit Asked();
  });
  for (const int number : kSignals)
    if (!IsIgnored(number)) Handle(number, Tell);
}

EndRequests::~EndRequests() {
  if (!notifier_) return;
  for (const int number : kSignals)
    if (!IsIgnored(number)) Handle(number, SIG_DFL);
  notifier_.reset();
  for (int& end : ends) {
    ::close(end);
    end = -1;
  }
}

#else

EndRequests::EndRequests() = default;
EndRequests::~EndRequests() = default;

#endif
