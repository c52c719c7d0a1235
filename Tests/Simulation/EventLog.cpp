#include "Tests/Simulation/EventLog.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace lanternfold::simulation {
namespace {

constexpr std::size_t eventsKept = 40;

bool isRoutine(Happening happening) {
  constexpr std::array routine{
      Happening::sampled,      Happening::lockTaken,      Happening::saved,
      Happening::writeRefused, Happening::sampleFailed,   Happening::counterWrapped,
      Happening::classChanged, Happening::trafficChanged, Happening::readByUser,
      Happening::saveFailed,   Happening::lockContended,  Happening::lockTakenOverExpired};
  return std::ranges::find(routine, happening) != routine.end();
}

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
  std::snprintf(text.data(), text.size(), "%dd %02d:%02d:%02d.%06d", static_cast<int>(days.count()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()),
                static_cast<int>(time.subseconds().count()));
  return text.data();
}

EventLog::EventLog(const SimulatedClock& clock) : clock_(clock), begin_(clock.steadyNow()) {}

void EventLog::add(Happening happening, std::uint32_t actor, std::int64_t amount,
                   std::string_view detail) {
  counts_.add(happening);
  const Event event{.steady = clock_.steadyNow(),
                    .wall = clock_.now(),
                    .happening = happening,
                    .actor = actor,
                    .amount = amount,
                    .detail = std::string(detail),
                    .number = eventCount_++};
  if (happening != last_ || actor != lastActor_ || amount != 0) keep(all_, event);
  last_ = happening;
  lastActor_ = actor;
  if (!isRoutine(happening)) keep(notable_, event);

  mix(static_cast<std::uint64_t>(event.steady.time_since_epoch().count()));
  mix(static_cast<std::uint64_t>(event.wall.time_since_epoch().count()));
  mix(static_cast<std::uint64_t>(happening) << 32 | actor);
  mix(static_cast<std::uint64_t>(amount));
  for (const char c : detail) mix(static_cast<std::uint8_t>(c));
}

std::string EventLog::lastEvents() const {
  const auto inOrder = [](const Ring& ring) {
    std::vector<Event> events = ring.events;
    std::ranges::sort(events, {}, &Event::number);
    return events;
  };
  std::vector<Event> events = inOrder(notable_);
  const std::vector<Event> latest = inOrder(all_);
  if (!latest.empty()) {
    std::erase_if(events,
                  [&](const Event& event) { return event.number >= latest.front().number; });
  }
  std::string text;
  for (const Event& event : events) text += line(event);
  text += "  ... and, with what happens at every sample:\n";
  for (const Event& event : latest) text += line(event);
  return text;
}

void EventLog::keep(Ring& ring, const Event& event) {
  if (ring.events.size() < eventsKept) {
    ring.events.push_back(event);
  } else {
    ring.events[ring.count % eventsKept] = event;
  }
  ++ring.count;
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
