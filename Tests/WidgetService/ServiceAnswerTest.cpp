#include <chrono>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "ViewTree/Elements.h"
#include "ViewTree/ViewArchive.h"
#include "WidgetService/ServiceAnswer.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Json = nlohmann::json;

constexpr auto newYear2024 = std::chrono::sys_days(std::chrono::year(2024) / 1 / 1);

ViewEntry entryOf(View view, std::chrono::system_clock::time_point date = newYear2024) {
  return {.date = date, .view = std::move(view)};
}

std::string refusal(const RequestIdentifier& id, ServiceErrorCode code, std::string message) {
  return answerLine(id, std::unexpected(ServiceError{code, std::move(message)}));
}

// Results

TEST(WidgetListResult, HasEveryMemberOfAWidgetWithAnIntent) {
  const WidgetDescription widget{
      .kind = "PanoramicNetworkStateWidget",
      .displayName = "Panoramic",
      .description = "Panoramic widget.",
      .supportedFamilies = {WidgetFamily::small, WidgetFamily::medium, WidgetFamily::large},
      .configuration = ConfigurationKind::intentConfiguration,
      .intent = "ConfigurationIntent"};
  EXPECT_EQ(widgetListResult({widget}),
            R"({"widgets":[{"kind":"PanoramicNetworkStateWidget","displayName":"Panoramic",)"
            R"("description":"Panoramic widget.","families":["small","medium","large"],)"
            R"("configuration":"intent","intent":"ConfigurationIntent"}]})");
}

TEST(WidgetListResult, AWidgetWithoutAConfigurationHasANullIntent) {
  const WidgetDescription widget{.kind = "B",
                                 .displayName = "Bandwidth \"Monitor\"",
                                 .description = "",
                                 .supportedFamilies = {WidgetFamily::small},
                                 .configuration = ConfigurationKind::staticConfiguration,
                                 .intent = std::nullopt};
  EXPECT_EQ(widgetListResult({widget, widget}),
            R"({"widgets":[{"kind":"B","displayName":"Bandwidth \"Monitor\"","description":"",)"
            R"("families":["small"],"configuration":"static","intent":null},)"
            R"({"kind":"B","displayName":"Bandwidth \"Monitor\"","description":"",)"
            R"("families":["small"],"configuration":"static","intent":null}]})");
}

TEST(WidgetListResult, OfNoWidgetsIsAnEmptyList) {
  EXPECT_EQ(widgetListResult({}), R"({"widgets":[]})");
}

TEST(EntryResult, IsTheDateInUtcAndTheArchivedView) {
  const View view = text("en0", {});
  EXPECT_EQ(entryResult(entryOf(view, newYear2024 + 13h + 120ms)),
            R"({"date":"2024-01-01T13:00:00.120Z","view":)" + archiveJson(view) + "}");
}

TEST(TimelineResult, HasItsEntriesInOrderAndThePolicy) {
  const View first = text("first", {});
  const View second = emptyView();
  EXPECT_EQ(timelineResult({.entries = {entryOf(first), entryOf(second, newYear2024 + 1s)},
                            .policy = TimelineReloadPolicy::atEnd}),
            R"({"entries":[{"date":"2024-01-01T00:00:00.000Z","view":)" + archiveJson(first) +
                R"(},{"date":"2024-01-01T00:00:01.000Z","view":)" + archiveJson(second) +
                R"(}],"policy":"atEnd"})");
}

TEST(TimelineResult, MayHaveNoEntriesAndNeverReload) {
  EXPECT_EQ(timelineResult({.entries = {}, .policy = TimelineReloadPolicy::never}),
            R"({"entries":[],"policy":"never"})");
}

TEST(EmptyResult, IsAnObject) { EXPECT_EQ(emptyResult(), "{}"); }

// Answers

TEST(AnswerLine, RepeatsTheIdentifierAsItCame) {
  EXPECT_EQ(answerLine(7, emptyResult()), R"({"jsonrpc":"2.0","id":7,"result":{}})");
  EXPECT_EQ(answerLine(-9007199254740992, emptyResult()),
            R"({"jsonrpc":"2.0","id":-9007199254740992,"result":{}})");
  EXPECT_EQ(answerLine("7", emptyResult()), R"({"jsonrpc":"2.0","id":"7","result":{}})");
  EXPECT_EQ(answerLine("a\"\n\\€", emptyResult()),
            R"({"jsonrpc":"2.0","id":"a\"\n\\€","result":{}})");
  EXPECT_EQ(answerLine(nullptr, emptyResult()), R"({"jsonrpc":"2.0","id":null,"result":{}})");
}

TEST(AnswerLine, OfAnErrorHasCodeAndMessage) {
  EXPECT_EQ(refusal(7, ServiceErrorCode::methodNotFound, "\"x\" is no method of this service"),
            R"({"jsonrpc":"2.0","id":7,"error":{"code":-32601,)"
            R"("message":"\"x\" is no method of this service"}})");
}

TEST(AnswerLine, OfEveryErrorHasItsCode) {
  const auto codeOf = [](ServiceErrorCode code) {
    return Json::parse(refusal(nullptr, code, "no")).at("error").at("code").get<int>();
  };
  EXPECT_EQ(codeOf(ServiceErrorCode::parseError), -32700);
  EXPECT_EQ(codeOf(ServiceErrorCode::invalidRequest), -32600);
  EXPECT_EQ(codeOf(ServiceErrorCode::methodNotFound), -32601);
  EXPECT_EQ(codeOf(ServiceErrorCode::invalidParams), -32602);
  EXPECT_EQ(codeOf(ServiceErrorCode::internalError), -32603);
  EXPECT_EQ(codeOf(ServiceErrorCode::busy), -32000);
}

TEST(AnswerLine, OfAnErrorIsSmallValidJsonWhateverItSays) {
  const std::string id(longestIdentifierText, '\x01');
  for (const std::string& message :
       {std::string(10'000, '\n'), std::string(10'000, '\xFF'), std::string(10'000, '"'),
        std::string(10'000, '\0'), std::string(10'001, '\\'), "x" + std::string(10'000, '\xE2')}) {
    const std::string line = refusal(id, ServiceErrorCode::busy, message);
    EXPECT_LT(line.size(), 4096U);
    EXPECT_FALSE(line.contains('\n'));
    const Json answer = Json::parse(line);
    EXPECT_EQ(answer.at("id"), id);
    EXPECT_LE(answer.at("error").at("message").get<std::string>().size(), longestErrorText);
  }
}

TEST(AnswerLine, AsLongAsALineMayBe) {
  const std::string frame = answerLine(7, std::string());
  const std::string result = '"' + std::string(longestServiceLine - frame.size() - 2, 'x') + '"';
  EXPECT_EQ(answerLine(7, result).size(), longestServiceLine);
  EXPECT_EQ(answerLine(7, result + ' '), R"({"jsonrpc":"2.0","id":7,"error":{"code":-32603,)"
                                         R"("message":"the answer is longer than 4 MiB"}})");
}

TEST(AnswerLine, IsOneLineWhateverTheTextsHold) {
  const WidgetDescription widget{.kind = "a\nb",
                                 .displayName = "c\r\nd",
                                 .description = std::string("\0\xFF", 2),
                                 .supportedFamilies = {},
                                 .configuration = ConfigurationKind::staticConfiguration,
                                 .intent = "e\nf"};
  const std::string line = answerLine(7, widgetListResult({widget}));
  EXPECT_FALSE(line.contains('\n'));
  const Json answer = Json::parse(line).at("result").at("widgets").at(0);
  EXPECT_EQ(answer.at("kind"), "a\nb");
  EXPECT_EQ(answer.at("description"), std::string("\0\uFFFD", 4));
  const std::string entry = answerLine(7, entryResult(entryOf(text("g\nh\xFF", {}))));
  EXPECT_FALSE(entry.contains('\n'));
  EXPECT_TRUE(Json::accept(entry));
}

TEST(LocationRequestLine, IsANotification) {
  EXPECT_EQ(locationRequestLine(false),
            R"({"jsonrpc":"2.0","method":"location/request","params":{"whenInUse":false}})");
  EXPECT_EQ(locationRequestLine(true),
            R"({"jsonrpc":"2.0","method":"location/request","params":{"whenInUse":true}})");
}

}  // namespace
}  // namespace lanternfold
