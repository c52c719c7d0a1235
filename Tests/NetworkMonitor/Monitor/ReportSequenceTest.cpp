// The exact sequence of a monitor's reports, as text.
#include <gtest/gtest.h>

#include "Tests/NetworkMonitor/Monitor/MonitorScene.h"

namespace lanternfold {
namespace {

using Category = NetworkSourceCategory;

class ReportSequenceTest : public testing::Test {
 protected:
  MonitorScene scene;
};

TEST_F(ReportSequenceTest, FullRefreshOfAll) {
  const auto monitor = scene.makeMonitor();

  monitor->refresh();
  scene.reports.note("the internet resolver answers");
  scene.internet->answer(0, {internetAt("198.51.100.7"), false});
  scene.internet->answer(0, {internetAt("198.51.100.7"), true});

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] same\n"
            "[0] wlan=en0\n"
            "[2] same\n"
            "[2] cellular=Carrier A\n"
            "[2] cellularEnabled=true\n"
            "[2] same\n"
            "[6] same\n"
            "[6] others=en1,en5\n"
            "[14] same\n"
            "-- the internet resolver answers\n"
            "[14] internet=198.51.100.7\n"
            "[14] same\n"
            "[15] same, complete\n");
}

TEST_F(ReportSequenceTest, FullRefreshOfWlanAndOtherNeverAsksTheInternetResolver) {
  const auto monitor = scene.makeMonitor({Category::wlan(), Category::other()});

  monitor->refresh();

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] same\n"
            "[0] wlan=en0\n"
            "[2] same\n"
            "[2] others=en1,en5\n"
            "[10] same, complete\n");
  EXPECT_EQ(scene.internet->resolutions(), 0u);
}

TEST_F(ReportSequenceTest, FullRefreshOfTheEmptySetIsCompleteAtOnce) {
  const auto monitor = scene.makeMonitor(Category());

  monitor->refresh();

  EXPECT_EQ(scene.reports.text(),
            "[0] same, complete\n"
            "[0] same, complete\n");
  EXPECT_EQ(scene.internet->resolutions(), 0u);
  EXPECT_TRUE(scene.interfaces->askedPrefixes.empty());
}

TEST_F(ReportSequenceTest, SecondFullRefreshStartsFromEmptyAgain) {
  const auto monitor = scene.makeMonitor({Category::wlan(), Category::other()});
  monitor->refresh();
  scene.reports.forget();
  scene.interfaces->machine = {adapter("en0"), adapter("en7")};

  monitor->refresh();

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] same\n"
            "[0] same\n"
            "[2] same\n"
            "[2] others=en7\n"
            "[10] same, complete\n");
}

TEST_F(ReportSequenceTest, PartialResolveOfOneCategory) {
  const auto monitor = scene.makeMonitor({Category::wlan(), Category::other()});
  monitor->refresh();
  scene.reports.forget();
  scene.interfaces->machine.clear();

  monitor->resolve(Category::other());

  EXPECT_EQ(scene.reports.text(),
            "[2] same\n"
            "[2] others=none\n"
            "[10] same, complete\n");
}

TEST_F(ReportSequenceTest, PartialResolveOfSeveralCategoriesOfACompleteState) {
  const auto monitor = scene.makeMonitor();
  monitor->refresh();
  scene.internet->answer(0, {internetAt("198.51.100.7")});
  scene.reports.forget();
  scene.wlan->answer = wlanOver("en5");

  monitor->resolve({Category::other(), Category::wlan()});

  // In the fixed order, whatever the order of the argument: the others leave out the new Wi-Fi.
  EXPECT_EQ(scene.reports.text(),
            "[5] same\n"
            "[5] wlan=en5\n"
            "[7] same\n"
            "[7] others=en0,en1\n"
            "[15] same, complete\n");
  EXPECT_EQ(scene.internet->resolutions(), 1u);
}

TEST_F(ReportSequenceTest, PartialResolveOfAnInactiveCategoryEndsCompletion) {
  const auto monitor = scene.makeMonitor({Category::wlan()});
  monitor->refresh();
  scene.reports.forget();

  monitor->resolve(Category::other());

  // Equality of the sets, not inclusion: with `other` beside `wlan` the state is not complete.
  EXPECT_EQ(scene.reports.text(),
            "[2] same, complete\n"
            "[2] others=en1,en5, complete\n"
            "[10] same\n");
}

TEST_F(ReportSequenceTest, PartialResolveOfTheEmptySetReportsOnce) {
  const auto monitor = scene.makeMonitor();

  monitor->resolve(Category());

  EXPECT_EQ(scene.reports.text(), "[0] same\n");
}

TEST_F(ReportSequenceTest, InternetAnswerWithAnErrorIsReportedTwice) {
  const auto monitor = scene.makeMonitor({Category::internet()});
  monitor->refresh();
  scene.reports.forget();

  const std::error_code error = std::make_error_code(std::errc::timed_out);
  scene.internet->answer(0, {internetAt("198.51.100.7"), false, error});
  scene.internet->answer(0, {internetAt("198.51.100.7"), true});

  EXPECT_EQ(scene.reports.text(),
            "[0] internet=198.51.100.7\n"
            "[0] same, error: Connection timed out\n"
            "[0] same\n"
            "[1] same, complete\n");
  EXPECT_EQ(monitor->currentState().internet, internetAt("198.51.100.7"));
}

TEST_F(ReportSequenceTest, CompleteInternetAnswerWithAnErrorReportsTheErrorBeforeCompletion) {
  const auto monitor = scene.makeMonitor({Category::internet()});
  monitor->refresh();
  scene.reports.forget();

  const std::error_code error = std::make_error_code(std::errc::network_unreachable);
  scene.internet->answer(0, {internetAt("198.51.100.7"), true, error});

  EXPECT_EQ(scene.reports.text(),
            "[0] internet=198.51.100.7\n"
            "[0] same, error: Network is unreachable\n"
            "[1] same, complete\n");
}

TEST_F(ReportSequenceTest, ErrorThatArrivesWhileEverythingIsUpToDateIsReportedAsComplete) {
  const auto monitor = scene.makeMonitor({Category::internet()});
  monitor->refresh();
  monitor->refresh();
  scene.internet->answer(0, {internetAt("198.51.100.1")});
  scene.reports.forget();

  const std::error_code error = std::make_error_code(std::errc::timed_out);
  scene.internet->answer(1, {internetAt("198.51.100.2"), false, error});
  scene.internet->answer(1, {internetAt("198.51.100.2"), true});

  EXPECT_EQ(scene.reports.text(),
            "[1] internet=198.51.100.2, complete\n"
            "[1] same, complete, error: Connection timed out\n"
            "[1] same, complete\n"
            "[1] same, complete\n");
}

TEST_F(ReportSequenceTest, InsertingACategoryThatIsUpToDateStillReports) {
  const auto monitor = scene.makeMonitor({Category::internet()});
  monitor->refresh();
  monitor->resolve(Category::internet());
  scene.internet->answer(0, {internetAt("198.51.100.7")});
  scene.reports.forget();

  scene.internet->answer(1, {internetAt("198.51.100.7")});

  EXPECT_EQ(scene.reports.text(),
            "[1] same, complete\n"
            "[1] same, complete\n");
}

TEST_F(ReportSequenceTest, LateInternetAnswerOfAnOlderRunReplacesTheNewer) {
  const auto monitor = scene.makeMonitor({Category::internet()});
  monitor->refresh();
  monitor->refresh();
  scene.reports.forget();

  scene.internet->answer(1, {internetAt("198.51.100.2")});
  scene.reports.note("the older run answers");
  scene.internet->answer(0, {internetAt("198.51.100.1")});

  EXPECT_EQ(scene.reports.text(),
            "[0] internet=198.51.100.2\n"
            "[1] same, complete\n"
            "-- the older run answers\n"
            "[1] internet=198.51.100.1, complete\n"
            "[1] same, complete\n");
}

TEST_F(ReportSequenceTest, NoCellularResolverCountsAsResolved) {
  const auto monitor = scene.makeMonitorWithoutCellularResolver();
  NetworkState before = NetworkState::initial(scene.strings);
  before.cellular = providerWith({"Carrier A", "Carrier B"});
  before.cellularEnabled = true;
  before.multipleSim = true;
  monitor->setCurrentState(before);
  monitor->setActiveCategories(Category::cellular());
  scene.reports.forget();

  monitor->refresh();

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] same\n"
            "[0] cellular=none\n"
            "[0] cellularEnabled=false\n"
            "[0] multipleSim=false\n"
            "[4] same, complete\n");
  EXPECT_FALSE(monitor->isCellularAvailable());
}

TEST_F(ReportSequenceTest, CellularResolverWithTwoCarriers) {
  scene.cellular->provider = providerWith({"Carrier A", "Carrier B"});
  const auto monitor = scene.makeMonitor({Category::cellular()});

  monitor->refresh();

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] same\n"
            "[0] cellular=Carrier A,Carrier B\n"
            "[0] cellularEnabled=true\n"
            "[0] multipleSim=true\n"
            "[4] same, complete\n");
}

TEST_F(ReportSequenceTest, CellularResolverWithoutAProvider) {
  scene.cellular->provider = std::nullopt;
  const auto monitor = scene.makeMonitor({Category::cellular()});

  monitor->refresh();

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] same\n"
            "[0] same\n"
            "[0] same\n"
            "[0] same\n"
            "[4] same, complete\n");
  EXPECT_TRUE(monitor->isCellularAvailable());
}

TEST_F(ReportSequenceTest, En0En1AndEn5WithWifiOnEn0LeaveEn1AndEn5) {
  scene.interfaces->machine = {adapter("en0"), adapter("en1"), adapter("en5")};
  scene.wlan->answer = wlanOver("en0");
  const auto monitor = scene.makeMonitor({Category::wlan(), Category::other()});

  monitor->refresh();

  EXPECT_EQ(monitor->currentState().others, (std::vector{adapter("en1"), adapter("en5")}));
}

TEST_F(ReportSequenceTest, WifiOnEn0DoesNotLeaveOutEn01) {
  scene.interfaces->machine = {adapter("en01"), adapter("en0"), adapter("en")};
  scene.wlan->answer = wlanOver("en0");
  const auto monitor = scene.makeMonitor({Category::wlan(), Category::other()});

  monitor->refresh();

  EXPECT_EQ(monitor->currentState().others, (std::vector{adapter("en01"), adapter("en")}));
}

TEST_F(ReportSequenceTest, AbsentWlanDropsNothingAndCountsAsResolved) {
  scene.wlan->answer = std::nullopt;
  const auto monitor = scene.makeMonitor({Category::wlan(), Category::other()});

  monitor->refresh();

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] same\n"
            "[0] wlan=none\n"
            "[2] same\n"
            "[2] others=en0,en1,en5\n"
            "[10] same, complete\n");
}

TEST_F(ReportSequenceTest, WlanWithoutAuthorizationIsStoredAndCountsAsResolved) {
  scene.wlan->answer = std::unexpected(WlanInterfaceResolverError{
      WlanInterfaceResolverError::Kind::authorizationDenied, wlanOver("en0")});
  const auto monitor = scene.makeMonitor({Category::wlan(), Category::other()});

  monitor->refresh();

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] same\n"
            "[0] wlan=en0\n"
            "[2] same\n"
            "[2] others=en1,en5\n"
            "[10] same, complete\n");
  EXPECT_EQ(monitor->currentState().wlan, wlanOver("en0"));
}

TEST_F(ReportSequenceTest, InternetResolverThatAnswersSynchronouslySeveralTimes) {
  scene.internet->immediateAnswers = {{internetAt("198.51.100.1"), false},
                                      {internetAt("198.51.100.2"), false},
                                      {internetAt("198.51.100.2"), true}};
  const auto monitor = scene.makeMonitor({Category::internet()});

  monitor->refresh();

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] same\n"
            "[0] internet=198.51.100.1\n"
            "[0] internet=198.51.100.2\n"
            "[0] same\n"
            "[1] same, complete\n");
}

TEST_F(ReportSequenceTest, SettingTheStateReportsAlsoWhenItStaysTheSame) {
  const auto monitor = scene.makeMonitor({Category::wlan()});

  monitor->setCurrentState(monitor->currentState());

  EXPECT_EQ(scene.reports.text(), "[0] same\n");
}

TEST_F(ReportSequenceTest, SettingTheActiveCategoriesReportsNothing) {
  const auto monitor = scene.makeMonitor();

  monitor->setActiveCategories(Category());

  EXPECT_EQ(scene.reports.text(), "");
  EXPECT_TRUE(monitor->stateComplete());
}

}  // namespace
}  // namespace lanternfold
