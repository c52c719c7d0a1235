#include "WidgetService/ReceivedResult.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "Support/Rfc3339Text.h"
#include "ViewTree/ArchiveMembers.h"
#include "ViewTree/ArchivePlace.h"
#include "ViewTree/DisplayableText.h"
#include "WidgetService/ServiceMessage.h"
#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {
namespace {

/// Reads results, and stops at the first fault; what it gives back then means nothing.
class ResultReader {
 public:
  std::vector<WidgetDescription> widgets(const ArchiveValue& result) {
    std::vector<WidgetDescription> widgets;
    forEach(result, "widgets", mostReceivedWidgets, [&](const ArchiveValue& value) {
      WidgetDescription widget = this->widget(value);
      if (std::ranges::find(widgets, widget.kind, &WidgetDescription::kind) != widgets.end()) {
        return place_.fail("kind", "There is another widget of this kind.");
      }
      if (!widget.supportedFamilies.empty()) widgets.push_back(std::move(widget));
    });
    return widgets;
  }

  ViewEntry entry(const ArchiveValue& result) {
    const auto members = ArchiveMembers::of(result, place_);
    if (!members) return {};
    return {.date = date(*members), .view = view(*members)};
  }

  Timeline<ViewEntry> timeline(const ArchiveValue& result) {
    Timeline<ViewEntry> timeline;
    forEach(result, "entries", mostReceivedEntries,
            [&](const ArchiveValue& value) { timeline.entries.push_back(entry(value)); });
    timeline.policy = policy(result);
    return timeline;
  }

  void nothing(const ArchiveValue& result) { (void)ArchiveMembers::of(result, place_); }

  /// `value`, unless there was a fault.
  template <typename Value>
  [[nodiscard]] std::expected<Value, std::string> checked(Value value) const {
    if (const auto fault = this->fault()) return std::unexpected(*fault);
    return value;
  }
  [[nodiscard]] std::optional<std::string> fault() const {
    if (viewFault_) return viewFault_;
    const auto& fault = place_.fault();
    if (!fault) return std::nullopt;
    return (fault->path.empty() ? "result" : fault->path) + ": " + fault->sentence;
  }

 private:
  /// Hands on the elements of the list `name`, until there is a fault.
  template <typename Take>
  void forEach(const ArchiveValue& object, std::string_view name, std::size_t most,
               const Take& take) {
    const auto members = ArchiveMembers::of(object, place_);
    const ArchiveValue* const member = members ? members->required(name) : nullptr;
    if (member == nullptr) return;
    const auto* const list = std::get_if<ArchiveValue::List>(&member->value);
    if (list == nullptr) return place_.fail(name, "It is not a list.");
    if (list->size() > most) return place_.fail(name, "It is too long.");
    for (std::size_t index = 0; index < list->size() && !fault(); ++index) {
      const ArchivePlace::Step step(place_, std::string(name) + '[' + std::to_string(index) + ']');
      take((*list)[index]);
    }
  }

  WidgetDescription widget(const ArchiveValue& value) {
    WidgetDescription widget;
    const auto members = ArchiveMembers::of(value, place_);
    if (!members) return widget;
    widget.kind = name(*members, "kind", longestKindText);
    widget.displayName = displayableText(text(*members, "displayName", longestWidgetText));
    widget.description = displayableText(text(*members, "description", longestWidgetText));
    widget.supportedFamilies = families(value);
    const std::string configuration = text(*members, "configuration", longestWidgetText);
    if (configuration == "intent") {
      widget.configuration = ConfigurationKind::intentConfiguration;
      widget.intent = name(*members, "intent", longestIntentText);
    } else if (configuration != "static") {
      place_.fail("configuration", "It is neither intent nor static.");
    }
    return widget;
  }

  std::vector<WidgetFamily> families(const ArchiveValue& widget) {
    std::set<WidgetFamily> families;
    forEach(widget, "families", mostReceivedWidgets, [&](const ArchiveValue& value) {
      const auto* const name = std::get_if<std::string>(&value.value);
      if (name == nullptr) return place_.fail("", "It is not a text.");
      if (const auto family = widgetFamilyOfName(*name)) families.insert(*family);
    });
    return {families.begin(), families.end()};
  }

  std::string text(const ArchiveMembers& members, std::string_view name, std::size_t longest) {
    const std::string* const text = members.requiredText(name);
    if (text == nullptr) return {};
    if (text->size() > longest) place_.fail(name, "The text is too long.");
    return *text;
  }

  /// What a program calls something, and a log may have to say.
  std::string name(const ArchiveMembers& members, std::string_view member, std::size_t longest) {
    std::string name = text(members, member, longest);
    if (name.empty() || displayableText(name) != name) place_.fail(member, "It is not a name.");
    return name;
  }

  std::chrono::system_clock::time_point date(const ArchiveMembers& members) {
    const std::string* const text = members.requiredText("date");
    if (text == nullptr) return {};
    const auto date = momentOfRfc3339Text(*text);
    if (!date) place_.fail("date", "It is not a date.");
    return date.value_or(std::chrono::system_clock::time_point());
  }

  View view(const ArchiveMembers& members) {
    const ArchiveValue* const archive = members.required("view");
    if (archive == nullptr || fault()) return {};
    auto view = viewOfArchive(*archive);
    if (view) return *std::move(view);
    viewFault_ = "the view's " + (view.error().path.empty() ? "archive" : view.error().path) +
                 ": " + view.error().sentence;
    return {};
  }

  TimelineReloadPolicy policy(const ArchiveValue& timeline) {
    const auto members = ArchiveMembers::of(timeline, place_);
    const std::string* const name = members ? members->requiredText("policy") : nullptr;
    if (name == nullptr || *name == "atEnd") return TimelineReloadPolicy::atEnd;
    if (*name != "never") place_.fail("policy", "It is neither atEnd nor never.");
    return TimelineReloadPolicy::never;
  }

  ArchivePlace place_;
  std::optional<std::string> viewFault_;  ///< within an archive
};

}  // namespace

std::expected<std::vector<WidgetDescription>, std::string> receivedWidgets(
    const ArchiveValue& result) {
  ResultReader reader;
  auto widgets = reader.widgets(result);
  return reader.checked(std::move(widgets));
}

std::expected<ViewEntry, std::string> receivedEntry(const ArchiveValue& result) {
  ResultReader reader;
  auto entry = reader.entry(result);
  return reader.checked(std::move(entry));
}

std::expected<Timeline<ViewEntry>, std::string> receivedTimeline(const ArchiveValue& result) {
  ResultReader reader;
  auto timeline = reader.timeline(result);
  return reader.checked(std::move(timeline));
}

std::expected<void, std::string> receivedNothing(const ArchiveValue& result) {
  ResultReader reader;
  reader.nothing(result);
  if (const auto fault = reader.fault()) return std::unexpected(*fault);
  return {};
}

}  // namespace lanternfold
