// What the client makes of an extension that fails, and of one that means harm.
#include <gtest/gtest.h>

#include "Tests/WidgetHost/Service/ClientWorld.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

class FailingExtensionTest : public testing::Test {
 protected:
  /// Its first question is answered.
  void setUpRunning() {
    world.ask();
    world.answerAllAndRun();
  }
  /// Fails as often as makes it too often.
  void failTooOften() {
    while (!world.client->hasFailedTooOften()) {
      world.ask();
      world.dispatch.advance(10s);
      world.crash();
    }
  }
  ClientWorld world;
};

TEST_F(FailingExtensionTest, ACrashFailsAllThatWasAsked) {
  const auto first = world.ask();
  const auto second = world.ask();
  world.crash();
  EXPECT_EQ(world.outcomeOf(first), "gone");
  EXPECT_EQ(world.outcomeOf(second), "gone");
  EXPECT_EQ(world.log.lines(), Lines{"the widget extension was ended by signal 11"});
}

TEST_F(FailingExtensionTest, WhatItHasAnsweredBeforeACrashIsAnswered) {
  const auto first = world.ask();
  world.answerAll();
  const auto second = world.ask();
  world.crash();
  EXPECT_EQ(world.outcomeOf(first), "answered");
  EXPECT_EQ(world.outcomeOf(second), "gone");
}

TEST_F(FailingExtensionTest, ACrashWithNothingToAnswerIsAFailureToo) {
  setUpRunning();
  world.programs.end({.exitStatus = 1});
  world.dispatch.runReady();
  world.ask();
  EXPECT_EQ(world.programs.launches(), 1);
  EXPECT_EQ(world.log.lines(), Lines{"the widget extension has ended with status 1"});
}

TEST_F(FailingExtensionTest, LeavingQuestionsUnansweredIsAFailure) {
  const auto question = world.ask();
  world.programs.end({.exitStatus = 0});
  world.dispatch.runReady();
  EXPECT_EQ(world.outcomeOf(question), "gone");
  EXPECT_EQ(world.log.lines(), Lines{"the widget extension has left questions unanswered"});
}

TEST_F(FailingExtensionTest, OneThatCannotBeStartedIsToldWhatToDo) {
  world.programs.setLaunchError(std::make_error_code(std::errc::no_such_file_or_directory));
  const auto question = world.ask();
  EXPECT_EQ(world.outcomeOf(question), "waits") << "never inside the call";
  world.dispatch.runReady();
  EXPECT_EQ(world.outcomeOf(question), "gone");
  EXPECT_EQ(world.log.lines(),
            Lines{"the widget extension could not be started: No such file or directory; install "
                  "it beside the host again"});
}

/// It was once to be installed again, whatever the machine lacked.
TEST_F(FailingExtensionTest, OneThatTheMachineHasNoRoomForIsNotToBeInstalledAgain) {
  world.programs.setLaunchError(std::make_error_code(std::errc::too_many_files_open));
  world.ask();
  world.dispatch.runReady();
  EXPECT_EQ(world.log.lines(),
            Lines{"the widget extension could not be started: Too many open files; check that the "
                  "limits on processes, open files and memory leave room for it"});
}

TEST_F(FailingExtensionTest, QuestionsWaitForTheNextStart) {
  setUpRunning();
  world.crash();
  const auto question = world.ask();
  world.dispatch.advance(1s - 1ms);
  EXPECT_EQ(world.programs.launches(), 1);
  world.dispatch.advance(1ms);
  EXPECT_EQ(world.programs.launches(), 2);
  world.answerAllAndRun();
  EXPECT_EQ(world.outcomeOf(question), "answered");
}

TEST_F(FailingExtensionTest, AWaitingQuestionHasItsHalfMinuteFromWhenItIsSent) {
  world.ask();
  for (int crash = 0; crash < 3; ++crash) {
    world.crash();
    world.dispatch.advance(1min);
    world.ask();
  }
  world.crash();
  const auto asked = world.ask();
  world.dispatch.advance(8s + 30s - 1ms);
  EXPECT_EQ(world.outcomeOf(asked), "waits");
  world.dispatch.advance(1ms);
  EXPECT_EQ(world.outcomeOf(asked), "timed out");
}

TEST_F(FailingExtensionTest, PausesGrowUntilATimelineIsAnswered) {
  std::vector<std::chrono::seconds> pauses;
  const auto pauseAfterCrash = [&] {
    world.crash();
    const auto question = world.ask();
    const int before = world.programs.launches();
    std::chrono::seconds pause{0};
    while (world.programs.launches() == before && pause < 10min) {
      world.dispatch.advance(1s);
      pause += 1s;
    }
    EXPECT_EQ(world.outcomeOf(question), "waits");
    return pause;
  };
  world.ask();
  for (int crash = 0; crash < 11; ++crash) {
    world.dispatch.advance(20s);
    pauses.push_back(pauseAfterCrash());
  }
  EXPECT_EQ(pauses, (std::vector<std::chrono::seconds>{1s, 2s, 4s, 8s, 16s, 32s, 64s, 128s, 256s,
                                                       300s, 300s}));
  world.client->list([](const auto& /*answer*/) {});
  world.answerAllAndRun();
  EXPECT_EQ(pauseAfterCrash(), 1s);
}

TEST_F(FailingExtensionTest, TheSameFailureIsToldOnceUntilATimelineIsAnswered) {
  for (int crash = 0; crash < 3; ++crash) {
    world.ask();
    world.dispatch.advance(25s);
    world.crash();
  }
  EXPECT_EQ(world.log.lines().size(), 1U);
  world.ask();
  world.dispatch.advance(10s);
  world.answerAllAndRun();
  world.crash();
  EXPECT_EQ(world.log.lines(), Lines(2, "the widget extension was ended by signal 11"));
}

// Too often

TEST_F(FailingExtensionTest, FiveFailuresWithinAMinuteAndItIsLeftAlone) {
  std::vector<bool> changes;
  world.client->setFailedTooOftenHandler(
      [&] { changes.push_back(world.client->hasFailedTooOften()); });
  for (int crash = 1; crash <= 5; ++crash) {
    EXPECT_FALSE(world.client->hasFailedTooOften());
    world.ask();
    world.dispatch.advance(10s);
    EXPECT_EQ(world.programs.launches(), crash);
    world.crash();
  }
  EXPECT_TRUE(world.client->hasFailedTooOften());
  EXPECT_EQ(world.outcomeOf(4), "gone");
  EXPECT_EQ(world.outcomeOf(5), "too often");
  EXPECT_EQ(changes, std::vector{true});
  EXPECT_EQ(world.log.lines(),
            (Lines{"the widget extension was ended by signal 11",
                   "the widget extension has failed too often and is left alone; press \"Try "
                   "again\" on a widget to have it started"}));
  const auto question = world.ask();
  world.dispatch.advance(24h);
  EXPECT_EQ(world.outcomeOf(question), "too often");
  EXPECT_EQ(world.programs.launches(), 5);
}

TEST_F(FailingExtensionTest, FiveStartsThatFailAreTooOften) {
  world.programs.setLaunchError(std::make_error_code(std::errc::permission_denied));
  for (int start = 0; start < 5; ++start) {
    world.ask();
    world.dispatch.advance(10s);
  }
  EXPECT_TRUE(world.client->hasFailedTooOften());
  EXPECT_EQ(world.log.lines().size(), 2U);
}

TEST_F(FailingExtensionTest, TriedAgainItIsStartedForTheNextQuestionAtOnce) {
  failTooOften();
  const int before = world.programs.launches();
  std::vector<bool> changes;
  world.client->setFailedTooOftenHandler(
      [&] { changes.push_back(world.client->hasFailedTooOften()); });
  world.client->tryAgain();
  EXPECT_FALSE(world.client->hasFailedTooOften());
  const auto question = world.ask();
  EXPECT_EQ(world.programs.launches(), before + 1);
  world.answerAllAndRun();
  EXPECT_EQ(world.outcomeOf(question), "answered");
  EXPECT_EQ(changes, std::vector{false});
}

TEST_F(FailingExtensionTest, TriedAgainAWaitingQuestionIsAskedAtOnce) {
  setUpRunning();
  world.crash();
  const auto question = world.ask();
  world.client->tryAgain();
  world.answerAllAndRun();
  EXPECT_EQ(world.outcomeOf(question), "answered");
}

// Harm

TEST_F(FailingExtensionTest, ALineThatMakesNoSenseEndsIt) {
  for (const std::string line : {"Starting up...", "{}", "[]", R"({"jsonrpc":"2.0","id":1})"}) {
    ClientWorld other;
    const auto question = other.ask();
    other.programs.say(line);
    other.programs.say(answerLine(std::int64_t{1}, emptyResult()));
    other.dispatch.runReady();
    EXPECT_EQ(other.outcomeOf(question), "gone") << line;
    EXPECT_TRUE(other.programs.wasKilled()) << line;
    ASSERT_EQ(other.log.lines().size(), 1U);
    EXPECT_TRUE(other.log.lines()[0].starts_with("the widget extension broke the rules: "));
  }
}

TEST_F(FailingExtensionTest, ALineThatIsTooLongEndsIt) {
  const auto question = world.ask();
  for (int piece = 0; piece <= 64; ++piece) world.programs.deliver(std::string(65536, ' '));
  world.dispatch.runReady();
  EXPECT_EQ(world.outcomeOf(question), "gone");
  EXPECT_TRUE(world.programs.wasKilled());
  EXPECT_EQ(world.log.lines(), Lines{"the widget extension broke the rules: a line is too long"});
}

TEST_F(FailingExtensionTest, TalkingWithoutEndEndsIt) {
  const auto question = world.ask();
  for (std::size_t count = 0; count <= ExtensionClient::mostUnasked; ++count) {
    EXPECT_EQ(world.outcomeOf(question), "waits") << count;
    world.programs.say(R"({"jsonrpc":"2.0","method":"weather/changed"})");
    world.dispatch.runReady();
  }
  EXPECT_EQ(world.outcomeOf(question), "gone");
  EXPECT_TRUE(world.programs.wasKilled());
}

TEST_F(FailingExtensionTest, ReadingNothingEndsItBeforeMemoryRunsOut) {
  setUpRunning();
  world.programs.setReading(false);
  const WidgetRequest request{
      .configuration = {.adapter = AdapterParameter{"en0", std::string(1000, 'n')}}};
  std::size_t asked = 0;
  while (world.programs.isRunning() && asked < 10'000) {
    world.client->cancel(world.client->timeline("Lamp", request, [](const auto& /*answer*/) {}));
    ++asked;
  }
  world.dispatch.runReady();
  EXPECT_TRUE(world.programs.wasKilled());
  EXPECT_LT(asked * 1000, 2 * ExtensionConversation::mostUnread);
  EXPECT_EQ(world.log.lines(),
            Lines{"the widget extension broke the rules: it does not read what it is asked"});
}

TEST_F(FailingExtensionTest, ClosingItsSocketWithoutEndingIsAFailureTwoSecondsLater) {
  const auto question = world.ask();
  world.programs.closeSocket();
  world.dispatch.advance(2s - 1ms);
  EXPECT_EQ(world.outcomeOf(question), "waits");
  world.dispatch.advance(1ms);
  EXPECT_EQ(world.outcomeOf(question), "gone");
  EXPECT_TRUE(world.programs.wasKilled());
}

TEST_F(FailingExtensionTest, OnlyATimerOrTwoWaitHoweverMuchIsAsked) {
  for (int count = 0; count < 1000; ++count) {
    world.ask();
    world.answerAllAndRun();
    world.dispatch.advance(1ms);
  }
  EXPECT_LE(world.dispatch.waitingWorks(), 2U);
}

}  // namespace
}  // namespace lanternfold
