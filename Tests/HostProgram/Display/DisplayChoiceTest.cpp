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

XServer usable(const std::string& display) {
  EXPECT_EQ(display, ":0");
  return XServer::usable;
}
constexpr auto silentServer = [](const std::string&) { return XServer::silent; };
constexpr auto deadServer = [](const std::string&) { return XServer::unreachable; };

XServer serverMustNotBeAsked(const std::string&) {
  ADD_FAILURE() << "an X server was asked that is not wanted";
  return XServer::unreachable;
}

using AskXServer = std::function<XServer(const std::string&)>;

WindowKind kindOf(const DisplayEnvironment& environment,
                  const std::function<WaylandCompositor()>& compositor,
                  const AskXServer& server = usable) {
  const auto choice = chooseDisplay(environment, compositor, server);
  EXPECT_TRUE(choice.has_value());
  return choice ? choice->kind : WindowKind::x11;
}

std::string remarkOn(const DisplayEnvironment& environment,
                     const std::function<WaylandCompositor()>& compositor) {
  const auto choice = chooseDisplay(environment, compositor, usable);
  EXPECT_TRUE(choice.has_value());
  return choice ? std::string(choice->remark) : "";
}

std::string sentenceOn(const DisplayEnvironment& environment,
                       const std::function<WaylandCompositor()>& compositor,
                       const AskXServer& server) {
  const auto choice = chooseDisplay(environment, compositor, server);
  EXPECT_FALSE(choice.has_value());
  return choice ? "" : choice.error().sentence;
}

TEST(DisplayChoiceTest, WithoutADisplayTheSentenceSaysWhatElseThereIs) {
  const auto choice = chooseDisplay({}, mustNotBeAsked, serverMustNotBeAsked);
  ASSERT_FALSE(choice);
  EXPECT_EQ(choice.error().status, ExitStatus::failed);
  EXPECT_THAT(choice.error().sentence, HasSubstr("desktop session"));
  EXPECT_THAT(choice.error().sentence, HasSubstr("lanternfold-widgets render"));
}

TEST(DisplayChoiceTest, X11AloneIsX11) {
  EXPECT_EQ(kindOf({.x11 = ":0"}, mustNotBeAsked), WindowKind::x11);
}

TEST(DisplayChoiceTest, LayersAreBest) {
  EXPECT_EQ(kindOf({.x11 = ":0", .wayland = "wayland-0"}, withLayers, serverMustNotBeAsked),
            WindowKind::waylandLayer);
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
  EXPECT_FALSE(chooseDisplay({.wayland = "wayland-9"}, unreachable, serverMustNotBeAsked));
}

TEST(DisplayChoiceTest, ACompositorThatHangsIsDoneWithout) {
  const DisplayEnvironment both{.x11 = ":0", .wayland = "wayland-0"};
  EXPECT_EQ(kindOf(both, silent), WindowKind::x11);
  EXPECT_THAT(remarkOn(both, silent), HasSubstr("does not answer"));
  EXPECT_THAT(sentenceOn({.wayland = "wayland-0"}, silent, serverMustNotBeAsked),
              HasSubstr("compositor does not answer"));
}

/// The toolkit once was given a DISPLAY that a login had left behind, and the host ended.
TEST(DisplayChoiceTest, AnXServerThatCannotBeUsedIsDoneWithout) {
  DisplayEnvironment both{.x11 = ":0", .wayland = "wayland-0"};
  for (const AskXServer& server : {AskXServer(deadServer), AskXServer(silentServer)}) {
    both.backend = std::nullopt;
    EXPECT_EQ(kindOf(both, withoutLayers, server), WindowKind::waylandPlain);
    both.backend = "x11,wayland";
    EXPECT_EQ(kindOf(both, withoutLayers, server), WindowKind::waylandPlain);
    EXPECT_EQ(kindOf(both, withLayers, server), WindowKind::waylandLayer);
  }
}

TEST(DisplayChoiceTest, AnXServerIsAskedOnce) {
  int count = 0;
  const auto counting = [&count](const std::string&) {
    ++count;
    return XServer::unreachable;
  };
  (void)sentenceOn({.x11 = ":0", .backend = "x11,*,x11"}, mustNotBeAsked, counting);
  EXPECT_EQ(count, 1);
}

TEST(DisplayChoiceTest, AServerThatIsTheCauseIsNamed) {
  EXPECT_THAT(sentenceOn({.x11 = ":0"}, mustNotBeAsked, silentServer),
              HasSubstr("X server does not answer"));
  EXPECT_THAT(sentenceOn({.x11 = ":0"}, mustNotBeAsked, deadServer), HasSubstr("check DISPLAY"));
  EXPECT_THAT(sentenceOn({.wayland = "nope"}, unreachable, serverMustNotBeAsked),
              HasSubstr("check DISPLAY or WAYLAND_DISPLAY"));
  const DisplayEnvironment both{.x11 = ":0", .wayland = "wayland-0"};
  EXPECT_THAT(sentenceOn(both, unreachable, silentServer), HasSubstr("X server does not answer"));
  EXPECT_THAT(sentenceOn(both, silent, deadServer), HasSubstr("compositor does not answer"));
  EXPECT_THAT(sentenceOn(both, unreachable, deadServer), HasSubstr("check DISPLAY"));
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
  EXPECT_FALSE(chooseDisplay(chosen, mustNotBeAsked, serverMustNotBeAsked));
}

/// It was once told to start in a desktop session, which it did.
TEST(DisplayChoiceTest, ABackendThatTheSessionDoesNotHaveIsTheCause) {
  const auto sentence = [](const DisplayEnvironment& environment) {
    return sentenceOn(environment, mustNotBeAsked, serverMustNotBeAsked);
  };
  EXPECT_THAT(sentence({.wayland = "wayland-0", .backend = "x11"}), HasSubstr("GDK_BACKEND"));
  EXPECT_THAT(sentence({.x11 = ":0", .backend = "broadway"}), HasSubstr("GDK_BACKEND"));
  EXPECT_THAT(sentence({.backend = "x11"}), HasSubstr("desktop session"));
  // What it names has been tried.
  EXPECT_THAT(
      sentenceOn({.wayland = "wayland-0", .backend = "x11,*"}, unreachable, serverMustNotBeAsked),
      HasSubstr("check DISPLAY"));
  EXPECT_THAT(sentenceOn({.x11 = ":0", .backend = "x11"}, mustNotBeAsked, deadServer),
              HasSubstr("check DISPLAY"));
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
  EXPECT_FALSE(chooseDisplay({.x11 = ":0", .backend = "wayland,broadway"}, mustNotBeAsked,
                             serverMustNotBeAsked));
}

}  // namespace
}  // namespace lanternfold
