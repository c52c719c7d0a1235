// URL sessions on networks of every kind: what cannot be found, reached or waited for.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <optional>
#include <sys/resource.h>
#include <thread>

#include "Tests/PlatformLinux/System/NamespaceTools.h"
#include "Tests/PlatformLinux/Url/NameServer.h"
#include "Tests/PlatformLinux/Url/ScriptedServer.h"
#include "Tests/PlatformLinux/Url/UrlWorld.h"

namespace lanternfold::test {
namespace {

using namespace std::chrono_literals;

constexpr UrlSessionConfiguration shortLimits{.timeoutForRequest = 400ms,
                                              .timeoutForResource = 20s};

class UrlNetworkInNamespace : public testing::Test {
 protected:
  void SetUp() override { OPEN_URL_WORLD(world_); }

  std::string fetch(const std::string& url, UrlAddressFamily family = UrlAddressFamily::any) {
    return world_.fetch(UrlRequest{.url = url, .addressFamily = family});
  }

  const NameServer::Names families_{{"four.test", {"127.0.0.1"}},
                                    {"six.test", {"::1"}},
                                    {"both.test", {"::1", "127.0.0.1"}},
                                    {"many.test", {"127.0.0.9", "127.0.0.8", "127.0.0.1"}}};
  UrlWorld world_;
};

// What cannot be reached.

TEST_F(UrlNetworkInNamespace, ARefusedConnectionCannotConnect) {
  EXPECT_EQ(fetch("http://127.0.0.1:9/"), "error -1004");
  EXPECT_EQ(fetch("http://[::1]:9/"), "error -1004");
  EXPECT_EQ(fetch("https://localhost:9/"), "error -1004");
}

TEST_F(UrlNetworkInNamespace, WithoutARouteCannotConnect) {
  EXPECT_EQ(fetch("http://192.0.2.1/"), "error -1004");
  EXPECT_EQ(fetch("http://[2001:db8::1]/"), "error -1004");
}

TEST_F(UrlNetworkInNamespace, RunningOutOfDescriptorsIsNotAHostThatCannotBeReached) {
  const ScriptedServer server(answering(httpAnswer("x")), "::1");
  EXPECT_EQ(fetch(server.url(), UrlAddressFamily::ipv6), "answer: x");
  rlimit usual{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
  const rlimit none{.rlim_cur = 0, .rlim_max = usual.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  const std::string answer = fetch(server.url(), UrlAddressFamily::ipv6);
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &usual), 0);
  EXPECT_EQ(answer, "error -1005");
}

TEST_F(UrlNetworkInNamespace, AnUnreachableNetworkCannotConnect) {
  ip("route add unreachable 192.0.2.0/24\nroute add prohibit 198.51.100.0/24\n");
  EXPECT_EQ(fetch("http://192.0.2.1/"), "error -1004");
  EXPECT_EQ(fetch("http://198.51.100.1/"), "error -1004");
}

TEST_F(UrlNetworkInNamespace, ASilentNeighbourTimesOut) {
  ip("link add en0 type veth peer name far\nlink set far up\nlink set en0 up\n"
     "addr add 192.0.2.2/24 dev en0\n");
  EXPECT_EQ(world_.fetch("http://192.0.2.1/", shortLimits), "error -1001");
}

TEST_F(UrlNetworkInNamespace, AnIPv6OnlyRequestWithoutIPv6CannotConnect) {
  turnOffIPv6();
  PrivateEtc::write("hosts", "2001:db8::1 six.example\n");
  EXPECT_EQ(fetch("http://six.example/", UrlAddressFamily::ipv6), "error -1004");
}

TEST_F(UrlNetworkInNamespace, TheAddressThatWorksIsFoundAmongSeveral) {
  const NameServer names(families_);
  const ScriptedServer four(answering(httpAnswer("four")));
  EXPECT_EQ(fetch(four.url("/", "both.test")), "answer: four") << "::1 refuses";
  EXPECT_EQ(fetch(four.url("/", "many.test")), "answer: four") << "two others refuse";
  turnOffIPv6();
  EXPECT_EQ(fetch(four.url("/", "both.test")), "answer: four") << "::1 is gone";
}

// Families.

TEST_F(UrlNetworkInNamespace, ARequestGoesOverTheFamilyItAsksFor) {
  const NameServer names(families_);
  const ScriptedServer six(answering(httpAnswer("six")), "::1");
  const ScriptedServer four(answering(httpAnswer("four")), "127.0.0.1", six.port());
  EXPECT_EQ(fetch(six.url("/", "both.test"), UrlAddressFamily::ipv6), "answer: six");
  EXPECT_EQ(fetch(six.url("/", "both.test"), UrlAddressFamily::ipv4), "answer: four");
  EXPECT_EQ(fetch(six.url("/", "localhost"), UrlAddressFamily::ipv6), "answer: six");
  EXPECT_EQ(fetch(six.url("/", "localhost"), UrlAddressFamily::ipv4), "answer: four");
  EXPECT_EQ(fetch(six.url("/", "six.test")), "answer: six");
  EXPECT_EQ(fetch(four.url("/", "four.test")), "answer: four");
}

TEST_F(UrlNetworkInNamespace, ANameWithoutAnAddressOfTheFamilyCannotBeFound) {
  const NameServer names(families_);
  EXPECT_EQ(fetch("http://four.test/", UrlAddressFamily::ipv6), "error -1003");
  EXPECT_EQ(fetch("http://six.test/", UrlAddressFamily::ipv4), "error -1003");
}

TEST_F(UrlNetworkInNamespace, AnAddressOfTheOtherFamilyCannotBeFound) {
  const ScriptedServer four(answering(httpAnswer("four")));
  EXPECT_EQ(fetch(four.url(), UrlAddressFamily::ipv6), "error -1003");
  EXPECT_EQ(fetch("http://127.1:" + std::to_string(four.port()) + "/", UrlAddressFamily::ipv6),
            "error -1003");
  EXPECT_EQ(fetch("http://[::1]:9/", UrlAddressFamily::ipv4), "error -1003");
  EXPECT_EQ(four.accepted(), 0);
}

// Names.

TEST_F(UrlNetworkInNamespace, AnUnknownNameCannotBeFound) {
  const NameServer names(NameServer::Names{});
  EXPECT_EQ(fetch("http://nobody.example/"), "error -1003");
  EXPECT_GT(names.questions(), 0);
}

TEST_F(UrlNetworkInNamespace, WithoutANameServerANameCannotBeFound) {
  EXPECT_EQ(fetch("http://nobody.example/"), "error -1003");
}

TEST_F(UrlNetworkInNamespace, ANameServerThatNeverAnswersTimesOut) {
  const NameServer names(std::nullopt);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(world_.fetch("http://nobody.example/", shortLimits), "error -1001");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 8s) << "the resolver's own limit is 10 s";
}

TEST_F(UrlNetworkInNamespace, ANameServerThatNeverAnswersHoldsUpNobodyElse) {
  const NameServer names(std::nullopt);
  const ScriptedServer server(answering(httpAnswer("x")));
  UrlAnswers lost;
  const auto session = world_.sessions().makeSession(shortLimits);
  for (int count = 0; count < 3; ++count) {
    session->dataTask({.url = "http://nobody.example/"}, lost.completion())->resume();
  }
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(fetch(server.url("/", "four.example")), "answer: x");
  EXPECT_THAT(lost.await(3), testing::Each("error -1001"));
  EXPECT_EQ(fetch(server.url("/", "four.example")), "answer: x");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 8s);
}

/// Threads of the process.
std::ptrdiff_t threads() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/task"),
                       std::filesystem::directory_iterator());
}

TEST_F(UrlNetworkInNamespace, ANameServerThatNeverAnswersDoesNotFillTheProcessWithThreads) {
  const NameServer names(std::nullopt);
  UrlAnswers answers;
  const auto before = threads();
  const auto session =
      world_.sessions().makeSession({.timeoutForRequest = 200ms, .timeoutForResource = 20s});
  for (std::size_t batch = 1; batch <= 8; ++batch) {
    for (int count = 0; count < 60; ++count) {
      session->dataTask({.url = "http://nobody.example/"}, answers.completion())->resume();
    }
    EXPECT_THAT(answers.await(60 * batch), testing::SizeIs(60 * batch));
  }
  const auto texts = answers.await(480);
  EXPECT_THAT(texts, testing::Each(testing::AnyOf("error -1001", "error -1005")));
  EXPECT_GE(std::ranges::count(texts, "error -1005"), 480 - 256 - 64)
      << "what was never sent says nothing of its host";
  EXPECT_LT(threads() - before, 256 + 64 + 32) << "and 480 requests";
}

TEST_F(UrlNetworkInNamespace, RequestsCancelledBeforeTheirLookupAreNotTakenForLookups) {
  const ScriptedServer server(answering(httpAnswer("x")));
  UrlAnswers answers;
  const auto session = world_.sessions().makeSession(patientLimits);
  for (int count = 0; count < 600; ++count) {
    const auto task = session->dataTask({.url = server.url()}, answers.completion());
    task->resume();
    task->cancel();
  }
  EXPECT_THAT(answers.await(600), testing::Each("error -999"));
  EXPECT_EQ(fetch(server.url()), "answer: x");
}

TEST_F(UrlNetworkInNamespace, DestructionDoesNotWaitForANameServer) {
  const NameServer names(std::nullopt);
  UrlAnswers answers;
  const auto task = world_.sessions()
                        .makeSession(patientLimits)
                        ->dataTask({.url = "http://nobody.example/"}, answers.completion());
  task->resume();
  while (names.questions() == 0) std::this_thread::yield();
  const auto begin = std::chrono::steady_clock::now();
  world_.destroySessions();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 8s) << "the resolver's own limit is 10 s";
  EXPECT_EQ(answers.count(), 0U);
}

}  // namespace
}  // namespace lanternfold::test
