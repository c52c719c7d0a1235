// What a widget is put together from: its provider, its content, and what a gallery says of it.
//
//   intentConfiguration(kind, intentName, provider, content)
//       .configurationDisplayName(name).description(text).supportedFamilies(families)
//
// Made by: each widget's body.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Support/FatalError.h"
#include "WidgetService/DrawnTimeline.h"
#include "WidgetService/Widget.h"
#include "WidgetService/WidgetContent.h"

namespace lanternfold {

/// Three steps of a type each, so that the modifiers are applied once, in their order, and none is
/// forgotten.
class WidgetWithoutFamilies {
 public:
  explicit WidgetWithoutFamilies(Widget widget) : widget_(std::move(widget)) {}

  /// From the smallest.
  [[nodiscard]] Widget supportedFamilies(std::vector<WidgetFamily> families) && {
    widget_.description.supportedFamilies = std::move(families);
    return std::move(widget_);
  }

 private:
  Widget widget_;
};

class WidgetWithoutDescription {
 public:
  explicit WidgetWithoutDescription(Widget widget) : widget_(std::move(widget)) {}

  [[nodiscard]] WidgetWithoutFamilies description(std::string text) && {
    widget_.description.description = std::move(text);
    return WidgetWithoutFamilies(std::move(widget_));
  }

 private:
  Widget widget_;
};

class WidgetConfiguration {
 public:
  explicit WidgetConfiguration(Widget widget) : widget_(std::move(widget)) {}

  [[nodiscard]] WidgetWithoutDescription configurationDisplayName(std::string name) && {
    widget_.description.displayName = std::move(name);
    return WidgetWithoutDescription(std::move(widget_));
  }

 private:
  Widget widget_;
};

/// A provider's three operations as the service asks for them.
template <typename Entry>
struct EntryRequests {
  std::function<Entry(const WidgetRequest&)> placeholder;
  std::function<void(const WidgetRequest&, std::function<void(Entry)>)> snapshot;
  std::function<void(const WidgetRequest&, std::function<void(Timeline<Entry>)>)> timeline;
};

/// `description` has the kind and the configuration; the modifiers add the rest.
template <typename Entry>
[[nodiscard]] WidgetConfiguration widgetConfiguration(WidgetDescription description,
                                                      EntryRequests<Entry> requests,
                                                      WidgetContent<Entry> content) {
  if (!content.view) fatalError("a widget was configured without a view of its entries");
  Widget widget{.description = std::move(description),
                .placeholder = nullptr,
                .snapshot = nullptr,
                .timeline = nullptr};
  widget.placeholder = [ask = std::move(requests.placeholder),
                        view = content.view](const WidgetRequest& request) {
    const Entry entry = ask(request);
    return ViewEntry{.date = entry.date, .view = view(entry, request.family)};
  };
  widget.snapshot = [ask = std::move(requests.snapshot), view = content.view](
                        const WidgetRequest& request, Widget::SnapshotCompletion completion) {
    ask(request,
        [view, family = request.family, completion = std::move(completion)](const Entry& entry) {
          completion({.date = entry.date, .view = view(entry, family)});
        });
  };
  widget.timeline = [ask = std::move(requests.timeline), content = std::move(content)](
                        const WidgetRequest& request, Widget::TimelineCompletion completion) {
    const auto drawn =
        std::make_shared<DrawnTimeline<Entry>>(request.family, std::move(completion));
    if (content.prepareTimeline) {
      content.prepareTimeline(request.configuration, [drawn](EntryViewMaker<Entry> makeView) {
        drawn->receive(std::move(makeView));
      });
    } else {
      drawn->receive(content.view);
    }
    ask(request, [drawn](Timeline<Entry> timeline) { drawn->receive(std::move(timeline)); });
  };
  return WidgetConfiguration(std::move(widget));
}

/// A widget that the user configures. `provider` is an `IntentTimelineProvider`, not null; its
/// intent has a `from(const ConfigurationParameters&)`. `intentName` is the intent's class.
template <typename Provider>
[[nodiscard]] WidgetConfiguration intentConfiguration(
    std::string kind, std::string intentName, std::shared_ptr<const Provider> provider,
    WidgetContent<typename Provider::Entry> content) {
  using Entry = typename Provider::Entry;
  using Intent = typename Provider::Intent;
  if (!provider) fatalError("a widget was configured without a provider of its entries");
  EntryRequests<Entry> requests;
  requests.placeholder = [provider](const WidgetRequest& request) {
    return provider->placeholder(request.context);
  };
  requests.snapshot = [provider](const WidgetRequest& request,
                                 std::function<void(Entry)> completion) {
    provider->getSnapshot(Intent::from(request.configuration), request.context,
                          std::move(completion));
  };
  requests.timeline = [provider](const WidgetRequest& request,
                                 std::function<void(Timeline<Entry>)> completion) {
    provider->getTimeline(Intent::from(request.configuration), request.context,
                          std::move(completion));
  };
  WidgetDescription description;
  description.kind = std::move(kind);
  description.configuration = ConfigurationKind::intentConfiguration;
  description.intent = std::move(intentName);
  return widgetConfiguration(std::move(description), std::move(requests), std::move(content));
}

/// A widget without a configuration. `provider` is a `TimelineProvider`, not null.
template <typename Provider>
[[nodiscard]] WidgetConfiguration staticConfiguration(
    std::string kind, std::shared_ptr<const Provider> provider,
    WidgetContent<typename Provider::Entry> content) {
  using Entry = typename Provider::Entry;
  if (!provider) fatalError("a widget was configured without a provider of its entries");
  EntryRequests<Entry> requests;
  requests.placeholder = [provider](const WidgetRequest& request) {
    return provider->placeholder(request.context);
  };
  requests.snapshot = [provider](const WidgetRequest& request,
                                 std::function<void(Entry)> completion) {
    provider->getSnapshot(request.context, std::move(completion));
  };
  requests.timeline = [provider](const WidgetRequest& request,
                                 std::function<void(Timeline<Entry>)> completion) {
    provider->getTimeline(request.context, std::move(completion));
  };
  WidgetDescription description;
  description.kind = std::move(kind);
  return widgetConfiguration(std::move(description), std::move(requests), std::move(content));
}

}  // namespace lanternfold
