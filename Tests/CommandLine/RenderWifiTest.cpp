// The picture of the Wi-Fi card: its sizes, its options, and what stands on it.
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include "CommandLine/Commands/RenderCommand.h"
#include "Tests/CommandLine/WifiScenes.h"
#include "Tests/Support/PngSize.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

constexpr std::int32_t denied = 2;
constexpr std::int32_t allowed = 4;

class RenderWifiTest : public testing::Test {
 protected:
  void SetUp() override {
    addWifiLink(fake_);
    fake_.wifi.setFacts(joinedFacts());
  }

  RenderOptions options(const std::string& fileName) const {
    RenderOptions options;
    options.widget.kind = "WlanNetworkStateWidget";
    options.picture.output = folder_.path() / fileName;
    return options;
  }
  std::expected<void, CommandFailure> render(const RenderOptions& options) {
    const auto plan = planRender(options);
    if (!plan) return std::unexpected(plan.error());
    return runRender(*plan, {.appGroupId = "a.group"}, fake_.machine,
                     {.output = output_, .errors = errors_});
  }
  std::string rendered(const RenderOptions& options) {
    const auto result = render(options);
    EXPECT_TRUE(result) << (result ? "" : result.error().sentence);
    std::ifstream stream(options.picture.output, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  std::string sentenceOf(const RenderOptions& options) {
    const auto result = render(options);
    return result ? "" : result.error().sentence;
  }

  FakeMachine fake_;
  const TemporaryFolder folder_;
  std::ostringstream output_;
  std::ostringstream errors_;
};

TEST_F(RenderWifiTest, ComesSmallAndMediumAndMediumByDefault) {
  EXPECT_EQ(pngSize(rendered(options("card.png"))), std::pair(728, 340));
  auto small = options("small.png");
  small.widget.family = "small";
  EXPECT_EQ(pngSize(rendered(small)), std::pair(340, 340));
}

TEST_F(RenderWifiTest, AFamilyThatItLacksIsASentence) {
  auto large = options("card.png");
  large.widget.family = "large";
  EXPECT_EQ(sentenceOf(large), "WlanNetworkStateWidget has no large family; use small or medium");
  large.widget.family = "huge";
  EXPECT_EQ(sentenceOf(large), "unknown family \"huge\"; use small or medium");
}

TEST_F(RenderWifiTest, AnAdapterIsNotItsToChoose) {
  auto chosen = options("card.png");
  chosen.widget.adapter = "en1";
  EXPECT_THAT(sentenceOf(chosen),
              testing::StartsWith("--adapter chooses what NetworkAdapterWidget"));
}

TEST_F(RenderWifiTest, AMachineWithoutWifiHasACardThatSaysSo) {
  fake_.wifi.setFacts(std::nullopt);
  EXPECT_EQ(pngSize(rendered(options("card.png"))), std::pair(728, 340));
}

TEST_F(RenderWifiTest, AKernelThatRefusesIsASentenceAndNoCard) {
  fake_.wifi.refuse(NetworkKernelError::refused);
  EXPECT_NE(sentenceOf(options("card.png")), "");
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "card.png"));
}

TEST_F(RenderWifiTest, RemembersTrafficInItsApplicationGroup) {
  (void)rendered(options("card.png"));
  EXPECT_THAT(fake_.fileSystem.paths("/containers/groups"),
              testing::Contains(testing::HasSubstr("a.group")));
}

}  // namespace
}  // namespace lanternfold
