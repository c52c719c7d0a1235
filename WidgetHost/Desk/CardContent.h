// What one card shows: what the extension has answered for it, entry by entry.
//
// Made by: the desk, one for each widget. Pure. Belongs to one thread.
#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "Platform/StringTable.h"
#include "ViewTree/View.h"
#include "WidgetService/Timeline.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

class CardContent {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;
  using Date = std::chrono::system_clock::time_point;

  /// Both clocks at one moment.
  struct Moment {
    Date date;
    TimePoint time;
  };

  /// How it stands with the card beside its content.
  struct Standing {
    bool isStale = false;
    bool isLeftAlone = false;  ///< the extension is
  };

  /// A sample never takes the place of a timeline.
  void receiveSample(ViewEntry sample);
  /// Shows the entry of now, or else the first, and the later ones as their dates come. A timeline
  /// without entries changes nothing.
  void receiveTimeline(Timeline<ViewEntry> timeline, const Moment& now);
  /// What it has is of another size, or of another widget.
  void forget();

  /// Goes on to the entry of `now`; returns whether it is another one.
  bool advance(TimePoint now);
  /// When the next entry is to be shown; none when there is none.
  [[nodiscard]] std::optional<TimePoint> nextChange() const;

  /// Whether nothing has come yet.
  [[nodiscard]] bool isBare() const { return !sample_ && !entry_; }
  [[nodiscard]] bool isSample(const Standing& standing) const {
    return !entry_ && sample_ && !standing.isStale && !standing.isLeftAlone;
  }
  [[nodiscard]] View view(const Standing& standing, const StringTable& strings,
                          WidgetFamily family) const;
  /// Of the entry or the sample that there is; none without one.
  [[nodiscard]] std::optional<Date> date() const;

 private:
  struct LaterEntry {
    TimePoint due;
    ViewEntry entry;
  };

  std::optional<ViewEntry> sample_;
  std::optional<ViewEntry> entry_;
  std::vector<LaterEntry> later_;  ///< the next one last
};

/// From `now` to the date of its last entry, zero when that has passed; none for a timeline that is
/// never to be asked for again.
[[nodiscard]] std::optional<std::chrono::nanoseconds> untilEndOf(
    const Timeline<ViewEntry>& timeline, CardContent::Date now);

}  // namespace lanternfold
