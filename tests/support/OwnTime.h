// The processor's time that this process has taken since an object was made, all its threads added up. It stands still
// while the machine is at other work, so that a bound on it holds on a busy machine as well.
#pragma once

#include <ctime>

class OwnTime {
 public:
  double Seconds() const { return double(std::clock() - begin_) / CLOCKS_PER_SEC; }

 private:
  const std::clock_t begin_ = std::clock();
};
