#include <linux/netlink.h>

#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/Netlink/LinkRequest.h"
#include "PlatformLinux/Netlink/WirelessInterfaceMessage.h"
#include "PlatformLinux/System/LinkSurvey.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"

namespace lanternfold {
namespace {

class LinkSurveyTest : public testing::Test {
 protected:
  void SetUp() override {
    ENTER_NETWORK_NAMESPACE(network_);
    ASSERT_TRUE(
        NetworkNamespace::run("ip link add eth0 type veth peer name far && "
                              "ip link add br0 type bridge && ip link set far master br0 && "
                              "ip link property add dev eth0 altname another-name"));
  }

  std::unique_ptr<NetworkNamespace> network_;
  LinkSurvey survey_;
};

TEST_F(LinkSurveyTest, TellsKindAndMasterOfEveryLink) {
  const auto links = survey_.allLinks();
  ASSERT_TRUE(links);
  std::string text;
  for (const SurveyedLink& each : *links) {
    text += each.link.name + ":" + each.link.kind.value_or("-") + ":" +
            each.link.portKind.value_or("-") + " ";
  }
  EXPECT_THAT(text, testing::HasSubstr("eth0:veth:- "));
  EXPECT_THAT(text, testing::HasSubstr("far:veth:bridge "));
  EXPECT_THAT(text, testing::HasSubstr("br0:bridge:- "));
  EXPECT_THAT(text, testing::HasSubstr("lo:-:- "));
}

TEST_F(LinkSurveyTest, FindsOneLinkByItsName) {
  const auto link = survey_.linkNamed("eth0");
  ASSERT_TRUE(link);
  EXPECT_EQ(link->link.name, "eth0");
  EXPECT_EQ(link->linkClass.pathType, PathInterfaceType::wiredEthernet);
}

TEST_F(LinkSurveyTest, ANameOfNoLinkIsNone) {
  for (const char* name : {"", "eth1", "ETH0", "a-name-of-sixteen", "a-name-of-more-than-16"}) {
    EXPECT_EQ(survey_.linkNamed(name), std::nullopt) << name;
  }
}

TEST_F(LinkSurveyTest, AnAlternativeNameIsNotTheLinksName) {
  EXPECT_EQ(survey_.linkNamed("another-name"), std::nullopt);
}

TEST_F(LinkSurveyTest, AThousandLinksAreAllThere) {
  ASSERT_TRUE(NetworkNamespace::run(
      "for i in $(seq 500); do echo link add v$i type veth peer name w$i; done | ip -batch -"));
  const auto links = survey_.allLinks();
  ASSERT_TRUE(links);
  EXPECT_GE(links->size(), 1004U);
}

/// The kernel accepts the request for nl80211's number, whether or not it has nl80211.
TEST_F(LinkSurveyTest, TheKernelUnderstandsTheQuestionForAGenericFamily) {
  auto socket = NetlinkSocket::open(NETLINK_GENERIC);
  ASSERT_TRUE(socket);
  std::optional<std::uint16_t> number;
  const auto answer = socket->dump(genericFamilyRequest("nlctrl"),
                                   {.begin = [] {},
                                    .message =
                                        [&](const NetlinkMessage& message) {
                                          number = decodeGenericFamily(message).value().messageType;
                                        }});
  EXPECT_TRUE(answer);
  EXPECT_EQ(number, 16);
  EXPECT_FALSE(socket->dump(genericFamilyRequest("no-such-family"),
                            {.begin = [] {}, .message = [](const NetlinkMessage&) {}}));
}

TEST(LinkRequest, AskingForANameThatNoLinkCanHaveStopsTheProgram) {
  EXPECT_DEATH(static_cast<void>(linkByNameRequest("")), "no link can have");
  EXPECT_DEATH(static_cast<void>(linkByNameRequest("sixteen-bytes-xy")), "no link can have");
}

}  // namespace
}  // namespace lanternfold
