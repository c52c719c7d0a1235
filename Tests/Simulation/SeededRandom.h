// The one source of chance of a simulated world: the same seed gives the same world.
//
// The draws are spelled out here, because those of the standard library differ between its makers.
#pragma once

#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>

namespace lanternfold::simulation {

class SeededRandom {
 public:
  explicit SeededRandom(std::uint64_t seed) : engine_(seed) {}

  [[nodiscard]] std::uint64_t bits() { return engine_(); }
  /// 0 to `bound` - 1; `bound` is at least 1.
  [[nodiscard]] std::uint64_t below(std::uint64_t bound) { return engine_() % bound; }
  /// Both ends included.
  [[nodiscard]] std::uint64_t between(std::uint64_t least, std::uint64_t most) {
    return least + below(most - least + 1);
  }
  [[nodiscard]] std::chrono::nanoseconds between(std::chrono::nanoseconds least,
                                                 std::chrono::nanoseconds most) {
    return least + std::chrono::nanoseconds(static_cast<std::int64_t>(
                       below(static_cast<std::uint64_t>((most - least).count()) + 1)));
  }
  /// At least 0, less than 1.
  [[nodiscard]] double unit() { return static_cast<double>(engine_() >> 11) * 0x1.0p-53; }
  [[nodiscard]] bool chance(double probability) { return unit() < probability; }
  /// The time to the next of events that come by chance, so often on average.
  [[nodiscard]] std::chrono::nanoseconds waiting(std::chrono::nanoseconds mean) {
    const double factor = -std::log(1.0 - unit());
    return std::chrono::nanoseconds(
        1 + static_cast<std::int64_t>(static_cast<double>(mean.count()) * factor));
  }
  template <typename List>
  [[nodiscard]] const auto& oneOf(const List& list) {
    return *(std::begin(list) + static_cast<std::ptrdiff_t>(below(std::size(list))));
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace lanternfold::simulation
