#include "Tests/Simulation/TrafficScript.h"

#include <algorithm>
#include <array>

#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"
#include "Tests/Simulation/Repetition.h"

namespace lanternfold::simulation {
namespace {

constexpr std::uint64_t turn32 = std::uint64_t{1} << 32;
// A name may hold anything but a slash and blanks.
constexpr std::array<const char*, 5> names{"en0", "en1", "wlan0",
                                           "k\xC3\xA4"
                                           "bel0",
                                           "u\"s\\b0"};

}  // namespace

TrafficScript::TrafficScript(Installation& installation, const Profile& profile)
    : installation_(installation), run_(installation.run), profile_(profile) {
  for (std::uint64_t index = 0; index < profile.interfaces; ++index) {
    names_.emplace_back(names[index]);
    addInterface(names_.back());
  }
  using std::chrono::hours;
  using std::chrono::minutes;
  repeat(run_, minutes(100), [this] { changeTraffic(); });
  repeat(run_, hours(30), [this] { jumpCounter(); });
  repeat(run_, hours(40), [this] { changeMtu(); });
  if (profile.changesInterfaces) repeat(run_, hours(16), [this] { changeInterfaces(); });
}

void TrafficScript::addInterface(const std::string& name) {
  ConnectionMetrics counters = ConnectionMetrics::initial(1500);
  // The machine has been up for a while.
  counters.sentBytes = run_.random.below(3 * turn32);
  counters.recvBytes = run_.random.below(3 * turn32);
  counters.sentPacket = counters.sentBytes / 700;
  counters.recvPacket = run_.random.below(turn32);
  counters.recvError = run_.random.chance(0.2) ? turn32 - 1 : 0;
  installation_.machine.add(name, counters);
  run_.log.add(Happening::interfaceCame, 0, 0, name);
}

void TrafficScript::changeTraffic() {
  const std::string* name = drawPresent();
  if (!name) return;
  const TrafficRate rate{.sent = drawRate(), .received = drawRate()};
  setRate(*name, rate);
  // Busy times pass: a machine that is always busy shows nothing new.
  run_.scheduler.after(run_.random.between(std::chrono::seconds(10), std::chrono::minutes(40)),
                       [this, name] { setRate(*name, {.sent = run_.random.below(500'000)}); });
}

void TrafficScript::setRate(const std::string& name, TrafficRate rate) {
  if (!installation_.machine.has(name)) return;
  installation_.machine.setRate(name, rate);
  run_.log.add(Happening::trafficChanged, 0,
               static_cast<std::int64_t>(std::max(rate.sent, rate.received)), name);
}

void TrafficScript::changeInterfaces() {
  const std::string& name = run_.random.oneOf(names_);
  SimulatedMachine& machine = installation_.machine;
  if (machine.has(name)) {
    machine.remove(name);
    run_.log.add(Happening::interfaceLeft, 0, 0, name);
  } else {
    machine.add(name, ConnectionMetrics::initial(1500));
    run_.log.add(Happening::interfaceCameBack, 0, 0, name);
  }
}

void TrafficScript::changeMtu() {
  const std::string* name = drawPresent();
  if (!name) return;
  constexpr std::array<std::uint64_t, 3> sizes{1280, 1500, 9000};
  const std::uint64_t mtu = run_.random.oneOf(sizes);
  installation_.machine.setMtu(*name, mtu);
  run_.log.add(Happening::mtuChanged, 0, static_cast<std::int64_t>(mtu), *name);
}

void TrafficScript::jumpCounter() {
  const std::string* name = drawPresent();
  if (!name) return;
  const auto& field = connectionMetricsFields[run_.random.below(7)];
  const std::uint64_t amount = run_.random.below(3'000'000'000);
  installation_.machine.jump(*name, field.member, amount);
  run_.log.add(Happening::countersJumped, 0, static_cast<std::int64_t>(amount), *name);
}

std::uint64_t TrafficScript::drawRate() {
  constexpr std::array<std::uint64_t, 6> aroundThresholds{499'999,   500'000,    6'249'999,
                                                          6'250'000, 31'249'999, 31'250'000};
  switch (run_.random.below(12)) {
    case 0:
      return run_.random.oneOf(aroundThresholds);
    case 1:
    case 2:
      return run_.random.between(500'000, 6'250'000);
    case 3:
      return run_.random.between(6'250'000, 31'250'000);
    case 4:
      // 34 MB/s for 120 s is just below a turn of 32 bits.
      return run_.random.between(31'250'000, profile_.isFast ? 1'250'000'000 : 34'000'000);
    case 5:
    case 6:
    case 7:
      return 0;
    default:
      return run_.random.below(500'000);
  }
}

const std::string* TrafficScript::drawPresent() {
  const std::string& name = run_.random.oneOf(names_);
  return installation_.machine.has(name) ? &name : nullptr;
}

}  // namespace lanternfold::simulation
