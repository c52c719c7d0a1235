// Any line of an extension through the host's reader of messages and of results: what is refused is
// said in a clause that a terminal may show; a result that is read, written again, is the same.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Support/EscapedText.h"
#include "Support/FatalError.h"
#include "Support/Rfc3339Text.h"
#include "WidgetService/ExtensionMessage.h"
#include "WidgetService/ReceivedResult.h"
#include "WidgetService/ServiceAnswer.h"

namespace lanternfold {
namespace {

void expectShowable(const std::string& clause) {
  if (clause.empty()) fatalError("what is refused is refused without a reason");
  if (clause.size() > 16'384) fatalError("the reason of a refusal is too long");
  if (escapedText(clause) != clause) fatalError("the reason of a refusal is not fit to show");
}

/// The value of the line that a result is sent in.
ArchiveValue sent(const std::string& result) {
  ExtensionMessage message = parseExtensionMessage(answerLine(std::int64_t{7}, result));
  auto* const answer = std::get_if<ReceivedAnswer>(&message);
  if (answer == nullptr) fatalError("a result that was read makes no answer when it is written");
  return std::move(answer->result);
}

template <typename Value>
void expectSame(const std::expected<Value, std::string>& first,
                std::expected<Value, std::string> (*read)(const ArchiveValue&),
                std::string (*write)(const Value&)) {
  if (!first) return expectShowable(first.error());
  if (read(sent(write(*first))) != first) fatalError("a result that is written is another one");
}

/// As they are written: to the millisecond.
ViewEntry cut(ViewEntry entry) {
  const auto written = momentOfRfc3339Text(rfc3339Text(entry.date));
  if (!written) fatalError("a date that was read cannot be written");
  entry.date = *written;
  return entry;
}

void take(const ArchiveValue& result) {
  expectSame(receivedWidgets(result), receivedWidgets, widgetListResult);
  auto entry = receivedEntry(result);
  if (entry) entry = cut(*entry);
  expectSame(entry, receivedEntry, entryResult);
  auto timeline = receivedTimeline(result);
  if (timeline) {
    for (ViewEntry& each : timeline->entries) each = cut(each);
  }
  expectSame(timeline, receivedTimeline, timelineResult);
  if (const auto nothing = receivedNothing(result); !nothing) expectShowable(nothing.error());
}

}  // namespace
}  // namespace lanternfold

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lanternfold;
  const auto message =
      parseExtensionMessage(std::string_view(reinterpret_cast<const char*>(data), size));
  if (const auto* const answer = std::get_if<ReceivedAnswer>(&message)) take(answer->result);
  if (const auto* const nonsense = std::get_if<ExtensionNonsense>(&message)) {
    expectShowable(nonsense->fault);
  }
  if (const auto* const refusal = std::get_if<ReceivedRefusal>(&message)) {
    if (!refusal->message.empty()) expectShowable(refusal->message);
  }
  return 0;
}
