#include "NetworkWidgetVexExtension/Service/WidgetResponder.h"

#include <algorithm>
#include <utility>

#include "Support/FatalError.h"
#include "WidgetService/QuotedText.h"
#include "WidgetService/ServiceAnswer.h"
#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {
namespace {

struct ResultJson {
  std::string operator()(const WidgetList& widgets) const { return widgetListResult(widgets); }
  std::string operator()(const ViewEntry& entry) const { return entryResult(entry); }
  std::string operator()(const Timeline<ViewEntry>& timeline) const {
    return timelineResult(timeline);
  }
  std::string operator()(const PerformedIntent&) const { return emptyResult(); }
};

std::unexpected<ServiceError> invalid(std::string message) {
  return std::unexpected(ServiceError{ServiceErrorCode::invalidParams, std::move(message)});
}

}  // namespace

std::string serviceResultJson(const ServiceResult& result) {
  return std::visit(ResultJson{}, result);
}

WidgetResponder::WidgetResponder(std::vector<Widget> widgets, Intents intents)
    : widgets_(std::move(widgets)), intents_(std::move(intents)) {
  std::vector<std::string> kinds;
  for (const Widget& widget : widgets_) kinds.push_back(widget.description.kind);
  std::ranges::sort(kinds);
  if (std::ranges::adjacent_find(kinds) != kinds.end()) {
    fatalError("two widgets of a bundle have the same kind");
  }
}

void WidgetResponder::respond(const ServiceCall& call, Reply reply) const {
  std::visit([&](const auto& chosen) { respondTo(chosen, std::move(reply)); }, call);
}

void WidgetResponder::respondTo(const ListCall&, Reply reply) const {
  WidgetList descriptions;
  for (const Widget& widget : widgets_) descriptions.push_back(widget.description);
  reply(std::move(descriptions));
}

void WidgetResponder::respondTo(const EntryCall& call, Reply reply) const {
  const auto widget = widgetFor(call);
  if (!widget) return reply(std::unexpected(widget.error()));
  switch (call.entry) {
    case EntryCall::Kind::placeholder:
      return reply((*widget)->placeholder(call.request));
    case EntryCall::Kind::snapshot:
      return (*widget)->snapshot(
          call.request, [reply = std::move(reply)](ViewEntry entry) { reply(std::move(entry)); });
    case EntryCall::Kind::timeline:
      return (*widget)->timeline(
          call.request,
          [reply = std::move(reply)](Timeline<ViewEntry> timeline) { reply(std::move(timeline)); });
  }
}

void WidgetResponder::respondTo(const PerformIntentCall& call, Reply reply) const {
  const auto intent =
      std::ranges::find(intents_, call.intent, [](const auto& each) { return each->name(); });
  if (intent == intents_.end()) {
    return reply(invalid("params.intent: " + quotedText(call.intent) + " is no widget's intent"));
  }
  (void)(*intent)->perform();
  reply(PerformedIntent{});
}

std::expected<const Widget*, ServiceError> WidgetResponder::widgetFor(const EntryCall& call) const {
  const auto widget = std::ranges::find(
      widgets_, call.kind, [](const Widget& each) -> const auto& { return each.description.kind; });
  if (widget == widgets_.end()) {
    return invalid("params.kind: " + quotedText(call.kind) +
                   " is no widget's kind; widgets/list tells them");
  }
  const auto& families = widget->description.supportedFamilies;
  if (std::ranges::find(families, call.request.family) == families.end()) {
    return invalid("params.family: " + call.kind + " comes in " + widgetFamilyNames(families));
  }
  return &*widget;
}

}  // namespace lanternfold
