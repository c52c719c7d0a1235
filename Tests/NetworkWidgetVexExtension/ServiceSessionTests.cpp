// A host's conversation with the extension, as the lines that go back and forth.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Service/ServiceSession.h"
#include "Tests/Support/FakeByteStream.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// Keeps the lines' order and gives them without their ends.
std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text.find('\n', begin);
    lines.push_back(text.substr(begin, end - begin));
    begin = end == std::string::npos ? text.size() : end + 1;
  }
  return lines;
}

class FixedIntent final : public AppIntent {
 public:
  [[nodiscard]] std::string name() const override { return "RefreshAppIntent"; }
  [[nodiscard]] std::string title() const override { return "Refresh"; }
  [[nodiscard]] IntentResult perform() const override { return {}; }
};

class ServiceSessionTest : public testing::Test {
 protected:
  ServiceSessionTest() {
    dispatch_.mainQueue().async([this] { session_.start(); });
  }

  /// A widget whose timelines are made when the test says so.
  Widget slowWidget() {
    Widget widget;
    widget.description = {.kind = "Slow", .supportedFamilies = {WidgetFamily::small}};
    widget.placeholder = [this](const WidgetRequest&) { return entry(); };
    widget.snapshot = [this](const WidgetRequest&, const Widget::SnapshotCompletion& completion) {
      completion(entry());
    };
    widget.timeline = [this](const WidgetRequest&, Widget::TimelineCompletion completion) {
      if (slowBegin_) slowBegin_();
      timelines_.push_back(std::move(completion));
    };
    return widget;
  }
  Widget quickWidget() {
    Widget widget = slowWidget();
    widget.description.kind = "Quick";
    widget.timeline = [this](const WidgetRequest&, const Widget::TimelineCompletion& completion) {
      completion({.entries = {entry()}, .policy = TimelineReloadPolicy::never});
    };
    return widget;
  }
  [[nodiscard]] ViewEntry entry() const { return {.date = clock_.now(), .view = emptyView()}; }

  void say(const std::string& lines) {
    stream_.deliver(lines);
    dispatch_.runReady();
  }
  static std::string request(const std::string& id, const std::string& method,
                             const std::string& kind) {
    return R"({"jsonrpc":"2.0","id":)" + id + R"(,"method":")" + method +
           R"(","params":{"kind":")" + kind + R"(","family":"small"}})" + "\n";
  }
  static std::string timeline(const std::string& id, const std::string& kind = "Slow") {
    return request(id, "widget/timeline", kind);
  }
  void complete(std::size_t index) {
    timelines_.at(index)({.entries = {entry()}});
    dispatch_.runReady();
  }
  std::vector<std::string> answers() { return linesOf(stream_.take()); }
  static std::string error(const std::string& id, int code) {
    return R"({"jsonrpc":"2.0","id":)" + id + R"(,"error":{"code":)" + std::to_string(code);
  }
  static auto answerTo(const std::string& id) {
    return testing::StartsWith(R"({"jsonrpc":"2.0","id":)" + id + R"(,"result":)");
  }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeByteStream stream_{dispatch_.mainQueue()};
  std::function<void()> slowBegin_;
  std::vector<Widget::TimelineCompletion> timelines_;
  WidgetResponder responder_{{slowWidget(), quickWidget()}, {std::make_shared<FixedIntent>()}};
  std::vector<std::int32_t> statuses_;
  int ends_ = 0;
  ServiceSession session_{{.stream = stream_,
                           .responder = responder_,
                           .mainQueue = dispatch_.mainQueue(),
                           .clock = clock_,
                           .locationChanged = [this](auto status) { statuses_.push_back(status); },
                           .ended = [this] { ++ends_; }}};
};

TEST_F(ServiceSessionTest, ListsTheWidgetsInTheirOrder) {
  say("{\"jsonrpc\":\"2.0\",\"id\":\"a\",\"method\":\"widgets/list\"}\n");
  const auto lines = answers();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_THAT(lines[0], answerTo("\"a\""));
  EXPECT_LT(lines[0].find("Slow"), lines[0].find("Quick"));
}

TEST_F(ServiceSessionTest, APlaceholderAndASnapshotAreAnsweredAtOnceATimelineWhenItIsMade) {
  say(timeline("1") + request("2", "widget/placeholder", "Slow") +
      request("3", "widget/snapshot", "Slow"));
  EXPECT_THAT(answers(), ElementsAre(answerTo("2"), answerTo("3")));
  complete(0);
  EXPECT_THAT(answers(), ElementsAre(answerTo("1")));
}

TEST_F(ServiceSessionTest, RequestsRunBesideEachOtherAndAreAnsweredAsTheyAreDone) {
  say(timeline("1") + timeline("2") + timeline("3"));
  ASSERT_EQ(timelines_.size(), 3U);
  complete(2);
  complete(0);
  EXPECT_THAT(answers(), ElementsAre(answerTo("3"), answerTo("1")));
}

TEST_F(ServiceSessionTest, AnUnknownKindAndAFamilyThatTheWidgetLacksAreInvalid) {
  say(timeline("1", "Nothing") +
      R"({"jsonrpc":"2.0","id":2,"method":"widget/snapshot","params":{"kind":"Slow","family":"large"}})"
      "\n");
  EXPECT_THAT(answers(), UnorderedElementsAre(HasSubstr(error("1", -32602)),
                                              AllOf(HasSubstr(error("2", -32602)),
                                                    HasSubstr("Slow comes in small"))));
  EXPECT_THAT(timelines_, IsEmpty());
}

TEST_F(ServiceSessionTest, AnIntentIsPerformedWhenItExists) {
  say(R"({"jsonrpc":"2.0","id":1,"method":"intent/perform","params":{"intent":"RefreshAppIntent"}})"
      "\n"
      R"({"jsonrpc":"2.0","id":2,"method":"intent/perform","params":{"intent":"Other"}})"
      "\n");
  EXPECT_THAT(answers(), ElementsAre(R"({"jsonrpc":"2.0","id":1,"result":{}})",
                                     HasSubstr(error("2", -32602))));
}

TEST_F(ServiceSessionTest, WhatIsNoRequestIsRefusedAndTheConversationGoesOn) {
  say("nonsense\n[]\n{\"jsonrpc\":\"2.0\",\"id\":7,\"method\":\"none\"}\n" +
      timeline("8", "Quick"));
  EXPECT_THAT(answers(),
              ElementsAre(HasSubstr(error("null", -32700)), HasSubstr(error("null", -32600)),
                          HasSubstr(error("7", -32601)), answerTo("8")));
}

TEST_F(ServiceSessionTest, ATooLongLineIsRefusedOnceAndSkipped) {
  say(std::string(longestServiceLine + 1, 'x'));
  EXPECT_THAT(answers(), ElementsAre(HasSubstr(error("null", -32600))));
  say(std::string(1000, 'x') + "\n" + timeline("1", "Quick"));
  EXPECT_THAT(answers(), ElementsAre(answerTo("1")));
}

TEST_F(ServiceSessionTest, AnIdentifierOfARequestUnderWayIsRefusedUnderNone) {
  say(timeline("1") + timeline("1"));
  EXPECT_THAT(answers(), ElementsAre(HasSubstr(error("null", -32600))));
  ASSERT_EQ(timelines_.size(), 1U);
  complete(0);
  EXPECT_THAT(answers(), ElementsAre(answerTo("1")));
  say(timeline("1", "Quick"));
  EXPECT_THAT(answers(), ElementsAre(answerTo("1"))) << "what is answered may be used again";
}

TEST_F(ServiceSessionTest, ACancelledRequestIsNotAnswered) {
  say(timeline("1") + timeline("\"b\""));
  say(R"({"jsonrpc":"2.0","method":"$/cancel","params":{"id":1}})"
      "\n");
  complete(0);
  complete(1);
  EXPECT_THAT(answers(), ElementsAre(answerTo("\"b\"")));
}

TEST_F(ServiceSessionTest, ACancelledRequestThatWaitsIsNeverBegun) {
  for (std::size_t count = 0; count < ServiceSession::mostAtOnce; ++count) {
    say(timeline(std::to_string(count)));
  }
  say(timeline("1000") + timeline("1001") +
      R"({"jsonrpc":"2.0","method":"$/cancel","params":{"id":1000}})"
      "\n");
  EXPECT_EQ(timelines_.size(), ServiceSession::mostAtOnce);
  complete(0);
  EXPECT_EQ(timelines_.size(), ServiceSession::mostAtOnce + 1);
  complete(timelines_.size() - 1);
  EXPECT_THAT(answers(), ElementsAre(answerTo("0"), answerTo("1001")));
}

TEST_F(ServiceSessionTest, ATimelineThatIsMadeTwiceIsAnsweredOnce) {
  say(timeline("1"));
  complete(0);
  complete(0);
  EXPECT_THAT(answers(), ElementsAre(answerTo("1")));
}

TEST_F(ServiceSessionTest, TooManyThatWaitAreRefusedAndTheOthersAnswered) {
  std::string all;
  constexpr std::size_t most = ServiceSession::mostAtOnce + ServiceSession::mostWaiting;
  for (std::size_t count = 0; count < most + 2; ++count) all += timeline(std::to_string(count));
  say(all);
  EXPECT_THAT(answers(), ElementsAre(HasSubstr(error(std::to_string(most), -32000)),
                                     HasSubstr(error(std::to_string(most + 1), -32000))));
  EXPECT_EQ(timelines_.size(), ServiceSession::mostAtOnce);
  for (std::size_t index = 0; index < timelines_.size(); ++index) complete(index);
  EXPECT_EQ(timelines_.size(), most);
  EXPECT_EQ(answers().size(), most);
}

TEST_F(ServiceSessionTest, ManyTimelinesThatAreMadeAtOnceWaitForTheirTurnWithoutNesting) {
  std::string all;
  for (std::size_t count = 0; count < ServiceSession::mostAtOnce; ++count) {
    all += timeline(std::to_string(count));
  }
  for (int count = 0; count < 1000; ++count)
    all += timeline("\"q" + std::to_string(count) + '"', "Quick");
  say(all);
  EXPECT_THAT(answers(), IsEmpty());
  complete(0);
  dispatch_.runReady();
  EXPECT_EQ(answers().size(), 1001U);
}

TEST_F(ServiceSessionTest, ATimelineThatIsNeverMadeGivesItsPlaceUp) {
  for (std::size_t count = 0; count < ServiceSession::mostAtOnce; ++count) {
    say(timeline(std::to_string(count)));
  }
  dispatch_.advance(ServiceSession::patience - 1s);
  say(timeline("1000"));
  EXPECT_EQ(timelines_.size(), ServiceSession::mostAtOnce);
  dispatch_.advance(1s);
  EXPECT_EQ(timelines_.size(), ServiceSession::mostAtOnce + 1);
  EXPECT_EQ(ends_, 0);
}

// Those that were under way were once neither answered nor refused.
TEST_F(ServiceSessionTest, AfterHalfAMinuteWithoutARequestItEndsAndRefusesWhatIsNotAnswered) {
  for (std::size_t count = 0; count < ServiceSession::mostAtOnce + 1; ++count) {
    say(timeline(std::to_string(count)));
  }
  dispatch_.advance(ServiceSession::patience - 1ns);
  EXPECT_EQ(ends_, 0);
  // A cancellation is no request.
  say("{\"jsonrpc\":\"2.0\",\"method\":\"$/cancel\",\"params\":{\"id\":0}}\n");
  dispatch_.advance(1ns);
  EXPECT_EQ(ends_, 1);
  const auto lines = answers();
  EXPECT_EQ(lines.size(), ServiceSession::mostAtOnce);
  EXPECT_THAT(lines, Each(HasSubstr("\"code\":-32000")));
}

TEST_F(ServiceSessionTest, AHostThatNeverReadsIsNotWaitedForAtTheEnd) {
  stream_.setReading(false);
  say(timeline("1"));
  dispatch_.advance(ServiceSession::patience);
  EXPECT_EQ(ends_, 0);
  dispatch_.advance(ServiceSession::farewell);
  EXPECT_EQ(ends_, 1);
}

// Requests that each keep the queue busy kept everything else waiting until the last of them.
TEST_F(ServiceSessionTest, BetweenTwoTimelinesEverythingElseHasItsTurn) {
  std::vector<std::string> order;
  slowBegin_ = [&] {
    order.emplace_back("timeline");
    clock_.advance(500ms);
  };
  stream_.deliver(timeline("1") + timeline("2") + timeline("3"));
  dispatch_.mainQueue().async(
      [&] { dispatch_.mainQueue().async([&] { order.emplace_back("other"); }); });
  dispatch_.runReady();
  ASSERT_EQ(order.size(), 4U);
  EXPECT_NE(order.back(), "other");
}

TEST_F(ServiceSessionTest, WhenTheHostGoesWhatHasNotBegunNeverBegins) {
  slowBegin_ = [&] {
    if (timelines_.empty()) stream_.end(ByteStream::End::gone);
  };
  say(timeline("1") + timeline("2") + timeline("3"));
  EXPECT_EQ(ends_, 1);
  EXPECT_LT(timelines_.size(), 3U);
}

TEST_F(ServiceSessionTest, EveryRequestBeginsTheHalfMinuteAnew) {
  for (int count = 0; count < 5; ++count) {
    dispatch_.advance(ServiceSession::patience - 1s);
    say(timeline(std::to_string(count), "Quick"));
  }
  EXPECT_EQ(ends_, 0);
  dispatch_.advance(ServiceSession::patience);
  EXPECT_EQ(ends_, 1);
}

TEST_F(ServiceSessionTest, WhenTheHostIsGoneNothingIsAnsweredAndItEnds) {
  say(timeline("1"));
  stream_.end(ByteStream::End::gone);
  dispatch_.runReady();
  EXPECT_EQ(ends_, 1);
  complete(0);
  EXPECT_THAT(answers(), IsEmpty());
}

TEST_F(ServiceSessionTest, AHostThatHasSaidEverythingIsAnsweredBeforeItEnds) {
  say(timeline("1"));
  stream_.end(ByteStream::End::noMoreInput);
  dispatch_.runReady();
  EXPECT_EQ(ends_, 0);
  complete(0);
  EXPECT_THAT(answers(), ElementsAre(answerTo("1")));
  EXPECT_EQ(ends_, 1);
}

TEST_F(ServiceSessionTest, AHostThatHasNothingToSayIsLeft) {
  dispatch_.runReady();
  stream_.end(ByteStream::End::noMoreInput);
  dispatch_.runReady();
  EXPECT_EQ(ends_, 1);
}

TEST_F(ServiceSessionTest, LocationGoesBothWays) {
  dispatch_.runReady();
  session_.requestLocation(false);
  EXPECT_THAT(answers(),
              ElementsAre(AllOf(HasSubstr("location/request"), EndsWith("\"whenInUse\":false}}"))));
  say(R"({"jsonrpc":"2.0","method":"location/changed","params":{"status":3}})"
      "\n");
  EXPECT_THAT(statuses_, ElementsAre(3));
  EXPECT_THAT(answers(), IsEmpty());
}

TEST(ServiceSessionDeathTest, TwoWidgetsOfOneKindAreAFaultOfTheProgram) {
  Widget widget;
  widget.description.kind = "Same";
  EXPECT_DEATH((void)WidgetResponder({widget, widget}, {}), "two widgets of a bundle");
}

}  // namespace
}  // namespace lanternfold
