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
  using Date = std::chrono::system_clock::time_point;

  /// How it stands with the card beside its content.
  struct Standing {
    bool isMissed = false;  ///< the last question has failed
    bool isStale = false;
    bool isLeftAlone = false;  ///< the extension is
    friend bool operator==(const Standing&, const Standing&) = default;
  };

  /// What is to be seen of it.
  enum class Face {
    empty,  ///< nothing has come yet
    sample,
    entry,
    stale,       ///< the entry, as one that is not up to date
    unanswered,  ///< nothing has come, and the last question has failed
    quiet,       ///< the extension is left alone
  };

  /// A sample never takes the place of a timeline.
  void receiveSample(ViewEntry sample);
  /// Shows the entry of now, or else the first, and the later ones as their dates come. A timeline
  /// without entries changes nothing.
  void receiveTimeline(Timeline<ViewEntry> timeline, Date now);
  /// What it has is of another size, or of another widget.
  void forget();

  /// Goes on to the entry of `now`; returns whether it is another one.
  bool advance(Date now);
  /// When the next entry is to be shown; none when there is none.
  [[nodiscard]] std::optional<Date> nextChange() const;

  /// Whether nothing has come yet.
  [[nodiscard]] bool isBare() const { return !sample_ && !entry_; }
  [[nodiscard]] Face face(const Standing& standing) const;
  [[nodiscard]] View view(const Standing& standing, const StringTable& strings,
                          WidgetFamily family) const;
  /// Of the entry or the sample that there is; none without one.
  [[nodiscard]] std::optional<Date> date() const;
  /// Whether the face says when its content was made, in words that depend on the day.
  [[nodiscard]] bool saysTime(const Standing& standing) const;

 private:
  std::optional<ViewEntry> sample_;
  std::optional<ViewEntry> entry_;
  std::vector<ViewEntry> later_;  ///< the next one last
};

/// From `now` to `date`, zero when that has passed, and no longer than a year.
[[nodiscard]] std::chrono::nanoseconds untilDate(CardContent::Date date, CardContent::Date now);

/// From `now` to the date of its last entry, zero when that has passed; none for a timeline that is
/// never to be asked for again.
[[nodiscard]] std::optional<std::chrono::nanoseconds> untilEndOf(
    const Timeline<ViewEntry>& timeline, CardContent::Date now);

}  // namespace lanternfold
