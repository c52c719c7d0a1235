// The production side of `Clock`: the kernel's clocks.
#pragma once

#include <thread>

#include "Platform/Clock.h"

namespace lanternfold {

class SystemClock final : public Clock {
 public:
  [[nodiscard]] std::chrono::system_clock::time_point now() const override {
    return std::chrono::system_clock::now();
  }
  [[nodiscard]] std::chrono::steady_clock::time_point steadyNow() const override {
    return std::chrono::steady_clock::now();
  }
  void sleep(std::chrono::nanoseconds duration) const override {
    std::this_thread::sleep_for(duration);
  }
};

}  // namespace lanternfold
