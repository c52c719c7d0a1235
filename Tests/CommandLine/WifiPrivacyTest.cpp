// No way out for a name that is withheld: every command over a kernel that knows it, and everything
// that reaches a person, a script or the disk searched for it. With consent the same search finds
// it, so that it would have found it before.
#include <cctype>
#include <filesystem>
#include <fstream>
#include <glib.h>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "CommandLine/Commands/RenderPlan.h"
#include "CommandLine/Program.h"
#include "PlatformLinux/Defaults/DataDirectory.h"
#include "PlatformLinux/Defaults/LinuxGroupContainer.h"
#include "PlatformLinux/Defaults/SqliteUserDefaults.h"
#include "PlatformLinux/System/PosixFileSystem.h"
#include "Tests/CommandLine/WifiScenes.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

/// By ConsentDecision, and what a later system might say.
constexpr std::int32_t withheldStatuses[] = {0, 1, 2, 5, -1};
constexpr std::int32_t toldStatuses[] = {3, 4};

const NetworkNames marker{.ssid = "Quill-Zanzibar 7391?~",
                          .bssid = {0x06, 0x5E, 0xC4, 0x9A, 0x7B, 0x31},
                          .secondBssid = {0x06, 0x5E, 0xC4, 0x9A, 0x7B, 0xD2},
                          .peer = {0x0A, 0xB1, 0xF6, 0x27, 0x93, 0xEC}};
const NetworkNames otherNames{.ssid = "x",
                              .bssid = {0x02, 0x11, 0x11, 0x11, 0x11, 0x11},
                              .secondBssid = {0x02, 0x22, 0x22, 0x22, 0x22, 0x22},
                              .peer = {0x02, 0x33, 0x33, 0x33, 0x33, 0x33}};

using Form = std::pair<std::string, std::string>;  ///< what it is, and the bytes

std::string lowered(std::string text) {
  for (char& each : text) each = static_cast<char>(std::tolower(static_cast<unsigned char>(each)));
  return text;
}

std::string hexadecimal(std::string_view bytes, std::string_view separator) {
  std::string text;
  for (const char byte : bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    const auto value = static_cast<unsigned char>(byte);
    if (!text.empty()) text += separator;
    text += digits[value >> 4U];
    text += digits[value & 0xFU];
  }
  return text;
}

/// The part of the Base64 text that is the same whatever stands behind the bytes, when `before`
/// bytes of a group of three stand in front of them.
std::string base64(std::string_view bytes, std::size_t before) {
  const std::string padded = std::string(before, '\0') + std::string(bytes);
  gchar* text = g_base64_encode(reinterpret_cast<const guchar*>(padded.data()), padded.size());
  const std::string whole = text;
  g_free(text);
  const std::size_t first = before == 0 ? 0 : before + 1;
  return whole.substr(first, padded.size() * 8 / 6 - first);
}

void appendForms(std::vector<Form>& forms, const std::string& what, std::string_view bytes) {
  forms.push_back({what + " raw", lowered(std::string(bytes))});
  for (const char* separator : {"", ":", "-", " ", ".", "\\x", ", 0x"}) {
    forms.push_back(
        {what + " in hexadecimal with \"" + separator + "\"", hexadecimal(bytes, separator)});
  }
  for (const std::size_t before : {0U, 1U, 2U}) {
    forms.push_back({what + " in Base64", lowered(base64(bytes, before))});
  }
}

/// Every form to search for, in lower case: what is searched is lowered as well.
std::vector<Form> formsOf(const NetworkNames& names) {
  std::vector<Form> forms;
  appendForms(forms, "the SSID", names.ssid);
  const auto bytesOf = [](const HardwareAddress& address) {
    return std::string(address.begin(), address.end());
  };
  appendForms(forms, "the BSSID", bytesOf(names.bssid));
  appendForms(forms, "the second BSSID", bytesOf(names.secondBssid));
  appendForms(forms, "the peer", bytesOf(names.peer));
  return forms;
}

std::vector<std::string> findings(const std::string& place, const std::string& bytes) {
  static const std::vector<Form> forms = formsOf(marker);
  const std::string searched = lowered(bytes);
  std::vector<std::string> found;
  for (const auto& [what, form] : forms) {
    if (searched.find(form) != std::string::npos) found.push_back(what + " in " + place);
  }
  return found;
}

/// Everything that a run of all commands leaves: what was written where, by name.
using Traces = std::map<std::string, std::string>;

std::vector<std::string> findings(const Traces& traces) {
  std::vector<std::string> found;
  for (const auto& [place, bytes] : traces) {
    const auto more = findings(place, bytes);
    found.insert(found.end(), more.begin(), more.end());
  }
  return found;
}

std::string bytesOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// A machine whose kernel knows the names, and which keeps what it keeps on a real disk.
class KnowingMachine {
 public:
  KnowingMachine(const WifiFacts& facts, std::int32_t status) {
    fake_.addEthernet("en0", {192, 0, 2, 20});
    addWifiLink(fake_);
    fake_.wifi.setFacts(facts);
    fake_.locationConsent.setAuthorizationStatus(status);
    fake_.mainLoop.interruptedAfter = std::chrono::minutes(5);
  }

  Traces runEverything() {
    for (const auto& arguments : commands()) run(arguments);
    for (const std::string& line : fake_.diagnostics.lines()) {
      traces_["diagnostics"] += withoutFolder(line) + '\n';
    }
    for (const auto& entry : fs::recursive_directory_iterator(folder_.path())) {
      const std::string name = fs::relative(entry.path(), folder_.path()).string();
      traces_["names of files"] += name + '\n';
      if (entry.is_regular_file()) traces_[name] = bytesOf(entry.path());
    }
    return traces_;
  }

  /// Every command that ends by itself or by an interruption, in every form.
  [[nodiscard]] std::vector<std::vector<std::string>> commands() const {
    std::vector<std::vector<std::string>> all{
        {"interfaces"},
        {"interfaces", "--json"},
        {"state"},
        {"state", "--json"},
        {"state", "--categories", "wlan"},
        {"state", "--categories", "internet,wlan,cellular,other", "--json"},
        {"state", "--categories", "internet,wlan,cellular,other", "--watch"},
        {"state", "--watch", "--json"},
        {"wifi"},
        {"wifi", "--json"},
        {"record", "--once"},
        {"record", "--once", "--json"},
        {"record"},
        {"record", "--json"},
        {"location", "status"},
        {"location", "status", "--json"},
        {"location", "deny"},
        {"wifi", "--bogus"},
    };
    for (const auto& [kind, family] : widgets()) {
      for (const char* entry : {"timeline", "snapshot", "placeholder"}) {
        for (const char* ending : {".svg", ".png"}) {
          const std::string picture = kind + "-" + family + "-" + entry + ending;
          all.push_back({"render", kind, "--family", family, "--entry", entry, "--scale", "1",
                         "--output", folder_ / picture});
        }
      }
    }
    return all;
  }

  static std::vector<std::pair<std::string, std::string>> widgets() {
    return {{"NetworkAdapterWidget", "medium"},
            {"WlanNetworkStateWidget", "small"},
            {"WlanNetworkStateWidget", "medium"}};
  }

 private:
  void run(const std::vector<std::string>& arguments) {
    std::ostringstream output;
    std::ostringstream errors;
    const ExitStatus status =
        runProgram(arguments, {.output = output, .errors = errors},
                   [this](const MachineOptions&) -> const Machine& { return machine_; });
    std::string command;
    for (const std::string& argument : arguments) command += withoutFolder(argument) + ' ';
    traces_[command + "status"] = std::to_string(static_cast<int>(status));
    traces_[command + "output"] = withoutFolder(output.str());
    traces_[command + "errors"] = withoutFolder(errors.str());
  }

  /// The folder is called otherwise each time.
  [[nodiscard]] std::string withoutFolder(std::string text) const {
    const std::string folder = folder_.path().string();
    for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder)) {
      text.replace(at, folder.size(), "FOLDER");
    }
    return text;
  }

  FakeMachine fake_;
  const TemporaryFolder folder_;
  PosixFileSystem files_;
  const DataDirectory directory_{folder_ / "data"};
  LinuxGroupContainer groupContainer_{directory_};
  SqliteUserDefaultsSuites userDefaults_{directory_, fake_.diagnostics};
  ConsentRecord consentRecord_{consentPlaceIn(directory_), files_, fake_.diagnostics};
  const Platform& fakes_ = fake_.machine.platform;
  const Machine machine_{.platform = {.kernel = fakes_.kernel,
                                      .resolverConfiguration = fakes_.resolverConfiguration,
                                      .networkConfiguration = fakes_.networkConfiguration,
                                      .interfaceNaming = fakes_.interfaceNaming,
                                      .pathMonitors = fakes_.pathMonitors,
                                      .dispatch = fakes_.dispatch,
                                      .clock = fakes_.clock,
                                      .strings = fakes_.strings,
                                      .diagnostics = fakes_.diagnostics,
                                      .fileSystem = files_,
                                      .userDefaults = userDefaults_,
                                      .groupContainer = groupContainer_,
                                      .urlSessions = fakes_.urlSessions,
                                      .locationConsent = fakes_.locationConsent,
                                      .wifiClient = fakes_.wifiClient},
                         .metricsReader = fake_.machine.metricsReader,
                         .soleRecorder = fake_.soleRecorder,
                         .readWifi = fake_.machine.readWifi,
                         .consentRecord = consentRecord_,
                         .mainLoop = fake_.mainLoop,
                         .assets = fake_.machine.assets};
  Traces traces_;
};

TEST(WifiPrivacy, WithoutConsentNothingThatIsWrittenHoldsAName) {
  for (const std::int32_t status : withheldStatuses) {
    const Traces traces = KnowingMachine(multiLinkFacts(marker), status).runEverything();
    EXPECT_EQ(findings(traces), std::vector<std::string>()) << status;
    EXPECT_EQ(traces.at("wifi status"), "0");
  }
  const Traces traces = KnowingMachine(joinedFacts(marker), 0).runEverything();
  EXPECT_EQ(findings(traces), std::vector<std::string>());
}

TEST(WifiPrivacy, WithConsentTheSameSearchFindsTheNames) {
  for (const std::int32_t status : toldStatuses) {
    const Traces traces = KnowingMachine(multiLinkFacts(marker), status).runEverything();
    for (const char* place :
         {"wifi output", "wifi --json output", "state output", "state --json output",
          "state --categories wlan output", "state --watch --json output"}) {
      const auto found = findings(place, traces.at(place));
      EXPECT_THAT(found, testing::Contains(std::string("the SSID raw in ") + place));
      EXPECT_THAT(
          found, testing::Contains("the BSSID in hexadecimal with \":\" in " + std::string(place)));
    }
    EXPECT_THAT(findings("wifi output", traces.at("wifi output")),
                testing::Contains("the second BSSID in hexadecimal with \":\" in wifi output"));
  }
}

/// Two machines that do the same never have the same of those: SVG surfaces are numbered through
/// the process, and a database's journal holds random numbers.
bool differsAnyway(const std::string& place) {
  return place.ends_with(".svg") || place.ends_with("-wal") || place.ends_with("-shm");
}

// Pictures hold shapes and not letters, so that a search says nothing of them. That all of it is
// the same to the byte whatever the network is called says more, and of everything.
TEST(WifiPrivacy, WithoutConsentNothingDependsOnTheNames) {
  for (const std::int32_t status : {0, 2}) {
    const Traces traces = KnowingMachine(multiLinkFacts(marker), status).runEverything();
    const Traces others = KnowingMachine(multiLinkFacts(otherNames), status).runEverything();
    ASSERT_EQ(traces.size(), others.size());
    for (const auto& [place, bytes] : traces) {
      EXPECT_TRUE(differsAnyway(place) || bytes == others.at(place)) << place;
    }
  }
}

TEST(WifiPrivacy, WithConsentThePictureDependsOnTheName) {
  const std::string picture = "WlanNetworkStateWidget-medium-timeline.png";
  const Traces traces = KnowingMachine(joinedFacts(marker), 3).runEverything();
  const Traces others = KnowingMachine(joinedFacts(otherNames), 3).runEverything();
  EXPECT_FALSE(traces.at(picture) == others.at(picture));
}

TEST(WifiPrivacy, EveryFormThatIsSearchedForCanBeFound) {
  for (const auto& [what, form] : formsOf(marker)) {
    EXPECT_THAT(findings("a text", "before" + form + "after"),
                testing::Contains(what + " in a text"));
  }
  std::string embedded = "ab" + marker.ssid + "cd";
  gchar* text = g_base64_encode(reinterpret_cast<const guchar*>(embedded.data()), embedded.size());
  EXPECT_THAT(findings("a text", text), testing::Contains("the SSID in Base64 in a text"));
  g_free(text);
}

// A new command or widget is to be added to those that are run above. The echo service knows
// nothing of this machine: it tells others their own addresses.
TEST(WifiPrivacy, EveryCommandAndWidgetIsRun) {
  std::set<std::string> run{"echo-service"};
  for (const auto& arguments : KnowingMachine(joinedFacts(marker), 0).commands()) {
    run.insert(arguments.front());
  }
  std::ostringstream help;
  std::ostringstream errors;
  (void)runProgram(std::vector<std::string>{"--help"}, {.output = help, .errors = errors}, nullptr);
  std::istringstream lines(help.str().substr(help.str().find("Subcommands:")));
  std::set<std::string> offered;
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line) && line.starts_with("  ")) {
    if (line[2] != ' ') offered.insert(line.substr(2, line.find(' ', 2) - 2));
  }
  EXPECT_EQ(run, offered);

  std::set<std::string> drawn;
  for (const auto& [kind, family] : KnowingMachine::widgets()) drawn.insert(kind);
  std::set<std::string> drawable;
  std::istringstream words(drawableKinds);
  for (std::string word; words >> word;) {
    if (word.find("Widget") == std::string::npos) continue;
    drawable.insert(word.substr(0, word.find(',')));
  }
  EXPECT_EQ(drawn, drawable);
}

}  // namespace
}  // namespace lanternfold
