#include "WidgetService/ServiceAnswer.h"

#include <string_view>
#include <variant>

#include <nlohmann/json.hpp>

#include "Support/EscapedText.h"
#include "Support/FatalError.h"
#include "Support/Rfc3339Text.h"
#include "ViewTree/ViewArchive.h"
#include "WidgetService/QuotedText.h"
#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {
namespace {

// Objects are put together as text: a view comes as JSON already, of any size.

std::string jsonText(std::string_view text) {
  using Json = nlohmann::json;
  return Json(text).dump(-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

/// The elements, each as JSON, as a list.
template <typename Elements, typename JsonOf>
std::string jsonList(const Elements& elements, const JsonOf& jsonOf) {
  std::string list = "[";
  for (const auto& element : elements) {
    if (list.size() > 1) list += ',';
    list += jsonOf(element);
  }
  return list += ']';
}

std::string_view nameOf(ConfigurationKind kind) {
  switch (kind) {
    case ConfigurationKind::staticConfiguration:
      return "static";
    case ConfigurationKind::intentConfiguration:
      return "intent";
  }
  fatalError("a kind of configuration has no name");
}

std::string_view nameOf(TimelineReloadPolicy policy) {
  switch (policy) {
    case TimelineReloadPolicy::atEnd:
      return "atEnd";
    case TimelineReloadPolicy::never:
      return "never";
  }
  fatalError("a timeline's reload policy has no name");
}

std::string widgetJson(const WidgetDescription& widget) {
  const auto familyJson = [](WidgetFamily family) { return jsonText(widgetFamilyName(family)); };
  return R"({"kind":)" + jsonText(widget.kind) +                               //
         R"(,"displayName":)" + jsonText(widget.displayName) +                 //
         R"(,"description":)" + jsonText(widget.description) +                 //
         R"(,"families":)" + jsonList(widget.supportedFamilies, familyJson) +  //
         R"(,"configuration":)" + jsonText(nameOf(widget.configuration)) +     //
         R"(,"intent":)" + (widget.intent ? jsonText(*widget.intent) : "null") + '}';
}

std::string identifierJson(const RequestIdentifier& id) {
  if (const auto* const number = std::get_if<std::int64_t>(&id)) return std::to_string(*number);
  if (const auto* const text = std::get_if<std::string>(&id)) return jsonText(*text);
  return "null";
}

std::string errorLine(const RequestIdentifier& id, const ServiceError& error) {
  return R"({"jsonrpc":"2.0","id":)" + identifierJson(id) + R"(,"error":{"code":)" +
         std::to_string(static_cast<int>(error.code)) + R"(,"message":)" +
         jsonText(beginningOf(escapedText(error.message), longestErrorText)) + "}}";
}

}  // namespace

std::string widgetListResult(const std::vector<WidgetDescription>& widgets) {
  return R"({"widgets":)" + jsonList(widgets, widgetJson) + '}';
}

std::string entryResult(const ViewEntry& entry) {
  return R"({"date":)" + jsonText(rfc3339Text(entry.date)) + R"(,"view":)" +
         archiveJson(entry.view) + '}';
}

std::string timelineResult(const Timeline<ViewEntry>& timeline) {
  return R"({"entries":)" + jsonList(timeline.entries, entryResult) + R"(,"policy":)" +
         jsonText(nameOf(timeline.policy)) + '}';
}

std::string emptyResult() { return "{}"; }

std::string answerLine(const RequestIdentifier& id,
                       const std::expected<std::string, ServiceError>& resultJson) {
  if (!resultJson) return errorLine(id, resultJson.error());
  std::string line =
      R"({"jsonrpc":"2.0","id":)" + identifierJson(id) + R"(,"result":)" + *resultJson + '}';
  if (line.size() <= longestServiceLine) return line;
  return errorLine(
      id, {.code = ServiceErrorCode::internalError, .message = "the answer is longer than 4 MiB"});
}

std::string locationRequestLine(bool whenInUse) {
  return std::string(R"({"jsonrpc":"2.0","method":"location/request","params":{"whenInUse":)") +
         (whenInUse ? "true" : "false") + "}}";
}

}  // namespace lanternfold
