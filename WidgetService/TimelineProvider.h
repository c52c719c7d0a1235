// Who answers a widget service's requests for entries, before they are drawn.
//
// Made by: each widget, one for itself. Read by: the widget's configuration
// (WidgetService/Widget.h).
#pragma once

#include <functional>
#include <vector>

#include "WidgetService/Timeline.h"
#include "WidgetService/TimelineProviderContext.h"

namespace lanternfold {

/// Of a widget that the user configures with an `Intent`. `placeholder` and `getSnapshot` may be
/// called on any thread; `getTimeline` belongs on the main queue. Completions come on whatever
/// queue the provider says.
template <typename EntryType, typename IntentType>
class IntentTimelineProvider {
 public:
  using Entry = EntryType;
  using Intent = IntentType;
  using SnapshotCompletion = std::function<void(Entry)>;
  using TimelineCompletion = std::function<void(Timeline<Entry>)>;

  virtual ~IntentTimelineProvider() = default;

  /// Sample content with an empty configuration.
  [[nodiscard]] virtual Entry placeholder(TimelineProviderContext context) const = 0;

  /// Calls `completion` once.
  virtual void getSnapshot(const Intent& configuration, TimelineProviderContext context,
                           SnapshotCompletion completion) const = 0;

  /// Calls `completion` at most once.
  virtual void getTimeline(const Intent& configuration, TimelineProviderContext context,
                           TimelineCompletion completion) const = 0;

  /// Configurations that a host may offer ready made.
  [[nodiscard]] virtual std::vector<Intent> recommendations() const { return {}; }
};

/// The same of a widget without a configuration.
template <typename EntryType>
class TimelineProvider {
 public:
  using Entry = EntryType;
  using SnapshotCompletion = std::function<void(Entry)>;
  using TimelineCompletion = std::function<void(Timeline<Entry>)>;

  virtual ~TimelineProvider() = default;

  [[nodiscard]] virtual Entry placeholder(TimelineProviderContext context) const = 0;
  virtual void getSnapshot(TimelineProviderContext context,
                           SnapshotCompletion completion) const = 0;
  virtual void getTimeline(TimelineProviderContext context,
                           TimelineCompletion completion) const = 0;
};

}  // namespace lanternfold
