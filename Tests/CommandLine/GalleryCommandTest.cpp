// The sheet of all widgets, from a command line over a machine of fakes to the file.
#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include "CommandLine/Commands/GalleryCommand.h"
#include "CommandLine/Program.h"
#include "Tests/CommandLine/WifiScenes.h"
#include "Tests/Support/PngSize.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr const char* ipv4EchoUrl = "https://four.example/lanternfold/ip.php";
constexpr const char* ipv6EchoUrl = "https://six.example/lanternfold/ip.php";
constexpr const char* geolocationUrl = "http://geo.example/json/?fields=isp,query,countryCode,as";

class GalleryCommandTest : public testing::Test {
 protected:
  void SetUp() override {
    fake_.addEthernet("en0", {192, 168, 1, 20});
    addWifiLink(fake_);
    fake_.wifi.setFacts(joinedFacts());
    fake_.pathMonitors.deliver(
        {.status = PathStatus::satisfied,
         .availableInterfaces = {
             {.name = "en0", .index = 2, .type = PathInterfaceType::wiredEthernet}}});
    fake_.urlSessions.answer(ipv4EchoUrl, R"({"ip":"203.0.113.7"})");
    fake_.urlSessions.answer(ipv6EchoUrl, R"({"ip":"2001:db8::7"})");
    fake_.urlSessions.answer(
        geolocationUrl,
        R"({"isp":"Example Net","countryCode":"IT","as":"","query":"203.0.113.7"})");
  }

  ExitStatus gallery(const std::vector<std::string>& further) {
    std::vector<std::string> arguments{
        "gallery",           "--ipv4-echo",         "https://four.example",
        "--ipv6-echo",       "https://six.example", "--geolocation",
        "http://geo.example"};
    arguments.insert(arguments.end(), further.begin(), further.end());
    return runProgram(arguments, {.output = output_, .errors = errors_},
                      [this](const MachineOptions& options) -> const Machine& {
                        options_ = options;
                        return fake_.machine;
                      });
  }
  /// The file's bytes after a successful run.
  std::string drawn(const std::string& name, std::vector<std::string> further = {}) {
    further.insert(further.end(), {"-o", folder_ / name});
    EXPECT_EQ(gallery(further), ExitStatus::done) << errors_.str();
    return bytesOf(folder_ / name);
  }
  static std::string bytesOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  std::ptrdiff_t timesAsked(std::string_view url) const {
    return std::ranges::count(fake_.urlSessions.requestedUrls(), url);
  }

  FakeMachine fake_;
  const TemporaryFolder temporary_;
  const fs::path& folder_ = temporary_.path();
  std::ostringstream output_;
  std::ostringstream errors_;
  MachineOptions options_;
};

TEST_F(GalleryCommandTest, DrawsSamplesIntoAPngOfTheCurrentFolderByDefault) {
  const PictureOptions options = defaultGalleryOptions();
  EXPECT_EQ(options.output, "lanternfold-gallery.png");
  const auto choice = checkPictureOptions(options);
  ASSERT_TRUE(choice);
  EXPECT_EQ(choice->entry, EntryCall::Kind::placeholder);
  EXPECT_EQ(choice->format, PictureFormat::png);
  EXPECT_EQ(choice->scale, 2);
}

TEST_F(GalleryCommandTest, WritesAPngAtTheScaleGivenAndSaysWhere) {
  EXPECT_EQ(pngSize(drawn("sheet.png", {"--scale", "1"})), std::pair(1760, 1006));
  EXPECT_EQ(output_.str(), "Wrote " + (folder_ / "sheet.png").string() + "\n");
  EXPECT_EQ(errors_.str(), "") << "every asset was found";
  EXPECT_EQ(pngSize(drawn("sheet.png", {"--scale", "0.5"})), std::pair(880, 503));
}

TEST_F(GalleryCommandTest, WritesSvgAndPdf) {
  EXPECT_THAT(drawn("sheet.svg"), HasSubstr("<svg"));
  EXPECT_EQ(drawn("sheet.pdf").substr(0, 5), "%PDF-");
}

TEST_F(GalleryCommandTest, ALanguageFromRightToLeftMirrorsTheSheet) {
  const std::string usual = drawn("sheet.png", {"--scale", "1"});
  fake_.machine.language.isRightToLeft = true;
  EXPECT_FALSE(drawn("sheet.png", {"--scale", "1"}) == usual);
}

TEST_F(GalleryCommandTest, SamplesNeedNoMachineAndAskNobody) {
  fake_.kernel.fail(FakeNetworkKernel::Table::addressEntries, NetworkKernelError::refused);
  fake_.wifi.refuse(NetworkKernelError::refused);
  // An SVG numbers its pieces through the whole process.
  const std::string first = drawn("sheet.png");
  EXPECT_TRUE(drawn("sheet.png", {"--entry", "snapshot"}) == first);
  EXPECT_THAT(fake_.urlSessions.requestedUrls(), testing::IsEmpty());
  EXPECT_EQ(fake_.fileSystem.stepCount(), 0U);
  EXPECT_EQ(errors_.str(), "");
}

TEST_F(GalleryCommandTest, ThisMachineIsAskedOnceForEachCardOfBothSchemes) {
  const std::string samples = drawn("sheet.png");
  EXPECT_FALSE(drawn("sheet.png", {"--entry", "timeline"}) == samples);
  EXPECT_EQ(timesAsked(ipv4EchoUrl), 5) << "three panoramic cards and two of the internet";
  EXPECT_EQ(timesAsked(geolocationUrl), 1) << "the first card's answer is cached for the others";
  EXPECT_TRUE(fake_.locationConsent.requests().empty()) << "nobody is asked for consent";
}

TEST_F(GalleryCommandTest, CardsSideBySideWaitForSilentServicesTogether) {
  for (const char* url : {ipv4EchoUrl, ipv6EchoUrl, geolocationUrl}) {
    fake_.urlSessions.neverAnswer(url);
  }
  const auto begin = fake_.clock.steadyNow();
  EXPECT_FALSE(drawn("sheet.svg", {"--entry", "timeline"}).empty());
  // A card gives up after 3 seconds of an echo and 3 of the geolocation; the first one alone.
  EXPECT_LT(fake_.clock.steadyNow() - begin, std::chrono::seconds(2 * 8));
}

TEST_F(GalleryCommandTest, WhatAllItsWidgetsMeetIsSaidOnce) {
  (void)drawn("sheet.svg");
  EXPECT_EQ(options_.repeatedDiagnostics, RepeatedDiagnostics::dropped);
  EXPECT_EQ(
      runProgram(std::vector<std::string>{"interfaces"}, {.output = output_, .errors = errors_},
                 [this](const MachineOptions& options) -> const Machine& {
                   options_ = options;
                   return fake_.machine;
                 }),
      ExitStatus::done);
  EXPECT_EQ(options_.repeatedDiagnostics, RepeatedDiagnostics::written);
}

TEST_F(GalleryCommandTest, AWifiThatCannotBeReadIsALineAndTheOthersAreDrawn) {
  const std::string whole = drawn("sheet.svg", {"--entry", "timeline"});
  fake_.wifi.refuse(NetworkKernelError::refused);
  const std::string rest = drawn("sheet.svg", {"--entry", "timeline"});
  EXPECT_LT(rest.size(), whole.size());
  EXPECT_THAT(errors_.str(),
              testing::StartsWith("lanternfold-widgets: Wi-Fi is left out: cannot "));
  EXPECT_EQ(std::ranges::count(errors_.str(), '\n'), 1);
}

TEST_F(GalleryCommandTest, AKernelThatRefusesIsASentenceAndNoSheet) {
  fake_.kernel.fail(FakeNetworkKernel::Table::addressEntries, NetworkKernelError::refused);
  EXPECT_EQ(gallery({"--entry", "timeline", "-o", folder_ / "sheet.png"}), ExitStatus::failed);
  EXPECT_THAT(errors_.str(), HasSubstr("cannot read this machine's interfaces"));
  EXPECT_EQ(std::ranges::count(errors_.str(), '\n'), 1);
  EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(GalleryCommandTest, ASheetThatIsTooLargeIsASentenceAndNoFile) {
  EXPECT_EQ(gallery({"--scale", "8", "-o", folder_ / "sheet.png"}), ExitStatus::failed);
  EXPECT_THAT(errors_.str(), HasSubstr("too large: choose a smaller scale"));
  EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(GalleryCommandTest, AFolderThatIsNotThereIsASentence) {
  EXPECT_EQ(gallery({"-o", folder_ / "none" / "sheet.png"}), ExitStatus::failed);
  EXPECT_THAT(errors_.str(), HasSubstr("No such file or directory"));
}

TEST_F(GalleryCommandTest, MissingAssetsAreSaidOnceEach) {
  fake_.machine.assets = folder_;
  (void)drawn("sheet.svg");
  const std::string errors = errors_.str();
  EXPECT_EQ(errors.find("LanternfoldLogo"), errors.rfind("LanternfoldLogo")) << errors;
}

TEST_F(GalleryCommandTest, ArgumentsThatAreNoneAreASentenceWithStatusTwo) {
  const std::pair<std::vector<std::string>, const char*> faults[] = {
      {{"--entry", "sample"}, "unknown entry \"sample\"; use placeholder, snapshot or timeline"},
      {{"--scale", "9"}, "--scale takes a number from 0.5 to 8, such as 2 or 1.5, not \"9\""},
      {{"-o", "sheet.jpeg"}, "cannot tell a picture format from \"sheet.jpeg\""},
      {{"-o", ""}, "cannot tell a picture format from \"\""},
      {{"--output"}, "--output needs a file's name that ends in .png, .svg or .pdf"},
      {{"-o", "a.png", "-o", "b.png"}, "--output was given twice; give it once"},
      {{"--scheme", "dark"}, "--scheme"},
      {{"--family", "small"}, "--family"},
      {{"--json"}, "--json"},
      {{"InternetNetworkStateWidget"}, "InternetNetworkStateWidget"}};
  for (const auto& [arguments, words] : faults) {
    errors_.str({});
    EXPECT_EQ(gallery(arguments), ExitStatus::badArguments) << testing::PrintToString(arguments);
    EXPECT_THAT(errors_.str(), HasSubstr(words));
    EXPECT_EQ(std::ranges::count(errors_.str(), '\n'), 1) << errors_.str();
  }
}

}  // namespace
}  // namespace lanternfold
