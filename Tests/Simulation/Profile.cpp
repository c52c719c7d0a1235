#include "Tests/Simulation/Profile.h"

namespace lanternfold::simulation {
namespace {

constexpr std::array<std::pair<const char*, bool Profile::*>, 16> flags{{
    {"capped at 32 bits", &Profile::is32bitCapped},
    {"fast", &Profile::isFast},
    {"two recorders", &Profile::hasSecondRecorder},
    {"one-shot samples", &Profile::hasOneShots},
    {"set by hand", &Profile::isSetByHand},
    {"kills", &Profile::kills},
    {"reboots", &Profile::reboots},
    {"clock steps", &Profile::stepsClock},
    {"full disk", &Profile::fillsDisk},
    {"lost permission", &Profile::losesPermission},
    {"slow disk", &Profile::slowsDisk},
    {"tampered data", &Profile::tampersWithData},
    {"left locks", &Profile::leavesLocks},
    {"failing reader", &Profile::failsReader},
    {"changing interfaces", &Profile::changesInterfaces},
    {"reused file numbers", &Profile::reusesFileNumbers},
}};

StorageKind drawStorage(SeededRandom& random) {
  const std::uint64_t draw = random.below(10);
  if (draw < 7) return StorageKind::file;
  return draw < 9 ? StorageKind::userDefaults : StorageKind::memory;
}

}  // namespace

Profile drawProfile(SeededRandom& random) {
  Profile profile;
  profile.storage = drawStorage(random);
  const bool isOrderly = random.chance(0.2);
  const double probability = isOrderly ? 0 : 0.5;
  for (const auto& [name, flag] : flags) profile.*flag = random.chance(probability);
  profile.is32bitCapped = random.chance(0.6);
  profile.isFast = random.chance(0.25);
  profile.changesInterfaces = random.chance(0.5);
  profile.bootDate = random.chance(0.5) ? SimulatedMachine::BootDate::remembered
                                        : SimulatedMachine::BootDate::followsWallClock;
  profile.interfaces = random.between(1, 5);
  const bool isShared = profile.storage == StorageKind::file;
  profile.hasSecondRecorder = isShared && random.chance(0.5);
  profile.hasOneShots = isShared && random.chance(0.5);
  constexpr std::array oftenness{0.0, 0.002, 0.05, 0.3};
  profile.interruptions = isOrderly ? 0 : random.oneOf(oftenness);
  return profile;
}

std::string describe(const Profile& profile) {
  constexpr std::array<const char*, 3> storages{"a file", "user defaults", "memory"};
  std::string text = storages[static_cast<std::size_t>(profile.storage)];
  text += ", " + std::to_string(profile.interfaces) + " interfaces";
  for (const auto& [name, flag] : flags) {
    if (profile.*flag) text += std::string(", ") + name;
  }
  if (profile.interruptions > 0) {
    text += ", interruptions " + std::to_string(profile.interruptions);
  }
  return text;
}

}  // namespace lanternfold::simulation
