// The client and the extension as they are, over a socket, in a network without anybody else.
#include <chrono>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/SocketChildProgram.h"
#include "PlatformLinux/System/SystemClock.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/TemporaryFolder.h"
#include "ViewTree/PlainText.h"
#include "WidgetHost/Service/ExtensionClient.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

class RealExtensionInNamespace : public testing::Test {
 protected:
  void SetUp() override {
    ENTER_NETWORK_NAMESPACE(network_);
    ASSERT_TRUE(
        NetworkNamespace::run("ip link add en0 type veth peer name far0 && ip link set far0 up && "
                              "ip link set en0 up && ip address add 192.0.2.2/24 dev en0"));
    side_ = std::make_unique<Side>(folder_.path());
  }

  /// Until every completion of `answers` has come.
  template <typename... Answers>
  [[nodiscard]] bool runUntilAnswered(const Answers&... answers) {
    const auto limit = std::chrono::steady_clock::now() + 40s;
    while (!(answers.has_value() && ...)) {
      if (std::chrono::steady_clock::now() > limit) return false;
      (void)side_->dispatch.runMainUntil(std::chrono::steady_clock::now() + 2ms);
    }
    return true;
  }

  /// The client's production side.
  struct Side {
    explicit Side(const std::filesystem::path& folder)
        : launcher(LANTERNFOLD_BINARY_DIR "/lanternfold-widget-extension",
                   {"--no-app-group", "--skip-geoip", "--data-dir", folder.string()}, loop,
                   dispatch.mainQueue()) {}
    SystemClock clock;
    RecordingDiagnosticLog log;
    EventLoop loop;
    AsioDispatch dispatch{loop};
    SocketChildProgramLauncher launcher;
    ExtensionClient client{{launcher, dispatch.mainQueue(), clock, log}};
  };

  std::unique_ptr<NetworkNamespace> network_;
  TemporaryFolder folder_;
  std::unique_ptr<Side> side_;
};

TEST_F(RealExtensionInNamespace, AnswersEveryKindOfQuestion) {
  ExtensionClient& client = side_->client;
  client.tellLocationStatus(2);
  std::optional<std::expected<std::vector<WidgetDescription>, ExtensionFailure>> widgets;
  client.list([&](auto answer) { widgets = std::move(answer); });
  ASSERT_TRUE(runUntilAnswered(widgets));
  ASSERT_EQ((*widgets)->size(), 5U);
  const WidgetDescription& widget = (*widgets)->front();
  const WidgetRequest request{.family = widget.supportedFamilies.back()};

  std::optional<std::expected<ViewEntry, ExtensionFailure>> placeholder;
  std::optional<std::expected<Timeline<ViewEntry>, ExtensionFailure>> timeline;
  std::optional<std::expected<void, ExtensionFailure>> performed;
  client.sample(WidgetExtension::SampleKind::placeholder, widget.kind, request,
                [&](auto answer) { placeholder = std::move(answer); });
  client.timeline(widget.kind, request, [&](auto answer) { timeline = std::move(answer); });
  client.perform("RefreshAppIntent", [&](auto answer) { performed = std::move(answer); });
  ASSERT_TRUE(runUntilAnswered(placeholder, timeline, performed));
  EXPECT_TRUE(performed->has_value());
  EXPECT_FALSE(plainTextRows((*placeholder)->view, "10:30").empty());
  std::vector<std::string> shown;
  for (const auto& row : plainTextRows((*timeline)->entries.at(0).view, "10:30")) {
    shown.insert(shown.end(), row.begin(), row.end());
  }
  EXPECT_THAT(shown, testing::Contains("192.0.2.2"));
  EXPECT_EQ(side_->log.lines(), std::vector<std::string>());
}

}  // namespace
}  // namespace lanternfold
