// Any bytes from a host, in chunks, through the splitter into the reader of messages: the chunks do
// not matter, a line that is refused is answered with one small line of JSON, and a message that is
// understood, written out, is understood in the same way. The first byte gives the chunks' size.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "Support/FatalError.h"
#include "WidgetService/EntryMethod.h"
#include "WidgetService/LineSplitter.h"
#include "WidgetService/ServiceAnswer.h"
#include "WidgetService/ServiceMessage.h"
#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {
namespace {

using Json = nlohmann::json;

constexpr std::size_t longestLine = 2048;

struct HeardLines {
  std::vector<std::string> lines;
  std::size_t tooLong = 0;
  friend bool operator==(const HeardLines&, const HeardLines&) = default;
};

HeardLines heardOf(std::string_view bytes, std::size_t chunk) {
  HeardLines heard;
  LineSplitter splitter(longestLine,
                        {.line = [&](std::string_view line) { heard.lines.emplace_back(line); },
                         .tooLong = [&] { ++heard.tooLong; }});
  for (; !bytes.empty(); bytes.remove_prefix(std::min(chunk, bytes.size()))) {
    splitter.take(bytes.substr(0, chunk));
  }
  return heard;
}

Json toJson(const RequestIdentifier& id) {
  return std::visit([](const auto& value) { return Json(value); }, id);
}

template <typename Value>
Json toJson(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json adapterJson(const std::optional<AdapterParameter>& adapter) {
  if (!adapter) return nullptr;
  return {{"identifier", toJson(adapter->identifier)}, {"display", adapter->display}};
}

/// Messages as a host writes them.
struct MessageWriter {
  Json operator()(const ServiceRequest& request) const {
    Json message = std::visit(*this, request.call);
    message["id"] = toJson(request.id);
    return message;
  }
  Json operator()(const ListCall& /*call*/) const { return {{"method", "widgets/list"}}; }
  Json operator()(const EntryCall& call) const {
    const WidgetRequest& request = call.request;
    return {{"method", entryMethod(call.entry)},
            {"params",
             {{"kind", call.kind},
              {"family", widgetFamilyName(request.family)},
              {"configuration",
               {{"showTimestamp", toJson(request.configuration.showTimestamp)},
                {"adapter", adapterJson(request.configuration.adapter)}}},
              {"context", {{"isPreview", request.context.isPreview}}}}}};
  }
  Json operator()(const PerformIntentCall& call) const {
    return {{"method", "intent/perform"}, {"params", {{"intent", call.intent}}}};
  }
  Json operator()(const CancelNotification& notification) const {
    return {{"method", "$/cancel"}, {"params", {{"id", toJson(notification.id)}}}};
  }
  Json operator()(const LocationNotification& notification) const {
    return {{"method", "location/changed"}, {"params", {{"status", notification.status}}}};
  }
  Json operator()(const IgnoredNotification& /*notification*/) const {
    return {{"method", "nobody/listens"}};
  }
  Json operator()(const RefusedMessage& /*message*/) const {
    fatalError("a message that is refused is not written out");
  }
};

void expectSmallAnswer(const RefusedMessage& refused) {
  const std::string line = answerLine(refused.id, std::unexpected(refused.error));
  if (line.size() >= 4096) fatalError("the answer to what is refused is not small");
  if (line.contains('\n')) fatalError("the answer to what is refused is more than one line");
  const Json answer = Json::parse(line, nullptr, /*allow_exceptions=*/false);
  if (answer.is_discarded()) fatalError("the answer to what is refused is not JSON");
  if (answer.at("id") != toJson(refused.id)) fatalError("the answer is to another message");
  if (answer.at("error").at("code") != static_cast<int>(refused.error.code) ||
      answer.at("error").at("message") != refused.error.message) {
    fatalError("the answer is of another error");
  }
}

void take(std::string_view line) {
  const HostMessage message = parseHostMessage(line);
  if (const auto* const refused = std::get_if<RefusedMessage>(&message)) {
    return expectSmallAnswer(*refused);
  }
  Json written = std::visit(MessageWriter{}, message);
  written["jsonrpc"] = "2.0";
  if (parseHostMessage(written.dump()) != message) {
    fatalError("a message that is written out is another one");
  }
}

}  // namespace
}  // namespace lanternfold

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lanternfold;
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const HeardLines heard = heardOf(bytes, std::size_t{data[0]} + 1);
  if (heard != heardOf(bytes, bytes.size())) fatalError("the chunks of a stream matter");
  for (const std::string& line : heard.lines) {
    if (line.size() > longestLine) fatalError("a line is longer than a line may be");
    take(line);
  }
  return 0;
}
