#include "Tests/Simulation/BandwidthClassRule.h"

#include <algorithm>
#include <cmath>

namespace lanternfold::simulation {
namespace {

BandwidthClassValue classOfDirection(std::uint64_t old, std::uint64_t now, double seconds) {
  if (now < old || !(seconds > 0)) return 0;
  const double bytesPerSecond = std::floor(static_cast<double>(now - old) / seconds);
  if (bytesPerSecond < 500'000) return 0;
  if (bytesPerSecond < 6'250'000) return 10;
  return bytesPerSecond < 31'250'000 ? 20 : 30;
}

}  // namespace

BandwidthClassValue expectedClass(const ConnectionMetrics& old, const ConnectionMetrics& now,
                                  std::chrono::duration<double> interval) {
  return std::max(classOfDirection(old.sentBytes, now.sentBytes, interval.count()),
                  classOfDirection(old.recvBytes, now.recvBytes, interval.count()));
}

BandwidthClassValue expectedClass(const RememberedInterfaces& before,
                                  const RememberedInterfaces& after, const MachineReading& reading,
                                  std::chrono::duration<double> interval) {
  BandwidthClassValue highest = 0;
  for (const auto& [name, truth] : reading.truth) {
    const auto old = before.find(name);
    const auto now = after.find(name);
    if (old == before.end() || now == after.end()) continue;
    highest =
        std::max(highest, expectedClass(old->second.adjusted, now->second.adjusted, interval));
  }
  return highest;
}

std::chrono::seconds expectedInterval(BandwidthClassValue value) {
  switch (value) {
    case 10:
      return std::chrono::seconds(60);
    case 20:
      return std::chrono::seconds(30);
    case 30:
      return std::chrono::seconds(15);
    default:
      return std::chrono::seconds(120);
  }
}

}  // namespace lanternfold::simulation
