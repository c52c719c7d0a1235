#include <gtest/gtest.h>

#include "Tests/WidgetHost/Service/ClientWorld.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

class ExtensionClientTest : public testing::Test {
 protected:
  void setUpRunning() {
    world.ask();
    world.answerAllAndRun();
    ASSERT_TRUE(world.programs.isHeld());
  }
  ClientWorld world;
};

// Starting and leaving

TEST_F(ExtensionClientTest, TheFirstQuestionStartsTheExtensionAndNothingElse) {
  world.client->tellLocationStatus(3);
  world.dispatch.advance(1h);
  EXPECT_EQ(world.programs.launches(), 0);
  const auto question = world.ask();
  world.answerAllAndRun();
  EXPECT_EQ(world.programs.launches(), 1);
  EXPECT_EQ(world.outcomeOf(question), "answered");
}

TEST_F(ExtensionClientTest, AllQuestionsGoToOneExtension) {
  world.ask();
  world.ask();
  EXPECT_EQ(world.told(), (Lines{"timeline 1", "timeline 2"}));
  world.ask();
  EXPECT_EQ(world.told(), Lines{"timeline 3"});
  EXPECT_EQ(world.programs.launches(), 1);
}

TEST_F(ExtensionClientTest, HalfAMinuteAfterTheLastQuestionItsSocketIsClosed) {
  setUpRunning();
  world.dispatch.advance(20s);
  world.ask();
  world.answerAllAndRun();
  world.dispatch.advance(29s);
  EXPECT_TRUE(world.programs.isHeld());
  world.dispatch.advance(1s);
  EXPECT_FALSE(world.programs.isHeld());
  EXPECT_EQ(world.log.lines(), Lines());
}

TEST_F(ExtensionClientTest, AfterItHasLeftItIsStartedAnewAtOnce) {
  setUpRunning();
  world.dispatch.advance(30s);
  const auto question = world.ask();
  EXPECT_EQ(world.programs.launches(), 2);
  world.answerAllAndRun();
  EXPECT_EQ(world.outcomeOf(question), "answered");
}

TEST_F(ExtensionClientTest, AnExtensionThatLeavesByItselfHasNotFailed) {
  setUpRunning();
  world.programs.end({.exitStatus = 0});
  world.dispatch.runReady();
  const auto question = world.ask();
  EXPECT_EQ(world.programs.launches(), 2);
  world.answerAllAndRun();
  EXPECT_EQ(world.outcomeOf(question), "answered");
  EXPECT_EQ(world.log.lines(), Lines());
}

TEST_F(ExtensionClientTest, DestroyedItCallsNobodyAndClosesTheSocket) {
  const auto question = world.ask();
  world.answerAll();
  const auto cancelled = world.ask();
  world.client->cancel(cancelled);
  world.client.reset();
  world.dispatch.runReady();
  EXPECT_FALSE(world.programs.isHeld());
  EXPECT_EQ(world.outcomeOf(question), "waits");
  EXPECT_EQ(world.outcomeOf(cancelled), "waits");
}

TEST_F(ExtensionClientTest, ACompletionMayDestroyTheClient) {
  world.client->list([this](const auto& /*answer*/) { world.client.reset(); });
  const auto other = world.ask();
  world.answerAllAndRun();
  EXPECT_FALSE(world.programs.isHeld());
  EXPECT_EQ(world.outcomeOf(other), "waits");
}

TEST_F(ExtensionClientTest, ACompletionMayAskAgain) {
  Lines told;
  world.client->list([this](const auto& /*answer*/) { world.ask(); });
  world.answerAllAndRun();
  EXPECT_EQ(world.told(), Lines{"timeline 2"});
}

// Answers

TEST_F(ExtensionClientTest, AnswersComeInAnyOrder) {
  const auto first = world.ask();
  const auto second = world.ask();
  const auto lines = world.programs.takeLines();
  world.programs.say(LampAnswers::lineOf(std::get<ServiceRequest>(parseHostMessage(lines[1]))));
  world.dispatch.runReady();
  EXPECT_EQ(world.outcomeOf(first), "waits");
  EXPECT_EQ(world.outcomeOf(second), "answered");
  world.programs.say(LampAnswers::lineOf(std::get<ServiceRequest>(parseHostMessage(lines[0]))));
  world.dispatch.runReady();
  EXPECT_EQ(world.outcomeOf(first), "answered");
}

TEST_F(ExtensionClientTest, AnAnswerMayComeInPieces) {
  const auto question = world.ask();
  const auto request = std::get<ServiceRequest>(parseHostMessage(world.programs.takeLines()[0]));
  for (const char byte : LampAnswers::lineOf(request) + '\n') {
    EXPECT_EQ(world.outcomeOf(question), "waits");
    world.programs.deliver(std::string(1, byte));
    world.dispatch.runReady();
  }
  EXPECT_EQ(world.outcomeOf(question), "answered");
}

TEST_F(ExtensionClientTest, WhatItRefusesIsRefusedAndToldInTheLog) {
  const auto question = world.ask(WidgetFamily::large);
  world.answerAllAndRun();
  EXPECT_EQ(world.outcomeOf(question), "refused");
  EXPECT_EQ(world.log.lines(), Lines{"the widget extension has refused a question: no such size"});
}

TEST_F(ExtensionClientTest, AnAnswerThatIsNoneToItsQuestionFailsNoOther) {
  const auto wrong = world.ask();
  const auto right = world.ask();
  const auto lines = world.programs.takeLines();
  world.programs.say(answerLine(std::int64_t{1}, emptyResult()));
  world.programs.say(LampAnswers::lineOf(std::get<ServiceRequest>(parseHostMessage(lines[1]))));
  world.dispatch.runReady();
  EXPECT_EQ(world.outcomeOf(wrong), "refused");
  EXPECT_EQ(world.outcomeOf(right), "answered");
  EXPECT_EQ(world.log.lines(),
            Lines{"the widget extension has given an answer that makes no sense: entries: It is "
                  "missing."});
}

TEST_F(ExtensionClientTest, AnswersToNobodyAreIgnored) {
  const auto question = world.ask();
  for (const RequestIdentifier& id :
       {RequestIdentifier(nullptr), RequestIdentifier("1"), RequestIdentifier(std::int64_t{-1}),
        RequestIdentifier(std::int64_t{2}), RequestIdentifier(std::int64_t{0})}) {
    world.programs.say(answerLine(id, emptyResult()));
    world.programs.say(answerLine(id, std::unexpected(ServiceError{})));
  }
  world.answerAllAndRun();
  EXPECT_EQ(world.outcomeOf(question), "answered");
}

// Half a minute, and cancelling

TEST_F(ExtensionClientTest, AQuestionIsGivenUpHalfAMinuteAfterItWasSent) {
  const auto first = world.ask();
  world.dispatch.advance(10s);
  const auto second = world.ask();
  (void)world.told();
  world.dispatch.advance(20s - 1ms);
  EXPECT_EQ(world.outcomeOf(first), "waits");
  world.dispatch.advance(1ms);
  EXPECT_EQ(world.outcomeOf(first), "timed out");
  EXPECT_EQ(world.outcomeOf(second), "waits");
  EXPECT_EQ(world.told(), Lines{"cancel 1"});
  world.dispatch.advance(10s);
  EXPECT_EQ(world.outcomeOf(second), "timed out");
  EXPECT_EQ(world.told(), Lines{"cancel 2"});
}

TEST_F(ExtensionClientTest, AnAnswerThatComesTooLateIsIgnored) {
  const auto late = world.ask();
  const auto request = std::get<ServiceRequest>(parseHostMessage(world.programs.takeLines()[0]));
  world.dispatch.advance(10s);
  const auto next = world.ask();
  world.dispatch.advance(20s);
  world.programs.say(LampAnswers::lineOf(request));
  world.answerAllAndRun();
  EXPECT_EQ(world.outcomeOf(late), "timed out");
  EXPECT_EQ(world.outcomeOf(next), "answered");
}

TEST_F(ExtensionClientTest, WhatIsCancelledIsSaidToTheExtension) {
  const auto question = world.ask();
  (void)world.told();
  world.client->cancel(question);
  EXPECT_EQ(world.told(), Lines{"cancel 1"});
  world.dispatch.runReady();
  EXPECT_EQ(world.outcomeOf(question), "cancelled");
}

TEST_F(ExtensionClientTest, CancelledBeforeItsCompletionAnAnswerIsNotGiven) {
  const auto question = world.ask();
  world.answerAll();
  while (world.outcomeOf(question) == "waits" && world.dispatch.runOne()) {
    world.client->cancel(question);
  }
  world.dispatch.runReady();
  EXPECT_EQ(world.outcomeOf(question), "cancelled");
}

TEST_F(ExtensionClientTest, AQuestionThatIsCancelledBeforeAStartStartsNothing) {
  setUpRunning();
  world.crash();
  const auto question = world.ask();
  world.client->cancel(question);
  world.dispatch.advance(1min);
  EXPECT_EQ(world.outcomeOf(question), "cancelled");
  EXPECT_EQ(world.programs.launches(), 1);
}

TEST_F(ExtensionClientTest, MoreQuestionsThanItTakesAreRefused) {
  for (std::size_t count = 0; count < ExtensionClient::mostQuestions; ++count) world.ask();
  const auto beyond = world.ask();
  world.dispatch.runReady();
  EXPECT_EQ(world.outcomeOf(beyond), "refused");
  EXPECT_EQ(world.told().size(), ExtensionClient::mostQuestions);
}

// Consent

TEST_F(ExtensionClientTest, TheConsentIsToldToEveryExtensionBeforeItIsAsked) {
  world.client->tellLocationStatus(0);
  world.client->tellLocationStatus(2);
  world.ask();
  EXPECT_EQ(world.told(), (Lines{"location 2", "timeline 1"}));
  world.client->tellLocationStatus(3);
  EXPECT_EQ(world.told(), Lines{"location 3"});
  world.dispatch.advance(1min);
  world.ask();
  EXPECT_EQ(world.told(), (Lines{"location 3", "timeline 2"}));
}

TEST_F(ExtensionClientTest, ManyWishesForConsentAreOne) {
  std::vector<bool> asked;
  world.client->setLocationRequestHandler([&](bool whenInUse) { asked.push_back(whenInUse); });
  setUpRunning();
  std::string wishes;
  for (int count = 0; count < 100; ++count) wishes += locationRequestLine(count % 2 == 0) + '\n';
  world.programs.deliver(wishes);
  world.dispatch.runReady();
  EXPECT_EQ(asked, std::vector{false});
}

}  // namespace
}  // namespace lanternfold
