// The verbs of a host, called by another program over a private bus.
#include <atomic>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include "PlatformLinux/Desktop/BusWidgetControl.h"
#include "PlatformLinux/Desktop/WidgetControlNames.h"
#include "PlatformLinux/Desktop/WidgetControlObject.h"
#include "Tests/PlatformLinux/Contracts/DispatchWorlds.h"
#include "Tests/PlatformLinux/Desktop/BusStandIn.h"
#include "Tests/Support/FakeWidgetControl.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using Cause = WidgetControlFailure::Cause;

class WidgetControlTest : public testing::Test {
 protected:
  /// The host has its name, and its verbs.
  void startHost() {
    host.emplace(bus.address(), widgetHostBusName);
    object.emplace(host->connection(), control, world.dispatch().mainQueue());
  }
  /// What another program's `call` returns, while this one's main loop runs.
  template <typename Call>
  [[nodiscard]] auto elsewhere(Call call) {
    std::optional<decltype(call(client))> result;
    std::atomic<bool> isDone = false;
    std::thread thread([&] {
      result = call(client);
      isDone = true;
    });
    EXPECT_TRUE(world.runUntil([&] { return isDone.load(); }));
    thread.join();
    return *result;
  }
  [[nodiscard]] auto add(const std::string& kind, const std::string& family = "",
                         const std::string& adapter = "") {
    return elsewhere([&](WidgetControl& there) { return there.add(kind, family, adapter); });
  }
  [[nodiscard]] auto remove(const std::string& id) {
    return elsewhere([&](WidgetControl& there) { return there.remove(id); });
  }
  [[nodiscard]] auto reload(const std::string& id) {
    return elsewhere([&](WidgetControl& there) { return there.reload(id); });
  }

  PrivateBus bus;
  GlibWorld world;
  FakeWidgetControl control;
  std::optional<BusStandIn> host;
  std::optional<WidgetControlObject> object;
  BusWidgetControl client{bus.address()};
};

TEST_F(WidgetControlTest, EveryVerbReachesTheHost) {
  startHost();
  EXPECT_EQ(add("AKind", "small", "eth0"), "w1");
  EXPECT_EQ(add("Another"), "w2");
  EXPECT_EQ(elsewhere([](WidgetControl& there) { return there.list(); }), control.list());
  EXPECT_TRUE(reload("w1"));
  EXPECT_TRUE(reload(""));
  EXPECT_EQ(control.widgets().front(),
            (FakeWidgetControl::Widget{
                .id = "w1", .kind = "AKind", .family = "small", .adapter = "eth0", .reloads = 2}));
  EXPECT_TRUE(remove("w1"));
  EXPECT_EQ(control.widgets().size(), 1U);
}

TEST_F(WidgetControlTest, AHostThatQuitsHasAnswered) {
  startHost();
  EXPECT_TRUE(elsewhere([](WidgetControl& there) { return there.quit(); }));
  EXPECT_TRUE(world.runUntil([&] { return control.hasQuit(); }));
}

TEST_F(WidgetControlTest, ARefusalIsTheHostsOwnSentence) {
  startHost();
  const auto removed = remove("gone");
  ASSERT_FALSE(removed);
  EXPECT_EQ(removed.error(), (WidgetControlFailure{Cause::refused, "there is no widget \"gone\""}));
}

TEST_F(WidgetControlTest, WhatIsLongerThanAnyNameIsRefused) {
  startHost();
  EXPECT_TRUE(add(std::string(256, 'k')));
  const auto added = add("AKind", "", std::string(257, 'a'));
  ASSERT_FALSE(added);
  EXPECT_EQ(added.error(), (WidgetControlFailure{Cause::refused, "no name is that long"}));
  EXPECT_EQ(control.widgets().size(), 1U);
}

TEST_F(WidgetControlTest, TextThatTheBusCannotCarryIsNoName) {
  startHost();
  const auto removed = remove("\xff");
  ASSERT_FALSE(removed);
  EXPECT_EQ(removed.error().cause, Cause::refused);
}

TEST_F(WidgetControlTest, WithoutAHostItSaysHowToStartOne) {
  const auto listed = elsewhere([](WidgetControl& there) { return there.list(); });
  ASSERT_FALSE(listed);
  EXPECT_EQ(
      listed.error(),
      (WidgetControlFailure{Cause::noHost,
                            "no widgets are shown; start them with \"lanternfold-widgets show\""}));
}

TEST_F(WidgetControlTest, WithoutABusNobodyCanBeAsked) {
  for (const std::optional<std::string>& address :
       {std::optional<std::string>(), std::optional<std::string>("unix:path=/nonexistent/bus")}) {
    const auto quit = BusWidgetControl(address).quit();
    ASSERT_FALSE(quit);
    EXPECT_EQ(quit.error().cause, Cause::unreachable);
    EXPECT_THAT(quit.error().sentence, HasSubstr("session"));
  }
}

TEST_F(WidgetControlTest, AHostThatHangsIsGivenUp) {
  host.emplace(bus.address(), widgetHostBusName);
  object.emplace(host->connection(), control, world.dispatch().mainQueue());
  // Nobody runs the main loop.
  const auto listed = BusWidgetControl(bus.address(), 50ms).list();
  ASSERT_FALSE(listed);
  EXPECT_THAT(listed.error().sentence, HasSubstr("does not answer"));
}

TEST_F(WidgetControlTest, ABusThatHangsIsGivenUp) {
  const TemporaryFolder folder;
  const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = folder / "bus";
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(listener, 1), 0);
  const auto listed = BusWidgetControl("unix:path=" + path, 50ms).list();
  ASSERT_FALSE(listed);
  EXPECT_THAT(listed.error().sentence, HasSubstr("does not answer"));
  ::close(listener);
}

TEST_F(WidgetControlTest, AHostOfAnotherVersionIsNamed) {
  host.emplace(bus.address(), widgetHostBusName);
  const auto listed = elsewhere([](WidgetControl& there) { return there.list(); });
  ASSERT_FALSE(listed);
  EXPECT_EQ(listed.error().cause, Cause::unreachable);
  EXPECT_THAT(listed.error().sentence, HasSubstr("another version"));
}

TEST_F(WidgetControlTest, AnAnswerOfAnotherTypeIsNone) {
  host.emplace(bus.address(), widgetHostBusName);
  host->prepare(widgetHostObject, "List", g_variant_new("(u)", 7));
  const auto listed = elsewhere([](WidgetControl& there) { return there.list(); });
  ASSERT_FALSE(listed);
  EXPECT_THAT(listed.error().sentence, HasSubstr("another version"));
}

TEST_F(WidgetControlTest, WhoCallsWhileTheHostEndsIsAnswered) {
  startHost();
  std::optional<WidgetControl::Outcome<std::string>> listed;
  std::thread other([&] { listed = client.list(); });
  // The call has come, and waits on the main queue.
  EXPECT_TRUE(world.runUntil([&] { return host->callsOf("List") > 0; }));
  world.dispatch().mainQueue().async([this] { object.reset(); });
  (void)world.runUntil([&] { return !object; });
  (void)world.runUntil(
      [end = world.clock().steadyNow() + 100ms, this] { return world.clock().steadyNow() >= end; });
  other.join();
  ASSERT_TRUE(listed);
  EXPECT_TRUE(*listed || !listed->error().sentence.contains("does not answer"));
}

}  // namespace
}  // namespace lanternfold
