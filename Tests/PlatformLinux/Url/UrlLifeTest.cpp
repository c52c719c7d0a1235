// URL tasks that are cancelled, raced and destroyed at every stage, and what is left of thousands.
#include <algorithm>
#include <atomic>
#include <charconv>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <future>
#include <iterator>
#include <sys/socket.h>
#include <thread>

#include "Tests/PlatformLinux/Url/NameServer.h"
#include "Tests/PlatformLinux/Url/ScriptedServer.h"
#include "Tests/PlatformLinux/Url/TlsServer.h"
#include "Tests/PlatformLinux/Url/UrlWorld.h"

namespace lanternfold::test {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

std::ptrdiff_t entriesOf(const char* folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

/// Waits for what ends by itself, ten seconds at the most.
bool comesTrue(const std::function<bool()>& condition) {
  for (int tries = 0; tries < 2000; ++tries) {
    if (condition()) return true;
    std::this_thread::sleep_for(5ms);
  }
  return condition();
}

/// Hosts that hold a request up, each at another stage of it.
class Stages {
 public:
  struct Stage {
    std::string name;
    std::string url;
    std::function<bool()> isReached;
  };

  /// In the namespace of a `UrlWorld`.
  Stages() {
    EXPECT_TRUE(NetworkNamespace::run(
        "ip link add en0 type veth peer name far && ip link set far up && ip link set en0 up && "
        "ip addr add 192.0.2.2/24 dev en0"));
  }

  [[nodiscard]] std::vector<Stage> all() const {
    const auto at = [](const ScriptedServer& server) {
      return [&server] { return server.open() > 0; };
    };
    const std::string secure = "https://127.0.0.1:" + std::to_string(mute_.port()) + "/";
    return {{"looking the name up", "http://nobody.example/",
             [this, before = names_.questions()] { return names_.questions() > before; }},
            {"connecting", "http://192.0.2.1/", [] { return true; }},
            {"shaking hands", secure, at(mute_)},
            {"waiting for the answer", silent_.url(), at(silent_)},
            {"reading headers", slowHeader_.url(), at(slowHeader_)},
            {"reading the body", slowBody_.url(), at(slowBody_)},
            {"following a redirect", redirect_.url(), at(silent_)}};
  }

  /// Of servers that a client has connected to.
  [[nodiscard]] int open() const {
    return mute_.open() + silent_.open() + slowHeader_.open() + slowBody_.open() + redirect_.open();
  }

 private:
  static ScriptedServer::Script stoppingBehind(std::string beginning) {
    return [beginning = std::move(beginning)](ServerConnection& connection) {
      static_cast<void>(connection.readRequest());
      connection.send(beginning);
      connection.waitUntilTheClientLeaves();
    };
  }

  const NameServer names_{std::nullopt};
  const ScriptedServer mute_{
      [](ServerConnection& connection) { connection.waitUntilTheClientLeaves(); }};
  const ScriptedServer silent_{neverAnswering()};
  const ScriptedServer slowHeader_{stoppingBehind("HTTP/1.1 200 OK\r\nA: b\r\n")};
  const ScriptedServer slowBody_{
      stoppingBehind("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf")};
  const ScriptedServer redirect_{
      answering(httpAnswer("", "302 Found", "Location: " + silent_.url() + "\r\n"))};
};

class UrlLifeInNamespace : public testing::Test {
 protected:
  void SetUp() override {
    OPEN_URL_WORLD(world_);
    // Without a store TLS would fail before it shakes hands.
    PrivateEtc::write("ssl/certs/ca-certificates.crt", certificate_.text());
  }

  std::shared_ptr<UrlSessionDataTask> resumed(const std::string& url, UrlAnswers& answers) {
    auto task =
        world_.sessions().makeSession(patientLimits)->dataTask({.url = url}, answers.completion());
    task->resume();
    return task;
  }

  const Certificate certificate_{30};  // made before the world, in which there is no /etc
  UrlWorld world_;
};

TEST_F(UrlLifeInNamespace, ACancelEndsEveryStageOnceAndFreesItsConnection) {
  const Stages stages;
  for (const auto& stage : stages.all()) {
    UrlAnswers answers;
    const auto task = resumed(stage.url, answers);
    ASSERT_TRUE(comesTrue(stage.isReached)) << stage.name;
    EXPECT_EQ(answers.count(), 0U) << stage.name;
    task->cancel();
    task->cancel();
    EXPECT_EQ(answers.await(1), std::vector<std::string>{"error -999"}) << stage.name;
    EXPECT_TRUE(comesTrue([&] { return stages.open() == 0; })) << stage.name;
    EXPECT_EQ(answers.count(), 1U) << stage.name;
  }
}

TEST_F(UrlLifeInNamespace, DestructionEndsEveryStageAtOnceAndWithoutAWord) {
  const Stages stages;
  for (const auto& stage : stages.all()) {
    const auto held = std::make_shared<int>(0);
    bool hasCompleted = false;
    const auto task = world_.sessions()
                          .makeSession(patientLimits)
                          ->dataTask({.url = stage.url}, [held, &hasCompleted](const UrlAnswer&) {
                            hasCompleted = true;
                          });
    task->resume();
    ASSERT_TRUE(comesTrue(stage.isReached)) << stage.name;
    const auto begin = std::chrono::steady_clock::now();
    world_.destroySessions();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 8s) << stage.name;
    EXPECT_EQ(held.use_count(), 1) << stage.name;
    EXPECT_FALSE(hasCompleted) << stage.name;
    EXPECT_TRUE(comesTrue([&] { return stages.open() == 0; })) << stage.name;
    task->cancel();
    world_.remake({.userAgent = "lanternfold-test/1.0"});
  }
}

TEST_F(UrlLifeInNamespace, DestructionWaitsForACompletionThatRuns) {
  const ScriptedServer server(answering(httpAnswer("x")));
  std::promise<void> begun;
  std::atomic<bool> hasMadeAnother = false;
  UrlSessions& sessions = world_.sessions();
  const auto task =
      sessions.makeSession(patientLimits)->dataTask({.url = server.url()}, [&](const UrlAnswer&) {
        begun.set_value();
        std::this_thread::sleep_for(100ms);
        const auto another = sessions.makeSession(patientLimits);
        another->dataTask({.url = server.url()}, [](const UrlAnswer&) {})->resume();
        hasMadeAnother = true;
      });
  task->resume();
  begun.get_future().wait();
  world_.destroySessions();
  EXPECT_TRUE(hasMadeAnother);
}

TEST_F(UrlLifeInNamespace, ATaskResumedWhenItsSessionsAreGoneLetsGoOfItsCompletion) {
  const auto held = std::make_shared<int>(0);
  const auto session = world_.sessions().makeSession(patientLimits);
  const auto resumed =
      session->dataTask({.url = "http://127.0.0.1:9/"}, [held](const UrlAnswer&) {});
  const auto cancelled =
      session->dataTask({.url = "http://127.0.0.1:9/"}, [held](const UrlAnswer&) {});
  world_.destroySessions();
  resumed->resume();
  cancelled->cancel();
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(UrlLifeInNamespace, ACancelThatRacesTheAnswerLeavesOneCompletion) {
  const ScriptedServer server(answering(httpAnswer("x")));
  for (int turn = 0; turn < 200; ++turn) {
    UrlAnswers answers;
    const auto task = resumed(server.url(), answers);
    std::thread first([&] { task->cancel(); });
    std::thread second([&] {
      std::this_thread::sleep_for(std::chrono::microseconds(20 * turn));
      task->cancel();
    });
    const auto texts = answers.await(1);
    first.join();
    second.join();
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_THAT(texts.front(), testing::AnyOf("answer: x", "error -999"));
    EXPECT_EQ(answers.count(), 1U);
  }
}

TEST_F(UrlLifeInNamespace, NoCompletionRunsBeforeTheCallThatLedToItReturned) {
  const auto session = world_.sessions().makeSession(patientLimits);
  for (int turn = 0; turn < 300; ++turn) {
    std::atomic<bool> hasReturned = false;
    std::atomic<int> outcome = 0;  // 1 in time, 2 too early
    const auto task = session->dataTask({.url = "no url"}, [&](const UrlAnswer&) {
      // A call that ran this would not return meanwhile.
      outcome = comesTrue([&] { return hasReturned.load(); }) ? 1 : 2;
    });
    task->resume();
    hasReturned = true;
    ASSERT_TRUE(comesTrue([&] { return outcome != 0; }));
    EXPECT_EQ(outcome, 1);
  }
}

TEST_F(UrlLifeInNamespace, TwoHundredAtOnceAllGetTheirAnswers) {
  const ScriptedServer server([](ServerConnection& connection) {
    const std::string request = connection.readRequest();
    connection.pause(20ms);
    connection.send(httpAnswer(request.substr(4, request.find(' ', 4) - 4)));
  });
  UrlAnswers answers;
  std::vector<std::string> expected;
  const auto session = world_.sessions().makeSession(patientLimits);
  for (int number = 0; number < 200; ++number) {
    const std::string path = "/" + std::to_string(number);
    session->dataTask({.url = server.url(path)}, answers.completion())->resume();
    expected.push_back("answer: " + path);
  }
  EXPECT_THAT(answers.await(200), testing::UnorderedElementsAreArray(expected));
}

TEST_F(UrlLifeInNamespace, ARequestThatWaitsForItsTurnStillTimesOut) {
  const ScriptedServer server(neverAnswering());
  UrlAnswers answers;
  const auto session =
      world_.sessions().makeSession({.timeoutForRequest = 1s, .timeoutForResource = 20s});
  for (int number = 0; number < 150; ++number) {
    session->dataTask({.url = server.url()}, answers.completion())->resume();
  }
  const auto texts = answers.await(150);
  EXPECT_EQ(texts.size(), 150U);
  EXPECT_THAT(texts, testing::Each(testing::AnyOf("error -1001", "error -1005")));
}

TEST_F(UrlLifeInNamespace, ManyThatFailAtOnceInTheirTurnAllEnd) {
  UrlAnswers answers;
  const auto session = world_.sessions().makeSession(patientLimits);
  for (int number = 0; number < 2000; ++number) {
    session->dataTask({.url = "http://"}, answers.completion())->resume();
  }
  const auto texts = answers.await(2000);
  EXPECT_EQ(texts.size(), 2000U);
  EXPECT_THAT(texts, testing::Each("error -1000"));
}

TEST_F(UrlLifeInNamespace, AThousandRequestsLeaveNoDescriptorAndNoThread) {
  const NameServer names(NameServer::Names{{"four.test", {"127.0.0.1"}}});
  const ScriptedServer good(answering(httpAnswer("x")));
  const ScriptedServer rude([](ServerConnection& connection) { connection.reset(); });
  const auto round = [&] {
    EXPECT_EQ(world_.fetch(good.url("/", "four.test")), "answer: x");
    EXPECT_EQ(world_.fetch(rude.url()), "error -1005");
    EXPECT_EQ(world_.fetch("http://127.0.0.1:9/"), "error -1004");
    EXPECT_EQ(world_.fetch("http://nobody.example/"), "error -1003");
  };
  round();
  const auto settled = [&] { return good.open() == 0 && rude.open() == 0; };
  ASSERT_TRUE(comesTrue(settled));
  const auto descriptors = entriesOf("/proc/self/fd");
  const auto threads = entriesOf("/proc/self/task");
  for (int turn = 0; turn < 250; ++turn) round();
  ASSERT_TRUE(comesTrue(settled));
  EXPECT_TRUE(comesTrue([&] { return entriesOf("/proc/self/fd") <= descriptors; }))
      << entriesOf("/proc/self/fd") << " descriptors, " << descriptors << " before";
  // A pool may begin a further thread now and then, and the servers join theirs late.
  EXPECT_TRUE(comesTrue([&] { return entriesOf("/proc/self/task") <= threads + 8; }))
      << entriesOf("/proc/self/task") << " threads, " << threads << " before";
}

TEST_F(UrlLifeInNamespace, ARequestThatRunsTakesNoThreadOfItsOwn) {
  const ScriptedServer server(neverAnswering());
  UrlAnswers answers;
  static_cast<void>(world_.fetch("no url"));
  const auto before = entriesOf("/proc/self/task");
  for (int number = 0; number < 40; ++number) resumed(server.url(), answers);
  ASSERT_TRUE(comesTrue([&] { return server.open() == 40; }));
  const auto ofServer = 40;  // one for each of its clients
  EXPECT_TRUE(comesTrue([&] { return entriesOf("/proc/self/task") - before <= ofServer; }));
}

TEST_F(UrlLifeInNamespace, ConnectionsAreNotLeftToProgramsThatAreStarted) {
  const ScriptedServer server(neverAnswering());
  UrlAnswers answers;
  const auto task = resumed(server.url(), answers);
  ASSERT_TRUE(comesTrue([&] { return server.open() == 1; }));
  int connections = 0;
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    int descriptor = 0;
    const std::string name = entry.path().filename();
    std::from_chars(name.data(), name.data() + name.size(), descriptor);
    int family = 0;
    socklen_t length = sizeof family;
    if (getsockopt(descriptor, SOL_SOCKET, SO_DOMAIN, &family, &length) != 0) continue;
    if (family != AF_INET) continue;
    ++connections;
    EXPECT_NE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0) << descriptor;
  }
  EXPECT_GE(connections, 3) << "the listener, its end of the connection and the client's";
}

TEST_F(UrlLifeInNamespace, DestructionOnTheLoopStopsTheProgram) {
  EventLoop loop;
  AsioDispatch dispatch(loop);
  EXPECT_DEATH(
      {
        auto sessions = std::make_unique<CurlUrlSessions>(
            loop, dispatch, CurlUrlSettings{.userAgent = "lanternfold-test/1.0"});
        loop.runAndWait([&] { sessions.reset(); });
      },
      "destroyed by a handler of the event loop");
}

}  // namespace
}  // namespace lanternfold::test
