// One widget as a service knows it: what it is called, in which sizes it comes, and whom to ask for
// its entries.
//
// Made by: a widget's body, from its configuration. Read by: the responder, the host's gallery.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ViewTree/View.h"
#include "WidgetService/Timeline.h"
#include "WidgetService/TimelineProviderContext.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

/// An adapter as a host remembers the user's choice of it.
struct AdapterParameter {
  std::optional<std::string> identifier;
  std::string display;
  friend bool operator==(const AdapterParameter&, const AdapterParameter&) = default;
};

/// What a host remembers of a widget's configuration and hands on with every request. A widget
/// takes from it what its intent has.
struct ConfigurationParameters {
  std::optional<bool> showTimestamp;
  std::optional<AdapterParameter> adapter;
  friend bool operator==(const ConfigurationParameters&, const ConfigurationParameters&) = default;
};

struct WidgetRequest {
  WidgetFamily family = WidgetFamily::small;
  ConfigurationParameters configuration;
  TimelineProviderContext context;
  friend bool operator==(const WidgetRequest&, const WidgetRequest&) = default;
};

/// An entry that is ready to be drawn.
struct ViewEntry {
  std::chrono::system_clock::time_point date;
  View view;
  friend bool operator==(const ViewEntry&, const ViewEntry&) = default;
};

enum class ConfigurationKind { staticConfiguration, intentConfiguration };

struct WidgetDescription {
  std::string kind;
  std::string displayName;
  std::string description;
  std::vector<WidgetFamily> supportedFamilies;  ///< from the smallest
  ConfigurationKind configuration = ConfigurationKind::staticConfiguration;
  std::optional<std::string> intent;  ///< the name of the intent class; none when static
  friend bool operator==(const WidgetDescription&, const WidgetDescription&) = default;
};

/// A widget with its provider and its views behind it. The request's family is one of those that it
/// supports. `placeholder` and `snapshot` may be called on any thread, `timeline` on the main
/// queue.
struct Widget {
  using SnapshotCompletion = std::function<void(ViewEntry)>;
  using TimelineCompletion = std::function<void(Timeline<ViewEntry>)>;

  WidgetDescription description;
  std::function<ViewEntry(const WidgetRequest&)> placeholder;
  /// Completes once.
  std::function<void(const WidgetRequest&, SnapshotCompletion)> snapshot;
  /// Completes at most once, on the queue that its provider completes on.
  std::function<void(const WidgetRequest&, TimelineCompletion)> timeline;
};

}  // namespace lanternfold
