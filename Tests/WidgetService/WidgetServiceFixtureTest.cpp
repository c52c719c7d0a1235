// The conversation in Docs/formats is what is said to what the host says there, to the byte.
#include <chrono>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include "Tests/Support/GoldenText.h"
#include "ViewTree/Elements.h"
#include "WidgetService/ExtensionMessage.h"
#include "WidgetService/LineSplitter.h"
#include "WidgetService/ServiceAnswer.h"
#include "WidgetService/ServiceMessage.h"

namespace lanternfold {
namespace {

const std::string fixture =
    LANTERNFOLD_SOURCE_DIR "/Docs/formats/fixtures/widget-service-session.txt";

const std::vector<WidgetDescription> widgets = {
    {.kind = "PanoramicNetworkStateWidget",
     .displayName = "Panoramic",
     .description = "Panoramic widget.",
     .supportedFamilies = {WidgetFamily::small, WidgetFamily::medium, WidgetFamily::large},
     .configuration = ConfigurationKind::intentConfiguration,
     .intent = "ConfigurationIntent"},
    {.kind = "NetworkAdapterWidget",
     .displayName = "Network Adapter",
     .description = "Network adapter widget.",
     .supportedFamilies = {WidgetFamily::medium},
     .configuration = ConfigurationKind::intentConfiguration,
     .intent = "AdapterConfigurationIntent"},
    {.kind = "BandwidthMonitorWidget",
     .displayName = "Bandwidth Monitor",
     .description = "Bandwidth Monitor widget.",
     .supportedFamilies = {WidgetFamily::small},
     .configuration = ConfigurationKind::staticConfiguration,
     .intent = std::nullopt}};

/// Says what an extension says whose entries show the kind and the adapter that were asked for.
class Conversation {
 public:
  explicit Conversation(std::string& said) : said_(said) {}

  void operator()(const ServiceRequest& request) {
    id_ = request.id;
    std::visit(*this, request.call);
  }
  void operator()(const ListCall& /*call*/) { answer(widgetListResult(widgets)); }
  void operator()(const EntryCall& call) {
    if (call.entry != EntryCall::Kind::timeline) return answer(entryResult(entryOf(call)));
    say(locationRequestLine(/*whenInUse=*/false));
    answer(timelineResult({.entries = {entryOf(call)}, .policy = TimelineReloadPolicy::atEnd}));
  }
  void operator()(const PerformIntentCall& /*call*/) { answer(emptyResult()); }
  void operator()(const CancelNotification& /*notification*/) {}
  void operator()(const LocationNotification& /*notification*/) {}
  void operator()(const IgnoredNotification& /*notification*/) {
    ADD_FAILURE() << "the fixture holds a notification that nobody knows";
  }
  void operator()(const RefusedMessage& message) {
    say(answerLine(message.id, std::unexpected(message.error)));
  }

 private:
  static ViewEntry entryOf(const EntryCall& call) {
    const auto& configuration = call.request.configuration;
    std::vector<View> rows{text(call.kind, {.font = {.size = 14}})};
    if (configuration.adapter) rows.push_back(text(configuration.adapter->display, {}));
    if (configuration.showTimestamp.value_or(false)) {
      rows.push_back(drawingTime("Last update %@", {.size = 11}));
    }
    return {.date = std::chrono::sys_days(std::chrono::year(2024) / 1 / 1),
            .view = vstack(HorizontalAlignment::leading, 4, std::move(rows))};
  }

  void answer(const std::string& result) { say(answerLine(id_, result)); }
  void say(const std::string& line) { said_ += "< " + line + "\n"; }

  std::string& said_;
  RequestIdentifier id_;
};

TEST(WidgetServiceFixture, IsWhatIsSaid) {
  std::ifstream stream(fixture);
  const std::string written{std::istreambuf_iterator<char>(stream), {}};
  std::string said;
  std::size_t messages = 0;
  std::istringstream lines(written);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('<')) continue;
    said += line + "\n";
    if (!line.starts_with("> ")) continue;
    ++messages;
    std::visit(Conversation(said), parseHostMessage(line.substr(2)));
  }
  EXPECT_GE(messages, 15U);
  expectGolden(fixture, said);
}

TEST(WidgetServiceFixture, IsUnderstoodByAHost) {
  std::ifstream stream(fixture);
  std::size_t messages = 0;
  for (std::string line; std::getline(stream, line);) {
    if (!line.starts_with("< ")) continue;
    ++messages;
    const ExtensionMessage message = parseExtensionMessage(line.substr(2));
    EXPECT_FALSE(std::holds_alternative<ExtensionNonsense>(message)) << line;
    EXPECT_FALSE(std::holds_alternative<UnknownExtensionMessage>(message)) << line;
  }
  EXPECT_GE(messages, 15U);
}

}  // namespace
}  // namespace lanternfold
