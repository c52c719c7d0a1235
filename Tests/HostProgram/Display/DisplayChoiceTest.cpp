// With what kind of windows widgets are shown, as the session's environment allows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostProgram/Display/DisplayChoice.h"

namespace lanternfold {
namespace {

using testing::HasSubstr;

constexpr auto withLayers = [] { return WaylandCompositor::withLayers; };
constexpr auto withoutLayers = [] { return WaylandCompositor::withoutLayers; };
constexpr auto silent = [] { return WaylandCompositor::silent; };
constexpr auto unreachable = [] { return WaylandCompositor::unreachable; };

WaylandCompositor mustNotBeAsked() {
  ADD_FAILURE() << "a compositor was asked that there is not";
  return WaylandCompositor::unreachable;
}

WindowKind kindOf(const DisplayEnvironment& environment,
                  const std::function<WaylandCompositor()>& compositor) {
  const auto choice = chooseDisplay(environment, compositor);
  EXPECT_TRUE(choice.has_value());
  return choice ? choice->kind : WindowKind::x11;
}

std::string remarkOn(const DisplayEnvironment& environment,
                     const std::function<WaylandCompositor()>& compositor) {
  const auto choice = chooseDisplay(environment, compositor);
  EXPECT_TRUE(choice.has_value());
  return choice ? std::string(choice->remark) : "";
}

TEST(DisplayChoiceTest, WithoutADisplayTheSentenceSaysWhatElseThereIs) {
  const auto choice = chooseDisplay({}, mustNotBeAsked);
  ASSERT_FALSE(choice);
  EXPECT_EQ(choice.error().status, ExitStatus::failed);
  EXPECT_THAT(choice.error().sentence, HasSubstr("desktop session"));
  EXPECT_THAT(choice.error().sentence, HasSubstr("lanternfold-widgets render"));
}

TEST(DisplayChoiceTest, X11AloneIsX11) {
  EXPECT_EQ(kindOf({.x11 = ":0"}, mustNotBeAsked), WindowKind::x11);
}

TEST(DisplayChoiceTest, LayersAreBest) {
  EXPECT_EQ(kindOf({.x11 = ":0", .wayland = "wayland-0"}, withLayers), WindowKind::waylandLayer);
  EXPECT_EQ(kindOf({.wayland = "wayland-0"}, withLayers), WindowKind::waylandLayer);
}

TEST(DisplayChoiceTest, WithoutLayersWidgetsStayBelowOnTheOtherDisplay) {
  EXPECT_EQ(kindOf({.x11 = ":0", .wayland = "wayland-0"}, withoutLayers), WindowKind::x11);
}

TEST(DisplayChoiceTest, OrdinaryWindowsAreTheLastResort) {
  EXPECT_EQ(kindOf({.wayland = "wayland-0"}, withoutLayers), WindowKind::waylandPlain);
}

TEST(DisplayChoiceTest, ACompositorThatCannotBeReachedIsNone) {
  EXPECT_EQ(kindOf({.x11 = ":0", .wayland = "wayland-9"}, unreachable), WindowKind::x11);
  EXPECT_FALSE(chooseDisplay({.wayland = "wayland-9"}, unreachable));
}

TEST(DisplayChoiceTest, ACompositorThatHangsIsDoneWithout) {
  const DisplayEnvironment both{.x11 = ":0", .wayland = "wayland-0"};
  EXPECT_EQ(kindOf(both, silent), WindowKind::x11);
  EXPECT_THAT(remarkOn(both, silent), HasSubstr("does not answer"));
  const auto choice = chooseDisplay({.wayland = "wayland-0"}, silent);
  ASSERT_FALSE(choice);
  EXPECT_THAT(choice.error().sentence, HasSubstr("compositor does not answer"));
}

TEST(DisplayChoiceTest, WhereWidgetsAreNotAtTheirBestItIsSaid) {
  const DisplayEnvironment both{.x11 = ":0", .wayland = "wayland-0"};
  EXPECT_THAT(remarkOn(both, withoutLayers), HasSubstr("X11 side"));
  EXPECT_THAT(remarkOn({.wayland = "wayland-0"}, withoutLayers), HasSubstr("ordinary windows"));
  EXPECT_EQ(remarkOn(both, withLayers), "");
  EXPECT_EQ(remarkOn(both, unreachable), "");
  EXPECT_EQ(remarkOn({.x11 = ":0"}, mustNotBeAsked), "");
}

TEST(DisplayChoiceTest, TheUsersOwnChoiceOfABackendStands) {
  const DisplayEnvironment both{.x11 = ":0", .wayland = "wayland-0"};
  DisplayEnvironment chosen = both;
  chosen.backend = "x11";
  EXPECT_EQ(kindOf(chosen, mustNotBeAsked), WindowKind::x11);
  chosen.backend = "wayland";
  EXPECT_EQ(kindOf(chosen, withoutLayers), WindowKind::waylandPlain);
  chosen.backend = "broadway,*";
  EXPECT_EQ(kindOf(chosen, withLayers), WindowKind::waylandLayer);
  chosen.backend = "broadway";
  EXPECT_FALSE(chooseDisplay(chosen, mustNotBeAsked));
}

/// It was once told to start in a desktop session, which it did.
TEST(DisplayChoiceTest, ABackendThatTheSessionDoesNotHaveIsTheCause) {
  const auto sentence = [](const DisplayEnvironment& environment) {
    return chooseDisplay(environment, mustNotBeAsked).error().sentence;
  };
  EXPECT_THAT(sentence({.wayland = "wayland-0", .backend = "x11"}), HasSubstr("GDK_BACKEND"));
  EXPECT_THAT(sentence({.x11 = ":0", .backend = "broadway"}), HasSubstr("GDK_BACKEND"));
  EXPECT_THAT(sentence({.backend = "x11"}), HasSubstr("desktop session"));
  const auto dead = chooseDisplay({.wayland = "wayland-0", .backend = "x11,*"}, unreachable);
  EXPECT_THAT(dead.error().sentence, HasSubstr("desktop session"));
}

TEST(DisplayChoiceTest, OfSeveralBackendsTheUsersFirstThatCanBeUsedIsTaken) {
  const auto kindWith = [](const std::string& backends, const auto& compositor) {
    return kindOf({.x11 = ":0", .wayland = "wayland-0", .backend = backends}, compositor);
  };
  EXPECT_EQ(kindWith("x11,wayland", mustNotBeAsked), WindowKind::x11);
  EXPECT_EQ(kindWith("x11,*", mustNotBeAsked), WindowKind::x11);
  EXPECT_EQ(kindWith("wayland,x11", withoutLayers), WindowKind::waylandPlain);
  EXPECT_EQ(kindWith("wayland,x11", unreachable), WindowKind::x11);
  EXPECT_EQ(kindWith("broadway,wayland,*", silent), WindowKind::x11);
  EXPECT_EQ(kindOf({.wayland = "wayland-0", .backend = "x11,wayland"}, withLayers),
            WindowKind::waylandLayer);
  EXPECT_FALSE(chooseDisplay({.x11 = ":0", .backend = "wayland,broadway"}, mustNotBeAsked));
}

}  // namespace
}  // namespace lanternfold
