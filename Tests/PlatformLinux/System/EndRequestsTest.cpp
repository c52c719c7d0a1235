#include <cerrno>
#include <chrono>
#include <csignal>
#include <optional>
#include <poll.h>

#include <gtest/gtest.h>

#include "PlatformLinux/System/EndRequests.h"
#include "Tests/PlatformLinux/ChildProcess.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

bool isReadable(const EndRequests& requests, std::chrono::milliseconds within = {}) {
  pollfd waiting{.fd = requests.descriptor(), .events = POLLIN, .revents = 0};
  int count = 0;
  do {
    count = ::poll(&waiting, 1, static_cast<int>(within.count()));
  } while (count < 0 && errno == EINTR);
  return count == 1;
}

auto handlerOf(int signal) {
  struct sigaction action{};
  (void)::sigaction(signal, nullptr, &action);
  return action.sa_handler;
}

TEST(EndRequestsTest, EachSignalMakesItReadable) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    ChildProcess child([signal] {
      const EndRequests requests;
      const bool before = isReadable(requests);
      (void)::raise(signal);
      return !before && isReadable(requests) && isReadable(requests) ? 0 : 1;
    });
    EXPECT_EQ(child.wait(), 0) << signal;
  }
}

TEST(EndRequestsTest, AnIgnoredHangupStaysIgnored) {
  ChildProcess child([] {
    (void)::signal(SIGHUP, SIG_IGN);
    const EndRequests requests;
    (void)::raise(SIGHUP);
    return isReadable(requests) ? 1 : 0;
  });
  EXPECT_EQ(child.wait(), 0);
}

TEST(EndRequestsTest, UnaskedTheSignalsDoAfterwardsWhatTheyDidBefore) {
  ChildProcess child([] {
    (void)::signal(SIGTERM, SIG_DFL);
    {
      const EndRequests requests;
    }
    (void)::raise(SIGTERM);
    return 0;
  });
  EXPECT_EQ(child.wait(), 256 + SIGTERM);
}

TEST(EndRequestsTest, OnceAskedAllAreIgnoredForGood) {
  ChildProcess child([] {
    {
      const EndRequests requests;
      (void)::raise(SIGTERM);
    }
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) (void)::raise(signal);
    return handlerOf(SIGTERM) == SIG_IGN ? 0 : 1;
  });
  EXPECT_EQ(child.wait(), 0);
}

TEST(EndRequestsTest, AnEarlierRunsRequestIsNotTheNextOnes) {
  ChildProcess child([] {
    {
      const EndRequests requests;
      (void)::raise(SIGTERM);
    }
    const EndRequests next;
    if (isReadable(next)) return 1;
    (void)::raise(SIGTERM);
    return isReadable(next) ? 0 : 2;
  });
  EXPECT_EQ(child.wait(), 0);
}

TEST(EndRequestsTest, BugASecondRequestEndedTheProgramWhileItWasEnding) {
  ChildProcess child([] {
    const pid_t ending = ::getpid();
    for (int run = 0; run < 200; ++run) {
      (void)::signal(SIGTERM, SIG_DFL);
      std::optional<EndRequests> requests(std::in_place);
      const ChildProcess asking([ending] {
        (void)::signal(SIGTERM, SIG_DFL);
        while (::kill(ending, SIGTERM) == 0) ::usleep(1);
        return 0;
      });
      if (!isReadable(*requests, 5s)) return 1;
      requests.reset();
    }
    return 0;
  });
  EXPECT_EQ(child.wait(), 0);
}

TEST(EndRequestsDeathTest, TwoAtATimeStopTheProgram) {
  const EndRequests requests;
  EXPECT_DEATH(const EndRequests second, "caught a second time");
}

}  // namespace
}  // namespace lanternfold
