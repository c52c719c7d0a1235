// What is heard of a login manager, on a private bus.
#include <unistd.h>

#include "PlatformLinux/Desktop/LogindSession.h"
#include "Tests/PlatformLinux/Contracts/DispatchWorlds.h"
#include "Tests/PlatformLinux/Desktop/BusStandIn.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

constexpr const char* managerName = "org.freedesktop.login1";
constexpr const char* managerPath = "/org/freedesktop/login1";
constexpr const char* managerInterface = "org.freedesktop.login1.Manager";
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* sessionPath = "/org/freedesktop/login1/session/_37";
constexpr const char* userPath = "/org/freedesktop/login1/user/_1000";

class LogindSessionTest : public testing::Test {
 protected:
  void startManager() { manager.emplace(bus.address(), managerName); }
  /// The session of number 7 is that of this process.
  void startManagerWithSession(bool isLocked) {
    startManager();
    prepareLock(g_variant_new_boolean(isLocked ? TRUE : FALSE));
    manager->prepare(managerPath, "GetSessionByPID", g_variant_new("(o)", sessionPath));
  }
  void prepareLock(GVariant* value) {
    manager->prepare(sessionPath, "Get", g_variant_new("(v)", value));
  }

  void start(const std::string& sessionId = "", std::chrono::nanoseconds unconfirmedLock = 1h) {
    startAt(bus.address(), sessionId, unconfirmedLock);
  }
  void startAt(const std::string& address, const std::string& sessionId = "",
               std::chrono::nanoseconds unconfirmedLock = 1h) {
    session.emplace(
        LogindSession::Surroundings{
            .busAddress = address, .sessionId = sessionId, .unconfirmedLock = unconfirmedLock},
        world.dispatch().mainQueue());
    session->start({.lockChanged = [this](bool isLocked) { tell(isLocked ? "locked" : "open"); },
                    .resumed = [this] { tell("awake"); }});
  }
  void tell(const std::string& what) {
    told += (world.dispatch().mainQueue().isCurrent() ? "" : "elsewhere: ") + what + " ";
  }

  [[nodiscard]] bool runUntilTold(const std::string& what) {
    return world.runUntil([&] { return told == what; });
  }
  [[nodiscard]] bool runUntilCalled(const std::string& method, int times = 1) {
    return world.runUntil([&] { return manager->callsOf(method) >= times; });
  }
  void runFor(std::chrono::nanoseconds time) {
    const auto end = world.clock().steadyNow() + time;
    (void)world.runUntil([&] { return world.clock().steadyNow() >= end; });
  }
  void emitSleep(bool begins) {
    manager->emit(managerPath, managerInterface, "PrepareForSleep",
                  g_variant_new("(b)", begins ? TRUE : FALSE));
  }
  void emitToSession(const char* signal) {
    manager->emit(sessionPath, sessionInterface, signal, nullptr);
  }
  void emitHint(GVariant* value) {
    GVariantDict changed;
    g_variant_dict_init(&changed, nullptr);
    g_variant_dict_insert_value(&changed, "LockedHint", value);
    manager->emit(sessionPath, properties, "PropertiesChanged",
                  g_variant_new("(s@a{sv}@as)", sessionInterface, g_variant_dict_end(&changed),
                                g_variant_new_strv(nullptr, 0)));
  }

  PrivateBus bus;
  std::optional<BusStandIn> manager;
  GlibWorld world;
  std::string told;
  std::optional<LogindSession> session;
};

TEST_F(LogindSessionTest, AMachineThatWakesIsToldOf) {
  startManagerWithSession(false);
  start();
  ASSERT_TRUE(runUntilCalled("Get"));
  emitSleep(true);
  emitSleep(false);
  EXPECT_TRUE(runUntilTold("awake "));
}

TEST_F(LogindSessionTest, ALockIsHeardOfFromItsProperty) {
  startManagerWithSession(false);
  start();
  ASSERT_TRUE(runUntilCalled("Get"));
  emitHint(g_variant_new_boolean(TRUE));
  EXPECT_TRUE(runUntilTold("locked "));
  emitHint(g_variant_new_boolean(TRUE));
  emitHint(g_variant_new_boolean(FALSE));
  EXPECT_TRUE(runUntilTold("locked open "));
}

TEST_F(LogindSessionTest, ASessionThatIsLockedAlreadyIsToldOf) {
  startManagerWithSession(true);
  start();
  EXPECT_TRUE(runUntilTold("locked "));
}

TEST_F(LogindSessionTest, ARequestToLockCountsUntilItIsTakenBack) {
  startManagerWithSession(false);
  start();
  ASSERT_TRUE(runUntilCalled("Get"));
  emitToSession("Lock");
  EXPECT_TRUE(runUntilTold("locked "));
  emitToSession("Unlock");
  EXPECT_TRUE(runUntilTold("locked open "));
}

TEST_F(LogindSessionTest, ALockThatNobodyConfirmsEnds) {
  startManagerWithSession(false);
  start("", 50ms);
  ASSERT_TRUE(runUntilCalled("Get"));
  emitToSession("Lock");
  EXPECT_TRUE(runUntilTold("locked open "));
}

TEST_F(LogindSessionTest, ALockThatIsConfirmedLasts) {
  startManagerWithSession(false);
  start("", 50ms);
  ASSERT_TRUE(runUntilCalled("Get"));
  emitToSession("Lock");
  emitHint(g_variant_new_boolean(TRUE));
  ASSERT_TRUE(runUntilTold("locked "));
  runFor(200ms);
  EXPECT_EQ(told, "locked ");
}

TEST_F(LogindSessionTest, TheSessionThatTheEnvironmentNamesComesFirst) {
  startManager();
  prepareLock(g_variant_new_boolean(TRUE));
  manager->prepare(managerPath, "GetSession", g_variant_new("(o)", sessionPath));
  manager->prepare(managerPath, "GetSessionByPID", g_variant_new("(o)", "/other"));
  start("7");
  EXPECT_TRUE(runUntilTold("locked "));
  EXPECT_EQ(manager->callsOf("GetSessionByPID"), 0);
}

TEST_F(LogindSessionTest, ASessionThatIsGoneIsNoObstacle) {
  startManagerWithSession(true);
  start("gone");
  EXPECT_TRUE(runUntilTold("locked "));
  EXPECT_EQ(manager->callsOf("GetSession"), 1);
}

TEST_F(LogindSessionTest, AProgramOfTheServiceManagerHasTheUsersGraphicalSession) {
  startManager();
  prepareLock(g_variant_new_boolean(TRUE));
  manager->prepare(managerPath, "GetUser", g_variant_new("(o)", userPath));
  manager->prepare(userPath, "Get", g_variant_new("(v)", g_variant_new("(so)", "7", sessionPath)));
  start();
  EXPECT_TRUE(runUntilTold("locked "));
}

TEST_F(LogindSessionTest, WithoutAnySessionItStillWakes) {
  startManager();
  manager->prepare(managerPath, "GetUser", g_variant_new("(o)", userPath));
  manager->prepare(userPath, "Get", g_variant_new("(v)", g_variant_new("(so)", "", "/")));
  start();
  ASSERT_TRUE(runUntilCalled("Get"));
  emitSleep(false);
  EXPECT_TRUE(runUntilTold("awake "));
}

TEST_F(LogindSessionTest, ALoginManagerThatComesLaterIsHeard) {
  start();
  runFor(50ms);
  startManagerWithSession(true);
  EXPECT_TRUE(runUntilTold("locked "));
}

TEST_F(LogindSessionTest, ALoginManagerThatIsStartedAnewIsAskedAnew) {
  startManagerWithSession(true);
  start();
  ASSERT_TRUE(runUntilTold("locked "));
  manager.reset();
  startManagerWithSession(false);
  EXPECT_TRUE(runUntilTold("locked open "));
}

TEST_F(LogindSessionTest, ValuesOfAnotherTypeAreNoNews) {
  startManagerWithSession(false);
  prepareLock(g_variant_new_string("yes"));
  start();
  ASSERT_TRUE(runUntilCalled("Get"));
  emitHint(g_variant_new_string("yes"));
  manager->emit(sessionPath, properties, "PropertiesChanged", g_variant_new("(s)", "LockedHint"));
  manager->emit(managerPath, managerInterface, "PrepareForSleep", g_variant_new("(s)", "no"));
  emitSleep(false);
  EXPECT_TRUE(runUntilTold("awake "));
}

TEST_F(LogindSessionTest, ABusThatGoesAwayLeavesTheSessionOpen) {
  startManagerWithSession(true);
  start();
  ASSERT_TRUE(runUntilTold("locked "));
  manager.reset();
  bus.stop();
  EXPECT_TRUE(runUntilTold("locked open "));
}

TEST_F(LogindSessionTest, WithoutABusNothingIsSaid) {
  for (const char* address : {"unix:path=/nonexistent/bus", "", "no address"}) {
    startAt(address);
    runFor(50ms);
  }
  EXPECT_EQ(told, "");
}

TEST_F(LogindSessionTest, NothingIsToldAfterItsDestruction) {
  startManagerWithSession(true);
  start();
  session.reset();
  start();
  ASSERT_TRUE(runUntilCalled("Get"));
  session.reset();
  emitSleep(false);
  runFor(50ms);
  EXPECT_EQ(told, "");
}

}  // namespace
}  // namespace lanternfold
