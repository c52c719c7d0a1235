#include <gtest/gtest.h>

#include "PlatformLinux/Netlink/GenericFamilyWatch.h"
#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

using Verdict = GenericFamilyWatch::Verdict;

Bytes groupElement(int place, std::string_view name, int number) {
  return nested(place, {attribute(CTRL_ATTR_MCAST_GRP_NAME, textBytes(name)),
                        number32(CTRL_ATTR_MCAST_GRP_ID, number)});
}

Bytes familyPayload(int command, std::string_view name, int messageType, int firstGroup = 5) {
  return joined({bytesOf(genlmsghdr{.cmd = static_cast<std::uint8_t>(command), .version = 2}),
                 number16(CTRL_ATTR_FAMILY_ID, messageType),
                 attribute(CTRL_ATTR_FAMILY_NAME, textBytes(name)), number32(CTRL_ATTR_VERSION, 1),
                 nested(CTRL_ATTR_MCAST_GROUPS, {groupElement(1, "config", firstGroup),
                                                 groupElement(2, "scan", firstGroup + 1),
                                                 groupElement(3, "regulatory", firstGroup + 2),
                                                 groupElement(4, "mlme", firstGroup + 3)})});
}

std::expected<GenericFamilyMessage, DecodeError> decoded(const Bytes& payload) {
  return decodeGenericFamily(payloadMessage(GENL_ID_CTRL, payload));
}

TEST(GenericFamily, TellsTheMessageTypeTheNameAndTheGroups) {
  const GenericFamilyMessage expected{
      .messageType = 0x1C,
      .name = "nl80211",
      .groups = {{"config", 5}, {"scan", 6}, {"regulatory", 7}, {"mlme", 8}}};
  EXPECT_EQ(decoded(familyPayload(CTRL_CMD_NEWFAMILY, "nl80211", 0x1C)), expected);
}

TEST(GenericFamily, AFamilyWithoutGroupsHasNone) {
  const Bytes payload = joined({bytesOf(genlmsghdr{}), number16(CTRL_ATTR_FAMILY_ID, 16)});
  EXPECT_EQ(decoded(payload), (GenericFamilyMessage{.messageType = 16, .name = "", .groups = {}}));
}

TEST(GenericFamily, WithoutItsMessageTypeItIsAnError) {
  const auto without = decoded(bytesOf(genlmsghdr{}));
  ASSERT_FALSE(without);
  EXPECT_EQ(without.error(), (DecodeError{DecodeProblem::missing, "CTRL_ATTR_FAMILY_ID"}));
}

TEST(GenericFamily, GroupsWithoutANameOrANumberAndBeyondThe32ndAreLeftOut) {
  const Bytes payload =
      joined({bytesOf(genlmsghdr{}), number16(CTRL_ATTR_FAMILY_ID, 30),
              nested(CTRL_ATTR_MCAST_GROUPS,
                     {nested(1, {number32(CTRL_ATTR_MCAST_GRP_ID, 5)}),
                      nested(2, {attribute(CTRL_ATTR_MCAST_GRP_NAME, textBytes("scan"))}),
                      groupElement(32, "mlme", 9), groupElement(33, "nan", 10)})});
  ASSERT_TRUE(decoded(payload));
  EXPECT_EQ(decoded(payload)->groups, (std::vector<GenericGroup>{{"mlme", 9}}));
}

TEST(GenericFamily, AGroupOfAWrongShapeIsNamed) {
  const auto groupWith = [](const Bytes& wrong) {
    return joined({bytesOf(genlmsghdr{}), number16(CTRL_ATTR_FAMILY_ID, 30),
                   nested(CTRL_ATTR_MCAST_GROUPS, {nested(1, {wrong})})});
  };
  EXPECT_EQ(decoded(groupWith(number16(CTRL_ATTR_MCAST_GRP_ID, 5))).error(),
            (DecodeError{DecodeProblem::wrongSize, "CTRL_ATTR_MCAST_GRP_ID"}));
  EXPECT_EQ(decoded(groupWith(attribute(CTRL_ATTR_MCAST_GRP_NAME, Bytes(17)))).error(),
            (DecodeError{DecodeProblem::wrongSize, "CTRL_ATTR_MCAST_GRP_NAME"}));
}

TEST(GenericFamily, CutAnywhereItIsAnErrorOrHasFewerGroups) {
  const Bytes whole = familyPayload(CTRL_CMD_NEWFAMILY, "nl80211", 0x1C);
  const auto family = decoded(whole).value();
  forEveryCut(whole, [&](const Bytes& cut) {
    const auto shorter = decoded(cut);
    if (shorter) {
      EXPECT_LT(shorter->groups.size(), family.groups.size()) << cut.size();
    }
  });
}

class GenericFamilyWatchTest : public testing::Test {
 protected:
  Verdict take(int type, const Bytes& payload) {
    return watch_.take(payloadMessage(type, payload));
  }

  GenericFamilyWatch watch_{"nl80211", {"mlme", "config"}};
  const Bytes report_ = wifiPayload(NL80211_CMD_CONNECT, {});
};

TEST_F(GenericFamilyWatchTest, NothingIsOfAFamilyThatIsNotThere) {
  EXPECT_EQ(take(nl80211Type, report_), (Verdict{GenericEvent::foreign, {}}));
}

TEST_F(GenericFamilyWatchTest, ListensToItsGroupsAlone) {
  const auto family = decoded(familyPayload(CTRL_CMD_NEWFAMILY, "nl80211", nl80211Type)).value();
  EXPECT_EQ(watch_.found(family), (std::vector<std::uint32_t>{5, 8}));
  EXPECT_EQ(take(nl80211Type, report_), (Verdict{GenericEvent::ofFamily, {}}));
}

TEST_F(GenericFamilyWatchTest, TheReportsOfOtherFamiliesAreForeign) {
  static_cast<void>(take(GENL_ID_CTRL, familyPayload(CTRL_CMD_NEWFAMILY, "nl80211", nl80211Type)));
  EXPECT_EQ(take(nl80211Type + 1, report_), (Verdict{GenericEvent::foreign, {}}));
  EXPECT_EQ(take(GENL_ID_CTRL, familyPayload(CTRL_CMD_NEWFAMILY, "ethtool", 0x15)),
            (Verdict{GenericEvent::foreign, {}}));
  EXPECT_EQ(take(GENL_ID_CTRL, familyPayload(CTRL_CMD_DELFAMILY, "ethtool", 0x15)),
            (Verdict{GenericEvent::foreign, {}}));
}

TEST_F(GenericFamilyWatchTest, AFamilyThatComesLaterIsListenedTo) {
  EXPECT_EQ(take(GENL_ID_CTRL, familyPayload(CTRL_CMD_NEWFAMILY, "nl80211", nl80211Type)),
            (Verdict{GenericEvent::came, {5, 8}}));
  EXPECT_EQ(take(nl80211Type, report_), (Verdict{GenericEvent::ofFamily, {}}));
}

TEST_F(GenericFamilyWatchTest, AFamilyThatComesAgainHasOtherNumbers) {
  static_cast<void>(take(GENL_ID_CTRL, familyPayload(CTRL_CMD_NEWFAMILY, "nl80211", nl80211Type)));
  EXPECT_EQ(take(GENL_ID_CTRL, familyPayload(CTRL_CMD_DELFAMILY, "nl80211", nl80211Type)),
            (Verdict{GenericEvent::went, {}}));
  EXPECT_EQ(take(nl80211Type, report_), (Verdict{GenericEvent::foreign, {}}));
  EXPECT_EQ(take(GENL_ID_CTRL, familyPayload(CTRL_CMD_NEWFAMILY, "nl80211", nl80211Type + 3, 20)),
            (Verdict{GenericEvent::came, {20, 23}}));
  EXPECT_EQ(take(nl80211Type + 3, report_), (Verdict{GenericEvent::ofFamily, {}}));
}

TEST_F(GenericFamilyWatchTest, AReportAboutFamiliesThatCannotBeDecodedIsUnclear) {
  EXPECT_EQ(take(GENL_ID_CTRL, {1, 2}), (Verdict{GenericEvent::unclear, {}}));
  EXPECT_EQ(take(GENL_ID_CTRL, bytesOf(genlmsghdr{.cmd = CTRL_CMD_NEWFAMILY})),
            (Verdict{GenericEvent::unclear, {}}));
}

TEST_F(GenericFamilyWatchTest, ReportsOfSingleGroupsAreForeign) {
  EXPECT_EQ(take(GENL_ID_CTRL, familyPayload(CTRL_CMD_NEWMCAST_GRP, "nl80211", nl80211Type)),
            (Verdict{GenericEvent::foreign, {}}));
}

}  // namespace
}  // namespace lanternfold::test
