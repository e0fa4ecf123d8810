// As long as it lives the test is a user whom permissions bind, also where root runs it, whom they don't. Only files
// made meanwhile are that user's own.
#pragma once

#include <unistd.h>

class OrdinaryUser {
 public:
  OrdinaryUser() : wasRoot_(::geteuid() == 0), bound_(!wasRoot_ || ::seteuid(kNobody) == 0) {}
  ~OrdinaryUser() {
    if (wasRoot_ && bound_ && ::seteuid(0) != 0) ::_exit(1);
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  // False where root can't become anybody else.
  bool IsBound() const { return bound_; }

 private:
  static constexpr uid_t kNobody = 65534;
  const bool wasRoot_;
  const bool bound_;
};
