#include <gtest/gtest.h>

#include "NetworkMonitor/Wlan/MacAddressStore.h"
#include "NetworkMonitor/Wlan/NetworkPathWlanInterfaceNameFinder.h"
#include "NetworkMonitor/Wlan/SimpleWlanInterfaceResolver.h"
#include "Tests/Support/FakeLocationConsent.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeResolvers.h"
#include "Tests/Support/FakeUserDefaults.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using Answer = std::expected<std::optional<WlanInterface>, WlanInterfaceResolverError>;
using Kind = WlanInterfaceResolverError::Kind;

class FakeNameFinder final : public WlanInterfaceNameFinder {
 public:
  std::optional<std::string> name = "wlan0";

  [[nodiscard]] std::optional<std::string> wlanInterfaceName() override { return name; }
};

class FakeHwAddressResolver final : public WlanHwAddressResolver {
 public:
  std::optional<std::string> address;
  mutable int questions = 0;

  [[nodiscard]] std::optional<std::string> getWlanHwAddress() const override {
    ++questions;
    return address;
  }
};

BasicInterface wlan0() {
  return {.active = true,
          .displayName = "Wireless Adapter",
          .metrics = {.sentBytes = 1, .recvBytes = 2},
          .name = "wlan0",
          .type = InterfaceType::wlan,
          .hwAddress = "02:00:00:00:00:01"};
}

WlanInterface recordOf(const BasicInterface& interface) {
  return {.active = interface.active, .displayName = interface.displayName, .interface = interface};
}

Answer failure(Kind kind, const BasicInterface& interface) {
  return std::unexpected(WlanInterfaceResolverError{.kind = kind, .wlan = recordOf(interface)});
}

class SimpleWlanInterfaceResolverTest : public testing::Test {
 protected:
  SimpleWlanInterfaceResolverTest() { interfaces_->machine = {wlan0()}; }

  Answer answer() {
    return SimpleWlanInterfaceResolver(names_, interfaces_, addresses_, consent_).wlanInterface();
  }
  Answer answerWithStatus(std::int32_t status) {
    consent_.setAuthorizationStatus(status);
    return answer();
  }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeLocationConsent consent_{dispatch_.mainQueue(), 3};
  const std::shared_ptr<FakeNameFinder> names_ = std::make_shared<FakeNameFinder>();
  const std::shared_ptr<FakeInterfaceResolver> interfaces_ =
      std::make_shared<FakeInterfaceResolver>();
  const std::shared_ptr<FakeHwAddressResolver> addresses_ =
      std::make_shared<FakeHwAddressResolver>();
};

TEST_F(SimpleWlanInterfaceResolverTest, ShowsTheInterfaceWithoutModeAndNetwork) {
  const auto wlan = answer();
  ASSERT_TRUE(wlan && *wlan);
  EXPECT_EQ(**wlan, recordOf(wlan0()));
  EXPECT_EQ((*wlan)->mode, std::nullopt);
  EXPECT_EQ((*wlan)->currentNetwork, std::nullopt);
}

TEST_F(SimpleWlanInterfaceResolverTest, IsAsActiveAsTheInterface) {
  interfaces_->machine.front().active = false;
  const auto wlan = answer();
  ASSERT_TRUE(wlan && *wlan);
  EXPECT_FALSE((*wlan)->active);
}

TEST_F(SimpleWlanInterfaceResolverTest, ConsentOfEitherKindGivesTheRecord) {
  for (const std::int32_t status : {3, 4}) {
    EXPECT_EQ(answerWithStatus(status), Answer(recordOf(wlan0()))) << status;
  }
}

TEST_F(SimpleWlanInterfaceResolverTest, AStatusThatIsNotKnownGivesTheRecord) {
  for (const std::int32_t status : {-1, 5, 100}) {
    EXPECT_EQ(answerWithStatus(status), Answer(recordOf(wlan0()))) << status;
  }
}

TEST_F(SimpleWlanInterfaceResolverTest, WhenNothingIsDecidedTheErrorCarriesTheRecord) {
  EXPECT_EQ(answerWithStatus(0), failure(Kind::authorizationMissing, wlan0()));
}

TEST_F(SimpleWlanInterfaceResolverTest, WhenRestrictedTheErrorCarriesTheRecord) {
  EXPECT_EQ(answerWithStatus(1), failure(Kind::authorizationDenied, wlan0()));
}

TEST_F(SimpleWlanInterfaceResolverTest, WhenDeniedTheErrorCarriesTheRecord) {
  EXPECT_EQ(answerWithStatus(2), failure(Kind::authorizationDenied, wlan0()));
}

TEST_F(SimpleWlanInterfaceResolverTest, AsksNobodyForConsent) {
  static_cast<void>(answerWithStatus(0));
  EXPECT_EQ(consent_.managersMade(), 0U);
}

TEST_F(SimpleWlanInterfaceResolverTest, WithoutANameThereIsNoneWhateverTheConsent) {
  names_->name.reset();
  for (const std::int32_t status : {0, 1, 2, 3, 4, 5}) {
    EXPECT_EQ(answerWithStatus(status), Answer(std::nullopt)) << status;
  }
}

TEST_F(SimpleWlanInterfaceResolverTest, AnInterfaceThatTheResolverDoesNotKnowIsNone) {
  names_->name = "wlan1";
  for (const std::int32_t status : {0, 1, 2, 3, 4, 5}) {
    EXPECT_EQ(answerWithStatus(status), Answer(std::nullopt)) << status;
  }
}

TEST_F(SimpleWlanInterfaceResolverTest, AnAddressOfItsOwnIsKept) {
  addresses_->address = "02:00:00:00:00:99";
  EXPECT_EQ(answer(), Answer(recordOf(wlan0())));
  EXPECT_EQ(addresses_->questions, 0);
}

TEST_F(SimpleWlanInterfaceResolverTest, AMissingAddressIsTheStoredOne) {
  interfaces_->machine.front().hwAddress.reset();
  addresses_->address = "02:00:00:00:00:99";
  BasicInterface expected = wlan0();
  expected.hwAddress = "02:00:00:00:00:99";
  EXPECT_EQ(answer(), Answer(recordOf(expected)));
}

TEST_F(SimpleWlanInterfaceResolverTest, WithoutAStoredAddressNoneIsShown) {
  interfaces_->machine.front().hwAddress.reset();
  BasicInterface expected = wlan0();
  expected.hwAddress.reset();
  EXPECT_EQ(answer(), Answer(recordOf(expected)));
  EXPECT_EQ(addresses_->questions, 1);
}

TEST_F(SimpleWlanInterfaceResolverTest, TheErrorsRecordHasTheStoredAddressToo) {
  interfaces_->machine.front().hwAddress.reset();
  addresses_->address = "02:00:00:00:00:99";
  BasicInterface expected = wlan0();
  expected.hwAddress = "02:00:00:00:00:99";
  EXPECT_EQ(answerWithStatus(2), failure(Kind::authorizationDenied, expected));
}

TEST_F(SimpleWlanInterfaceResolverTest, WithTheNetworkPathAndTheStoreOfAddresses) {
  clock_.setSleeper([this](std::chrono::nanoseconds duration) { dispatch_.advance(duration); });
  FakePathMonitorFactory paths(
      {.status = PathStatus::satisfied,
       .availableInterfaces = {{"eth0", 2, PathInterfaceType::wiredEthernet},
                               {"wlan0", 3, PathInterfaceType::wifi}}});
  const auto defaults = std::make_shared<FakeUserDefaults>();
  const auto store = std::make_shared<MacAddressStore>(defaults);
  ASSERT_TRUE(store->save("02:00:00:00:00:99", "en0"));
  interfaces_->machine.front().hwAddress.reset();
  SimpleWlanInterfaceResolver resolver(
      std::make_shared<NetworkPathWlanInterfaceNameFinder>(
          defaults,
          NetworkPathWlanInterfaceNameFinder::Environment{
              .pathMonitors = paths, .dispatch = dispatch_, .clock = clock_}),
      interfaces_, store, consent_);
  BasicInterface expected = wlan0();
  expected.hwAddress = "02:00:00:00:00:99";
  EXPECT_EQ(resolver.wlanInterface(), Answer(recordOf(expected)));
}

using SimpleWlanInterfaceResolverDeathTest = SimpleWlanInterfaceResolverTest;

TEST_F(SimpleWlanInterfaceResolverDeathTest, NeedsANameFinderAndBothResolvers) {
  const char* sentence = "a Wi-Fi resolver was made without its name finder";
  EXPECT_DEATH(SimpleWlanInterfaceResolver(nullptr, interfaces_, addresses_, consent_), sentence);
  EXPECT_DEATH(SimpleWlanInterfaceResolver(names_, nullptr, addresses_, consent_), sentence);
  EXPECT_DEATH(SimpleWlanInterfaceResolver(names_, interfaces_, nullptr, consent_), sentence);
}

}  // namespace
}  // namespace lanternfold
