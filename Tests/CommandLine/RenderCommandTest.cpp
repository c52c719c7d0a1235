// The picture of the adapter widget, from a machine of fakes to the file.
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include "CommandLine/Commands/RenderCommand.h"
#include "Tests/CommandLine/WifiScenes.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

class RenderCommandTest : public testing::Test {
 protected:
  void SetUp() override {
    fake_.addEthernet("en0", {192, 168, 1, 20});
    fake_.addEthernet("en1", {10, 0, 0, 5});
  }

  RenderOptions options(const std::string& fileName) const {
    RenderOptions options;
    options.widget.kind = "NetworkAdapterWidget";
    options.picture.output = folder_ / fileName;
    return options;
  }
  std::expected<void, CommandFailure> render(const RenderOptions& options) {
    const auto plan = planRender(options);
    if (!plan) return std::unexpected(plan.error());
    return runRender(*plan, monitor_, fake_.machine, {.output = output_, .errors = errors_});
  }
  /// The file's bytes after a successful run.
  std::string rendered(const RenderOptions& options) {
    const auto result = render(options);
    EXPECT_TRUE(result) << (result ? "" : result.error().sentence);
    std::ifstream stream(options.picture.output, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  FakeMachine fake_;
  MonitorOptions monitor_;
  const TemporaryFolder temporary_;
  const fs::path& folder_ = temporary_.path();
  std::ostringstream output_;
  std::ostringstream errors_;
};

/// Big-endian, as the header of a PNG file holds its width and height.
std::uint32_t wordAt(const std::string& bytes, std::size_t position) {
  std::uint32_t word = 0;
  for (const char byte : bytes.substr(position, 4)) {
    word = (word << 8U) | static_cast<unsigned char>(byte);
  }
  return word;
}

TEST_F(RenderCommandTest, WritesAPngOfTheMediumFamilyAtTheScaleGiven) {
  for (const std::string text : {"0.5", "1", "2.0", "3"}) {
    const double scale = std::stod(text);
    auto options = this->options("card.png");
    options.picture.scale = text;
    const std::string picture = rendered(options);
    ASSERT_GT(picture.size(), 24U);
    EXPECT_EQ(picture.substr(0, 8), "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(wordAt(picture, 16), static_cast<std::uint32_t>(364 * scale));
    EXPECT_EQ(wordAt(picture, 20), static_cast<std::uint32_t>(170 * scale));
  }
}

TEST_F(RenderCommandTest, APictureOfTheWifiAsksNobodyForConsent) {
  addWifiLink(fake_, "en2");
  fake_.wifi.setFacts(joinedFacts({}, "en2"));
  for (const std::int32_t status : {0, 4}) {
    fake_.locationConsent.setAuthorizationStatus(status);
    auto options = this->options("card.svg");
    options.widget.kind = "WlanNetworkStateWidget";
    EXPECT_FALSE(rendered(options).empty());
  }
  EXPECT_TRUE(fake_.locationConsent.requests().empty());
}

TEST_F(RenderCommandTest, SaysWhereThePictureIs) {
  (void)rendered(options("card.png"));
  EXPECT_EQ(output_.str(), "Wrote " + (folder_ / "card.png").string() + "\n");
  EXPECT_EQ(errors_.str(), "") << "every asset was found";
}

TEST_F(RenderCommandTest, AControlCharacterInTheFilesNameIsNotSentToTheTerminal) {
  (void)rendered(options("a\x1b[31m.png"));
  EXPECT_THAT(output_.str(), testing::EndsWith("a\\x1b[31m.png\n"));
}

TEST_F(RenderCommandTest, TheFilesEndingTellsTheFormatInAnyCase) {
  EXPECT_EQ(rendered(options("card.SVG")).substr(0, 5), "<?xml");
  EXPECT_EQ(rendered(options("card.pdf")).substr(0, 5), "%PDF-");
}

TEST_F(RenderCommandTest, TheSchemesDiffer) {
  auto dark = options("dark.png");
  dark.scheme = "dark";
  EXPECT_NE(rendered(options("light.png")), rendered(dark));
}

TEST_F(RenderCommandTest, ALanguageFromRightToLeftMirrorsThePicture) {
  const std::string usual = rendered(options("usual.png"));
  fake_.machine.language.isRightToLeft = true;
  EXPECT_FALSE(rendered(options("mirrored.png")) == usual);
}

TEST_F(RenderCommandTest, AnAdapterThatIsGoneNeverShowsAnotherOne) {
  auto gone = options("gone.png");
  gone.widget.adapter = "en7";
  const std::string explanation = rendered(gone);
  EXPECT_THAT(errors_.str(), testing::HasSubstr("no adapter is called \"en7\""));
  fake_.kernel.setCounters("en0", {.recvBytes = 77'000'000, .sentBytes = 1});
  fake_.kernel.removeLink("en1");
  EXPECT_EQ(rendered(gone), explanation) << "what happens to other adapters does not show";
}

TEST_F(RenderCommandTest, PlaceholdersNeedNoKernel) {
  fake_.kernel.fail(FakeNetworkKernel::Table::addressEntries, NetworkKernelError::refused);
  auto sample = options("sample.png");
  sample.picture.entry = "placeholder";
  const std::string first = rendered(sample);
  EXPECT_EQ(rendered(sample), first);
  EXPECT_FALSE(render(options("card.png"))) << "this machine's card needs it";
  EXPECT_FALSE(fs::exists(folder_ / "card.png"));
}

TEST_F(RenderCommandTest, AFolderThatIsNotThereIsASentence) {
  const auto result = render(options("none/card.png"));
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().status, ExitStatus::failed);
  EXPECT_THAT(result.error().sentence, testing::HasSubstr("No such file or directory"));
}

TEST_F(RenderCommandTest, MissingAssetsAreDrawnByAStandInAndSaidOnStandardError) {
  fake_.machine.assets = folder_;
  (void)rendered(options("card.png"));
  EXPECT_THAT(errors_.str(), testing::HasSubstr("LanternfoldLogo"));
}

TEST_F(RenderCommandTest, EveryWidgetHasAPictureInEachOfItsSizes) {
  const std::pair<const char*, std::vector<std::string>> widgets[] = {
      {"PanoramicNetworkStateWidget", {"small", "medium", "large"}},
      {"InternetNetworkStateWidget", {"small", "medium"}},
      {"NetworkAdapterWidget", {"medium"}},
      {"BandwidthMonitorWidget", {"small"}},
      {"WlanNetworkStateWidget", {"small", "medium"}}};
  for (const auto& [kind, families] : widgets) {
    for (const std::string& family : families) {
      auto sample = options("sample.svg");
      sample.widget.kind = kind;
      sample.widget.family = family;
      sample.picture.entry = "snapshot";
      EXPECT_EQ(rendered(sample).substr(0, 5), "<?xml") << kind << ", " << family;
    }
  }
}

TEST_F(RenderCommandTest, TheAdapterWidgetRecordsWithoutAnApplicationGroup) {
  (void)rendered(options("adapter.svg"));
  EXPECT_TRUE(
      fake_.fileSystem.bytes("/containers/metrics/connection-metrics-storage_default.json"));
  EXPECT_THAT(fake_.fileSystem.paths("/containers/groups"), testing::IsEmpty());
}

TEST_F(RenderCommandTest, APlaceholderIsNoSample) {
  RenderOptions placeholder = options("adapter.svg");
  placeholder.picture.entry = "placeholder";
  (void)rendered(placeholder);
  EXPECT_EQ(fake_.fileSystem.stepCount(), 0U);
}

TEST_F(RenderCommandTest, APictureIsDrawnWithoutAPlaceToRecordTo) {
  fake_.groupContainer.setRefusing(true);
  EXPECT_THAT(rendered(options("adapter.svg")), testing::HasSubstr("<svg"));
  EXPECT_EQ(fake_.diagnostics.lines().size(), 1U);
}

}  // namespace
}  // namespace lanternfold
