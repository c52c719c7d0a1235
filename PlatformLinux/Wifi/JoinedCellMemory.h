// Keeps the joined cells between readings, so that the kernel's list of cells, which may be
// hundreds long, is asked for on a change only.
//
// Made by: `LinuxWifiClient`, one each. Holds names whatever the user's consent is, as `WifiFacts`
// does, and never gives them to anybody else.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include "PlatformLinux/Wifi/WifiBssMessage.h"
#include "PlatformLinux/Wifi/WifiInterfaceMessage.h"

namespace lanternfold {

/// Any thread.
///
/// What was listed counts until the kernel reports something that may touch it (a network joined,
/// left or changed for another cell, a finished scan, another channel, reports lost), or describes
/// the interface otherwise than it did then: another network, channel, width or set of links.
class JoinedCellMemory {
 public:
  /// Whether the list may be another one than when this was last asked; true at first. Never asked
  /// by two threads at once.
  using MayHaveChanged = std::function<bool()>;
  using Cells = std::vector<WifiBssMessage>;

  /// Without a way to know, nothing is kept.
  explicit JoinedCellMemory(MayHaveChanged mayHaveChanged);

  /// Which of the kernel's reports a reading knows of.
  enum class Reading : std::uint64_t {};

  /// To be called before the kernel is asked for anything. What the kernel reports from now on is
  /// for the next reading.
  [[nodiscard]] Reading begin();

  /// None when the kernel is to be asked.
  [[nodiscard]] std::optional<Cells> cellsOf(const WifiInterfaceMessage& interface,
                                             Reading reading) const;

  /// Keeps an answer of the kernel, which may be that no cell is joined. Dropped when another
  /// thread has learned of a change meanwhile.
  void keep(const WifiInterfaceMessage& interface, Cells cells, Reading reading);

 private:
  struct Kept {
    WifiInterfaceMessage interface;
    Cells cells;
  };

  [[nodiscard]] bool isLatest(Reading reading) const;

  const MayHaveChanged mayHaveChanged_;
  mutable std::mutex mutex_;            // guards what follows, and the asking
  Reading latest_{};                    // counts the changes
  std::map<std::uint32_t, Kept> kept_;  // by the interface's index; all of the latest reading
};

}  // namespace lanternfold
