#include "Tests/Simulation/EventLog.h"

#include <array>
#include <cstdio>

namespace lanternfold::simulation {
namespace {

constexpr std::size_t eventsKept = 80;

std::string wallText(std::chrono::system_clock::time_point moment) {
  const auto day = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(
      std::chrono::duration_cast<std::chrono::microseconds>(moment - day));
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d.%06d",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
                static_cast<int>(time.subseconds().count()));
  return text.data();
}

}  // namespace

std::string spanText(std::chrono::nanoseconds span) {
  const auto days = std::chrono::floor<std::chrono::days>(span);
  const std::chrono::hh_mm_ss time(
      std::chrono::duration_cast<std::chrono::microseconds>(span - days));
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%dd %02d:%02d:%02d.%06d",
                static_cast<int>(days.count()), static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
                static_cast<int>(time.subseconds().count()));
  return text.data();
}

EventLog::EventLog(const SimulatedClock& clock) : clock_(clock), begin_(clock.steadyNow()) {
  ring_.resize(eventsKept);
}

void EventLog::add(Happening happening, std::uint32_t actor, std::int64_t amount,
                   std::string_view detail) {
  counts_.add(happening);
  Event& event = ring_[next_++ % eventsKept];
  event.steady = clock_.steadyNow();
  event.wall = clock_.now();
  event.happening = happening;
  event.actor = actor;
  event.amount = amount;
  event.detail.assign(detail);

  mix(static_cast<std::uint64_t>(event.steady.time_since_epoch().count()));
  mix(static_cast<std::uint64_t>(event.wall.time_since_epoch().count()));
  mix(static_cast<std::uint64_t>(happening) << 32 | actor);
  mix(static_cast<std::uint64_t>(amount));
  for (const char c : detail) mix(static_cast<std::uint8_t>(c));
}

std::string EventLog::lastEvents() const {
  std::string text;
  const std::size_t first = next_ > eventsKept ? next_ - eventsKept : 0;
  for (std::size_t index = first; index < next_; ++index) text += line(ring_[index % eventsKept]);
  return text;
}

void EventLog::mix(std::uint64_t value) {
  fingerprint_ = (fingerprint_ ^ value) * 1099511628211ULL;
  fingerprint_ ^= fingerprint_ >> 29;
}

std::string EventLog::line(const Event& event) const {
  std::string text = "  " + spanText(event.steady - begin_) + "  " + wallText(event.wall) + "  " +
                     (event.actor == 0 ? "world" : "program " + std::to_string(event.actor)) +
                     ": " + std::string(describe(event.happening));
  if (event.amount != 0) text += " " + std::to_string(event.amount);
  if (!event.detail.empty()) text += " (" + event.detail + ")";
  return text + "\n";
}

}  // namespace lanternfold::simulation
