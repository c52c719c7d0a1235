// The counters of one walk over the interfaces, taken through the recorder so that they are
// remembered, or straight from the kernel when they cannot be.
//
// Made by: the wiring of the monitor. Read by: the interface resolver, once for every interface.
#pragma once

#include <chrono>
#include <expected>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"
#include "NetworkMonitor/Metrics/FileLock.h"
#include "Platform/Clock.h"
#include "Platform/DiagnosticLog.h"

namespace lanternfold {

/// What a held lock means for a walk: it lasts half a second at the most after its holder has died,
/// so whoever is asked again soon may leave out what a lock keeps from being sampled.
enum class WhileLocked {
  kernelCounters,  ///< the kernel's own counters stand in
  failure,         ///< reads fail, and so do the next walks for a while
};

/// Which locks were waited for in vain, known to all readers of one program that hold this: else
/// each would wait in its turn, and keep everybody else from their work. Any thread.
class HeldLockMemory {
 public:
  static constexpr std::chrono::seconds span{1};

  /// The error, if `lock` was waited for a moment ago and is taken still.
  [[nodiscard]] std::optional<ConnectionMetricsError> recall(
      const FileLock& lock, std::chrono::steady_clock::time_point now) const;
  void remember(const FileLock& lock, ConnectionMetricsError error,
                std::chrono::steady_clock::time_point now);

 private:
  struct Wait {
    ConnectionMetricsError error;
    std::chrono::steady_clock::time_point recalledUntil;
  };
  mutable std::mutex mutex_;
  std::map<std::filesystem::path, Wait> waits_;  ///< by the lock's file; guarded by mutex_
};

/// Both sources count alike: a reader of 64-bit counters has them unchanged by the recorder. Every
/// sample is a file that is locked, written and brought to the disk, so one serves a whole walk,
/// and walks that follow closely upon each other have the kernel's own counters. A sample that
/// fails is said once; while that lasts, it is tried again at long intervals only, because a held
/// lock takes half a second each time. A sample whose lock file somebody else removed has been
/// saved and is no failure: programs that begin at the same moment can make one lock of two; one
/// whose lock file was taken away before it was written is taken once more. Any
/// thread.
class RememberingMetricsReader final : public ConnectionMetricsReader {
 public:
  static constexpr std::chrono::milliseconds shortestPause{250};
  static constexpr std::chrono::seconds pauseAfterFailure{60};

  struct Environment {
    const Clock& clock;
    DiagnosticLog& diagnostics;
    WhileLocked whileLocked = WhileLocked::kernelCounters;
    /// Of use with `WhileLocked::failure`; null for a reader that is alone.
    std::shared_ptr<HeldLockMemory> heldLocks = nullptr;
  };

  /// A clause that says why a sample failed and what to do.
  using Explanation = std::function<std::string(const ConnectionMetricsError&)>;

  /// Takes a sample at every read.
  struct Recorded {
    std::shared_ptr<ConnectionMetricsReader> reader;
    Explanation explain;
    /// That of the storage; null when nobody remembers waiting for it.
    std::shared_ptr<const FileLock> lock = nullptr;
  };

  /// `recorded` is a clause when there is no folder to keep a sample in: why, and what to do.
  RememberingMetricsReader(std::expected<Recorded, std::string> recorded,
                           std::shared_ptr<ConnectionMetricsReader> kernelReader,
                           const Environment& environment);

  [[nodiscard]] bool is32bitCapped() const override { return false; }

  /// The counters of this walk; fails when the kernel cannot be asked either, or as `WhileLocked`
  /// says.
  [[nodiscard]] std::expected<ConnectionMetricsMap, ConnectionMetricsError> read() override;

  /// The next `read` begins a walk of its own: an interface that has appeared meanwhile is counted.
  void beginWalk();

 private:
  using Reading = std::expected<ConnectionMetricsMap, ConnectionMetricsError>;

  /// None when the kernel's own counters are to stand in.
  [[nodiscard]] std::optional<Reading> remembered();
  [[nodiscard]] std::optional<Reading> sampled();
  [[nodiscard]] std::optional<ConnectionMetricsError> waitedForInVain() const;
  void reportOnce(const std::string& line);

  std::expected<Recorded, std::string> recorded_;
  std::shared_ptr<ConnectionMetricsReader> kernelReader_;
  Environment environment_;
  std::mutex mutex_;
  // Guarded by mutex_.
  std::optional<Reading> ofThisWalk_;
  std::optional<std::chrono::steady_clock::time_point> nextSample_;
  std::optional<ConnectionMetricsError> heldLock_;  ///< until the next sample
  bool isReported_ = false;
};

}  // namespace lanternfold
