#include "Tests/Simulation/ExpectedMetrics.h"

#include <algorithm>

#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"

namespace lanternfold::simulation {
namespace {

constexpr std::uint64_t turn = std::uint64_t{1} << 32;

bool isCounter(const ConnectionMetricsField& field) {
  return field.member != &ConnectionMetrics::mtu;
}

/// The way from one 32-bit figure to the next on a circle, short of one when it passes the top.
std::uint64_t gained(std::uint64_t old, std::uint64_t now) {
  const std::uint64_t way = (now + turn - old) % turn;
  return now < old ? way - 1 : way;
}

}  // namespace

bool holdTheSame(const RememberedInterfaces& left, const RememberedInterfaces& right) {
  return std::ranges::equal(left, right, [](const auto& one, const auto& other) {
    return one.first == other.first && one.second.holdsTheSame(other.second);
  });
}

RememberedInterface expectedInterface(const RememberedInterface* previous,
                                      const RememberedInterface* previousAdjusted,
                                      const ConnectionMetrics& now, const TrueCounters& truth,
                                      Counting counting) {
  RememberedInterface expected{.original = now, .adjusted = now, .truth = truth};
  if (counting == Counting::uncapped) return expected;
  for (const auto& field : connectionMetricsFields) {
    if (!isCounter(field)) continue;
    std::uint64_t& value = expected.adjusted.*field.member;
    if (counting == Counting::fromOwnBeginning) {
      value = 0;
    } else {
      const std::uint64_t old = previous ? previous->original.*field.member : 0;
      const std::uint64_t base = previousAdjusted ? previousAdjusted->adjusted.*field.member : 0;
      value = base + gained(old, now.*field.member);
    }
  }
  return expected;
}

RememberedInterfaces expectedAfter(const RememberedInterfaces& before,
                                   const MachineReading& reading, Counting counting) {
  RememberedInterfaces after = before;
  for (std::size_t position = 0; position < reading.given.size(); ++position) {
    const std::string& name = reading.given.name(position);
    const auto found = before.find(name);
    const RememberedInterface* previous = found == before.end() ? nullptr : &found->second;
    after.insert_or_assign(name,
                           expectedInterface(previous, previous, reading.given.value(position),
                                             reading.truth.find(name)->second, counting));
  }
  return after;
}

int wrapsBetween(const ConnectionMetrics& old, const ConnectionMetrics& now) {
  return static_cast<int>(std::ranges::count_if(connectionMetricsFields, [&](const auto& field) {
    return isCounter(field) && now.*field.member < old.*field.member;
  }));
}

std::optional<std::string> trafficLost(const RememberedInterface& before,
                                       const RememberedInterface& after) {
  if (!before.truth || !after.truth || before.truth->incarnation != after.truth->incarnation) {
    return std::nullopt;
  }
  for (const auto& field : connectionMetricsFields) {
    if (!isCounter(field)) continue;
    const std::uint64_t truly =
        after.truth->counters.*field.member - before.truth->counters.*field.member;
    if (truly >= turn) continue;
    const bool wrapped = after.original.*field.member < before.original.*field.member;
    const std::uint64_t counted = after.adjusted.*field.member - before.adjusted.*field.member;
    if (counted + (wrapped ? 1 : 0) != truly) {
      return std::string(field.key) + " gained " + std::to_string(counted) + " where " +
             std::to_string(truly) + " went through";
    }
  }
  return std::nullopt;
}

bool turnedOverUnseen(const TrueCounters& before, const TrueCounters& after) {
  return before.incarnation == after.incarnation &&
         std::ranges::any_of(connectionMetricsFields, [&](const auto& field) {
           return isCounter(field) &&
                  after.counters.*field.member - before.counters.*field.member >= turn;
         });
}

std::optional<std::string> counterThatWentBack(const ConnectionMetrics& before,
                                               const ConnectionMetrics& after) {
  for (const auto& field : connectionMetricsFields) {
    if (isCounter(field) && after.*field.member < before.*field.member) {
      return std::string(field.key) + " from " + std::to_string(before.*field.member) + " to " +
             std::to_string(after.*field.member);
    }
  }
  return std::nullopt;
}

}  // namespace lanternfold::simulation
