// No way out for a name that is withheld: every command over a kernel that knows it, and everything
// that reaches a person, a script or the disk searched for it. With consent the same search finds
// it, so that it would have found it before.
#include <glib.h>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "CommandLine/Commands/RenderPlan.h"
#include "Tests/CommandLine/KnowingMachine.h"
#include "Tests/CommandLine/WithheldNameSearch.h"

namespace lanternfold {
namespace {

/// By ConsentDecision, and what a later system might say.
constexpr std::int32_t withheldStatuses[] = {0, 1, 2, 5, -1};
constexpr std::int32_t toldStatuses[] = {3, 4};

const NetworkNames otherNames{.ssid = "x",
                              .bssid = {0x02, 0x11, 0x11, 0x11, 0x11, 0x11},
                              .secondBssid = {0x02, 0x22, 0x22, 0x22, 0x22, 0x22},
                              .peer = {0x02, 0x33, 0x33, 0x33, 0x33, 0x33}};

std::vector<std::string> findingsIn(const Traces& traces) {
  std::vector<std::string> found;
  for (const auto& [place, bytes] : traces) {
    const auto more = findings(place, bytes);
    found.insert(found.end(), more.begin(), more.end());
  }
  return found;
}

class WithoutWifiConsent : public testing::TestWithParam<std::int32_t> {};

TEST_P(WithoutWifiConsent, NothingThatIsWrittenHoldsAName) {
  const Traces traces = KnowingMachine(multiLinkFacts(marker), GetParam()).runEverything();
  EXPECT_EQ(findingsIn(traces), std::vector<std::string>());
  EXPECT_EQ(traces.at("wifi status"), "0");
}

INSTANTIATE_TEST_SUITE_P(Statuses, WithoutWifiConsent, testing::ValuesIn(withheldStatuses));

TEST(WifiPrivacy, WithoutConsentNothingOfAnOrdinaryConnectionIsWritten) {
  const Traces traces = KnowingMachine(joinedFacts(marker), 0).runEverything();
  EXPECT_EQ(findingsIn(traces), std::vector<std::string>());
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
  const Traces traces = KnowingMachine(multiLinkFacts(marker), 0).runEverything();
  const Traces others = KnowingMachine(multiLinkFacts(otherNames), 0).runEverything();
  ASSERT_EQ(traces.size(), others.size());
  for (const auto& [place, bytes] : traces) {
    EXPECT_TRUE(differsAnyway(place) || bytes == others.at(place)) << place;
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
// nothing of this machine: it tells others their own addresses. Nor does `net`, which works on what
// it is given.
TEST(WifiPrivacy, EveryCommandAndWidgetIsRun) {
  std::set<std::string> run{"echo-service", "net"};
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
}

}  // namespace
}  // namespace lanternfold
