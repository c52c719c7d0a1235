// When each widget's timeline is asked for anew.
//
// Made by: the desk, which asks and says what has come of it. Pure: moments of the steady clock in,
// widgets out. Belongs to one thread.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "WidgetHost/Service/WidgetExtension.h"

namespace lanternfold {

/// A widget is never asked for twice at the same time: a wish that comes meanwhile is remembered,
/// once, and is due as soon as the answer is there.
class ReloadSchedule {
 public:
  using Duration = std::chrono::nanoseconds;
  using TimePoint = std::chrono::steady_clock::time_point;

  /// A change of the network is waited out until nothing has changed for so long, but no longer
  /// than the second from the first change on.
  static constexpr Duration pathQuiet = std::chrono::seconds(1);
  static constexpr Duration longestPathBurst = std::chrono::seconds(5);
  /// An extension that is gone is asked again at once, since who supervises it waits before he
  /// starts it again; should he not, this is the pace from the second time on.
  static constexpr Duration goneRetry = std::chrono::seconds(1);
  /// So many misses in a row make what a widget shows stale.
  static constexpr int missesUntilStale = 2;

  /// Why nothing is asked for; each is on or off by itself.
  enum class Hold {
    locked,     ///< the session is
    leftAlone,  ///< the extension has failed too often
  };

  /// Two timelines that ended are at least `refreshInterval` apart.
  explicit ReloadSchedule(Duration refreshInterval) : refreshInterval_(refreshInterval) {}

  /// Due at once. The id is none that is there.
  void add(const std::string& id, TimePoint now);
  /// It is not waited for any more.
  void remove(std::string_view id);

  /// Somebody asked for it: due at once, whatever its timeline has said.
  void wish(std::string_view id, TimePoint now);
  void wishAll(TimePoint now);
  /// Those are of no concern to a widget whose timeline is never to be asked for again.
  void pathChanged(TimePoint now);
  void resumed(TimePoint now);
  /// What became due while it was on is due at its end.
  void setHeld(Hold hold, bool isOn);
  [[nodiscard]] bool isHeld() const { return isLocked_ || isLeftAlone_; }

  /// Those that are due, in the order of their ids; each is being asked for from now on, until one
  /// of the following is said of it.
  [[nodiscard]] std::vector<std::string> takeDue(TimePoint now);
  /// `untilEnd` is from now to the end of its timeline, which may have passed; none for a timeline
  /// that is never to be asked for again.
  void answered(std::string_view id, std::optional<Duration> untilEnd, TimePoint now);
  void failed(std::string_view id, ExtensionFailure failure, TimePoint now);
  /// The question was not asked to its end, for no fault of the extension: due at once.
  void putBack(std::string_view id, TimePoint now);

  /// Whether its last question has failed.
  [[nodiscard]] bool hasMissed(std::string_view id) const { return missesOf(id) > 0; }
  [[nodiscard]] bool isStale(std::string_view id) const { return missesOf(id) >= missesUntilStale; }

  /// When `takeDue` has something to give; none when nothing but another call can change that. May
  /// be in the past. One timer serves all widgets.
  [[nodiscard]] std::optional<TimePoint> nextDue() const;

 private:
  struct Reload {
    std::optional<TimePoint> due;
    bool isAsking = false;
    /// While it is asked for: whether it is to be asked for again.
    bool isWished = false;
    bool isNever = false;
    int misses = 0;
    int gone = 0;  ///< failures of that kind in a row
  };
  using Reloads = std::map<std::string, Reload, std::less<>>;

  /// Of an id that is there; whatever else is a programmer's error.
  Reload& reloadOf(std::string_view id);
  /// In a row, counted up to those that make it stale; zero for an id that is not there.
  [[nodiscard]] int missesOf(std::string_view id) const;
  static void makeDue(Reload& reload, TimePoint when);
  void makeAllDue(TimePoint now);
  void takePathChange(TimePoint now);
  /// No question is under way any more: due at once when it was wished for meanwhile.
  void finish(Reload& reload, std::optional<TimePoint> due, TimePoint now);

  Duration refreshInterval_;
  Reloads reloads_;
  bool isLocked_ = false;
  bool isLeftAlone_ = false;
  /// Of the changes that are being waited out.
  std::optional<TimePoint> firstPathChange_;
  TimePoint pathDue_;
};

}  // namespace lanternfold
