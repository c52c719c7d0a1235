// What a sample has to remember of a reading, worked out apart from the recorder.
//
// Made by: the observers of the storages. Pure.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "Tests/Simulation/SimulatedMachine.h"

namespace lanternfold::simulation {

/// The two records of one interface, with the true counters behind the raw one where they are
/// known.
struct RememberedInterface {
  ConnectionMetrics original;
  ConnectionMetrics adjusted;
  std::optional<TrueCounters> truth;

  /// What the storage holds; the truth is the observers' alone.
  [[nodiscard]] bool holdsTheSame(const RememberedInterface& other) const {
    return original == other.original && adjusted == other.adjusted;
  }
};

using RememberedInterfaces = std::map<std::string, RememberedInterface, std::less<>>;

[[nodiscard]] bool holdTheSame(const RememberedInterfaces& left, const RememberedInterfaces& right);

enum class Counting {
  uncapped,         ///< a 64-bit reader: the reading itself
  capped,           ///< a 32-bit reader: carried forward over wraps
  fromOwnBeginning  ///< the first sample over a storage that keeps nothing: zero
};

/// What one interface is remembered as after a reading of `now`. `original` and `adjusted` come
/// from `previous` and `previousAdjusted`; null for none. They differ only where another program
/// came in between.
[[nodiscard]] RememberedInterface expectedInterface(const RememberedInterface* previous,
                                                    const RememberedInterface* previousAdjusted,
                                                    const ConnectionMetrics& now,
                                                    const TrueCounters& truth, Counting counting);

/// What a storage that holds `before` holds after a sample of `reading`: interfaces that the
/// reading lacks stay as they were.
[[nodiscard]] RememberedInterfaces expectedAfter(const RememberedInterfaces& before,
                                                 const MachineReading& reading, Counting counting);

/// How many of the seven counters wrapped between two records of a 32-bit reader.
[[nodiscard]] int wrapsBetween(const ConnectionMetrics& old, const ConnectionMetrics& now);

/// Compares what the adjusted counters gained with the true traffic between two records of one
/// interface that is still the same: equal but for the one that a wrap loses, as long as no counter
/// turned over more than once. Returns a sentence about a counter that has lost or doubled traffic.
[[nodiscard]] std::optional<std::string> trafficLost(const RememberedInterface& before,
                                                     const RememberedInterface& after);

/// Whether a counter turned over more often than two 32-bit records can show.
[[nodiscard]] bool turnedOverUnseen(const TrueCounters& before, const TrueCounters& after);

/// The name of the first counter that went backwards; none when none did.
[[nodiscard]] std::optional<std::string> counterThatWentBack(const ConnectionMetrics& before,
                                                             const ConnectionMetrics& after);

}  // namespace lanternfold::simulation
