// What is heard of the desktop portal's settings, on a private bus.
#include "PlatformLinux/Desktop/PortalAppearance.h"
#include "Tests/PlatformLinux/Contracts/DispatchWorlds.h"
#include "Tests/PlatformLinux/Desktop/BusStandIn.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settings = "org.freedesktop.portal.Settings";

const char* nameOf(PreferredColourScheme scheme) {
  switch (scheme) {
    case PreferredColourScheme::noPreference:
      return "none";
    case PreferredColourScheme::dark:
      return "dark";
    case PreferredColourScheme::light:
      return "light";
  }
  return "";
}

class PortalAppearanceTest : public testing::Test {
 protected:
  void startPortal(GVariant* value) {
    portal.emplace(bus.address(), portalName);
    portal->prepare(portalPath, "ReadOne", g_variant_new("(v)", value));
  }
  void start() { startAt(bus.address()); }
  void startAt(const std::optional<std::string>& address) {
    appearance.emplace(address, world.dispatch().mainQueue());
    appearance->start([this](PreferredColourScheme scheme) {
      if (!world.dispatch().mainQueue().isCurrent()) told += "elsewhere: ";
      told += std::string(nameOf(scheme)) + " ";
    });
    EXPECT_EQ(told, "");
  }
  [[nodiscard]] bool runUntilTold(const std::string& what) {
    return world.runUntil([&] { return told == what; });
  }
  void change(const char* name, const char* key, GVariant* value) {
    portal->emit(portalPath, settings, "SettingChanged", g_variant_new("(ssv)", name, key, value));
  }
  void changeScheme(GVariant* value) {
    change("org.freedesktop.appearance", "color-scheme", value);
  }

  PrivateBus bus;
  std::optional<BusStandIn> portal;
  GlibWorld world;
  std::string told;
  std::optional<PortalAppearance> appearance;
};

TEST_F(PortalAppearanceTest, ThePreferenceAndItsChangesAreTold) {
  startPortal(g_variant_new_uint32(1));
  start();
  ASSERT_TRUE(runUntilTold("dark "));
  changeScheme(g_variant_new_uint32(2));
  ASSERT_TRUE(runUntilTold("dark light "));
  changeScheme(g_variant_new_uint32(2));
  changeScheme(g_variant_new_uint32(0));
  EXPECT_TRUE(runUntilTold("dark light none "));
}

TEST_F(PortalAppearanceTest, AnOlderPortalIsAskedAsItUnderstands) {
  portal.emplace(bus.address(), portalName);
  portal->prepare(portalPath, "Read",
                  g_variant_new("(v)", g_variant_new_variant(g_variant_new_uint32(1))));
  start();
  EXPECT_TRUE(runUntilTold("dark "));
}

TEST_F(PortalAppearanceTest, WithoutAPortalThereIsNoPreference) {
  start();
  EXPECT_TRUE(runUntilTold("none "));
}

TEST_F(PortalAppearanceTest, WithoutABusThereIsNoPreference) {
  startAt(std::nullopt);
  EXPECT_TRUE(runUntilTold("none "));
  told.clear();
  startAt("unix:path=/nonexistent/bus");
  EXPECT_TRUE(runUntilTold("none "));
}

TEST_F(PortalAppearanceTest, APortalThatComesLaterIsHeard) {
  start();
  ASSERT_TRUE(runUntilTold("none "));
  startPortal(g_variant_new_uint32(1));
  EXPECT_TRUE(runUntilTold("none dark "));
}

TEST_F(PortalAppearanceTest, TheLastWordOfAPortalThatGoesAwayStands) {
  startPortal(g_variant_new_uint32(1));
  start();
  ASSERT_TRUE(runUntilTold("dark "));
  portal.reset();
  startPortal(g_variant_new_uint32(2));
  EXPECT_TRUE(runUntilTold("dark light "));
}

TEST_F(PortalAppearanceTest, ValuesThatMeanNothingAreNoPreference) {
  startPortal(g_variant_new_string("dark"));
  start();
  ASSERT_TRUE(runUntilTold("none "));
  changeScheme(g_variant_new_uint32(1));
  ASSERT_TRUE(runUntilTold("none dark "));
  changeScheme(g_variant_new_uint32(7));
  EXPECT_TRUE(runUntilTold("none dark none "));
}

TEST_F(PortalAppearanceTest, OtherSettingsAreNoNews) {
  startPortal(g_variant_new_uint32(2));
  start();
  ASSERT_TRUE(runUntilTold("light "));
  change("org.freedesktop.appearance", "contrast", g_variant_new_uint32(1));
  change("org.gnome.desktop.interface", "color-scheme", g_variant_new_uint32(0));
  portal->emit(portalPath, settings, "SettingChanged",
               g_variant_new("(s)", "org.freedesktop.appearance"));
  changeScheme(g_variant_new_uint32(1));
  EXPECT_TRUE(runUntilTold("light dark "));
}

TEST_F(PortalAppearanceTest, NothingIsToldAfterItsDestruction) {
  startPortal(g_variant_new_uint32(1));
  start();
  ASSERT_TRUE(world.runUntil([&] { return portal->callsOf("ReadOne") > 0; }));
  appearance.reset();
  const auto end = world.clock().steadyNow() + 50ms;
  (void)world.runUntil([&] { return world.clock().steadyNow() >= end; });
  EXPECT_EQ(told, "");
}

}  // namespace
}  // namespace lanternfold
