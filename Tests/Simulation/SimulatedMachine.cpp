#include "Tests/Simulation/SimulatedMachine.h"

#include <utility>

#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"
#include "Support/FatalError.h"

namespace lanternfold::simulation {
namespace {

constexpr std::uint64_t nanosecondsPerSecond = 1'000'000'000;
constexpr std::uint64_t bytesPerPacket = 712;
constexpr std::uint64_t packetsPerError = 4099;

/// Adds what a rate brings in `span`; the rest below one byte stays for the next time.
std::uint64_t bytesIn(std::chrono::nanoseconds span, std::uint64_t rate, std::uint64_t& rest) {
  const auto whole = static_cast<std::uint64_t>(span.count()) / nanosecondsPerSecond;
  const auto part = static_cast<std::uint64_t>(span.count()) % nanosecondsPerSecond;
  const std::uint64_t fraction = rate * part + rest;
  rest = fraction % nanosecondsPerSecond;
  return rate * whole + fraction / nanosecondsPerSecond;
}

ConnectionMetrics cutTo32Bits(const ConnectionMetrics& metrics) {
  ConnectionMetrics cut = metrics;
  for (const auto& field : connectionMetricsFields) {
    if (field.member != &ConnectionMetrics::mtu) cut.*field.member &= 0xFFFFFFFFU;
  }
  return cut;
}

}  // namespace

SimulatedMachine::SimulatedMachine(const SimulatedClock& clock, BootDate bootDate)
    : clock_(clock), bootDate_(bootDate) {
  boot();
}

void SimulatedMachine::boot() {
  bootedAt_ = clock_.steadyNow();
  bootedAtWall_ = clock_.now();
  for (auto& [name, link] : links_) {
    count(link);
    const std::uint64_t mtu = link.truth.counters.mtu;
    link = {
        .truth = {.incarnation = ++lastIncarnation_, .counters = ConnectionMetrics::initial(mtu)},
        .rate = link.rate,
        .countedUntil = clock_.steadyNow()};
  }
}

std::optional<std::chrono::system_clock::time_point> SimulatedMachine::lastBootDate() const {
  if (bootDate_ == BootDate::remembered) return bootedAtWall_;
  return clock_.now() - std::chrono::duration_cast<std::chrono::system_clock::duration>(
                            clock_.steadyNow() - bootedAt_);
}

void SimulatedMachine::add(const std::string& name, const ConnectionMetrics& counters) {
  if (has(name)) fatalError("a simulated machine has that interface already");
  links_[name] = {.truth = {.incarnation = ++lastIncarnation_, .counters = counters},
                  .countedUntil = clock_.steadyNow()};
}

void SimulatedMachine::remove(const std::string& name) { links_.erase(name); }

void SimulatedMachine::setRate(const std::string& name, TrafficRate rate) {
  countedLink(name).rate = rate;
}

void SimulatedMachine::setMtu(const std::string& name, std::uint64_t mtu) {
  countedLink(name).truth.counters.mtu = mtu;
}

void SimulatedMachine::jump(const std::string& name, std::uint64_t ConnectionMetrics::* counter,
                            std::uint64_t amount) {
  countedLink(name).truth.counters.*counter += amount;
}

std::shared_ptr<const MachineReading> SimulatedMachine::read(bool is32bitCapped) {
  auto reading = std::make_shared<MachineReading>();
  std::vector<ConnectionMetricsMap::Entry> entries;
  for (auto& [name, link] : links_) {
    count(link);
    reading->truth.emplace_hint(reading->truth.end(), name, link.truth);
    const ConnectionMetrics& counters = link.truth.counters;
    entries.push_back({name, is32bitCapped ? cutTo32Bits(counters) : counters});
  }
  reading->given = ConnectionMetricsMap::of(std::move(entries));
  return reading;
}

SimulatedMachine::Link& SimulatedMachine::countedLink(const std::string& name) {
  const auto found = links_.find(name);
  if (found == links_.end()) fatalError("a simulated machine has no such interface");
  count(found->second);
  return found->second;
}

void SimulatedMachine::count(Link& link) const {
  const auto span = clock_.steadyNow() - link.countedUntil;
  link.countedUntil = clock_.steadyNow();
  ConnectionMetrics& counters = link.truth.counters;
  const std::uint64_t sent = bytesIn(span, link.rate.sent, link.sentRest);
  const std::uint64_t received = bytesIn(span, link.rate.received, link.receivedRest);
  counters.sentBytes += sent;
  counters.recvBytes += received;
  counters.sentPacket += sent / bytesPerPacket;
  counters.recvPacket += received / bytesPerPacket;
  counters.sentError += sent / bytesPerPacket / packetsPerError;
  counters.recvError += received / bytesPerPacket / packetsPerError;
  counters.collisions += (sent + received) / bytesPerPacket / packetsPerError;
}

}  // namespace lanternfold::simulation
