// The resolvers of the echo services and of the geolocation service.
#include "NetworkMonitor/PublicInfo/IpApiPublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/NullPublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"
#include "NetworkMonitor/PublicInfo/QuernapleIp6Resolver.h"
#include "NetworkMonitor/PublicInfo/QuernapleIpResolver.h"
#include "Tests/NetworkMonitor/PublicInfo/RestResolverTest.h"

namespace lanternfold {
namespace {

using Error = PublicInfoDecodingError;
using enum PublicInfoKey;

using QuernapleIpResolverTest = RestResolverTest;

TEST_F(QuernapleIpResolverTest, SupportsTheAddressAlone) {
  EXPECT_EQ(make<QuernapleIpResolver>()->supportedKeys(), (Keys{ip}));
}

TEST_F(QuernapleIpResolverTest, AnswersTheEchoedAddress) {
  sessions_.answer(ipv4EchoUrl, R"({"ip":"203.0.113.7"})");
  EXPECT_EQ(answerOf(make<QuernapleIpResolver>(), {ip}), (PublicInfo{{ip, "203.0.113.7"}}));
}

TEST_F(QuernapleIpResolverTest, AsksOverIPv4Alone) {
  static_cast<void>(answerOf(make<QuernapleIpResolver>(), {ip}));
  ASSERT_EQ(sessions_.exchanges().size(), 1U);
  EXPECT_EQ(sessions_.exchanges()[0].request.addressFamily, UrlAddressFamily::ipv4);
}

TEST_F(QuernapleIpResolverTest, WhatIsNoIPv4AddressIsADecodingError) {
  for (const char* data : {R"({"ip":"2001:db8::7"})", R"({"ip":""})", R"({"ip":"<b>"})",
                           R"({"ip":"203.0.113.7\u0000"})", R"({"ip":"203.0.113.7\n"})"}) {
    sessions_.answer(ipv4EchoUrl, data);
    EXPECT_EQ(answerOf(make<QuernapleIpResolver>(), {ip}),
              failed(decodingError(Error::notAnIPv4Address, "ip")))
        << data;
  }
}

TEST_F(QuernapleIpResolverTest, ThePageOfALoginPortalIsADecodingError) {
  sessions_.answer(ipv4EchoUrl, "<!DOCTYPE html><html>Log in</html>");
  EXPECT_EQ(answerOf(make<QuernapleIpResolver>(), {ip}), failed(Error::notJson));
}

TEST_F(QuernapleIpResolverTest, AnAnswerWithoutAnAddressIsADecodingError) {
  sessions_.answer(ipv4EchoUrl, R"({"address":"203.0.113.7"})");
  EXPECT_EQ(answerOf(make<QuernapleIpResolver>(), {ip}),
            failed(decodingError(Error::missingMember, "ip")));
}

class QuernapleIp6ResolverTest : public RestResolverTest {
 protected:
  Answer answerFor(Keys keys) { return answerOf(make<QuernapleIp6Resolver>(), std::move(keys)); }
};

TEST_F(QuernapleIp6ResolverTest, SupportsTheAddressAndWhetherThereIsOne) {
  EXPECT_EQ(make<QuernapleIp6Resolver>()->supportedKeys(), (Keys{ip6, supportsIp6}));
}

TEST_F(QuernapleIp6ResolverTest, AnAddressComesWithItsSupport) {
  sessions_.answer(ipv6EchoUrl, R"({"ip":"2001:db8::7"})");
  EXPECT_EQ(answerFor({ip6, supportsIp6}), (PublicInfo{{ip6, "2001:db8::7"}, {supportsIp6, true}}));
}

TEST_F(QuernapleIp6ResolverTest, OnlyWhatIsAskedForIsAnswered) {
  sessions_.answer(ipv6EchoUrl, R"({"ip":"2001:db8::7"})");
  EXPECT_EQ(answerFor({ip6}), (PublicInfo{{ip6, "2001:db8::7"}}));
  EXPECT_EQ(answerFor({supportsIp6}), (PublicInfo{{supportsIp6, true}}));
}

TEST_F(QuernapleIp6ResolverTest, AResponseIsTheAddressAlone) {
  EXPECT_EQ(make<QuernapleIp6Resolver>()->parseResponse(R"({"ip":"2001:db8::7"})"),
            (PublicInfo{{ip6, "2001:db8::7"}}));
}

TEST_F(QuernapleIp6ResolverTest, AsksOverIPv6Alone) {
  static_cast<void>(answerFor({ip6}));
  ASSERT_EQ(sessions_.exchanges().size(), 1U);
  EXPECT_EQ(sessions_.exchanges()[0].request.addressFamily, UrlAddressFamily::ipv6);
}

TEST_F(QuernapleIp6ResolverTest, WithoutIPv6TheSupportIsFalseAndNoError) {
  sessions_.fail(ipv6EchoUrl, UrlErrorCode::cannotConnectToHost);
  EXPECT_EQ(answerFor({ip6, supportsIp6}), (PublicInfo{{supportsIp6, false}}));
}

TEST_F(QuernapleIp6ResolverTest, ASilentWayOutIsNoSupportEither) {
  sessions_.neverAnswer(ipv6EchoUrl);
  EXPECT_EQ(answerFor({ip6, supportsIp6}), (PublicInfo{{supportsIp6, false}}));
}

TEST_F(QuernapleIp6ResolverTest, WithoutIPv6TheAddressAloneIsTheError) {
  sessions_.fail(ipv6EchoUrl, UrlErrorCode::cannotConnectToHost);
  EXPECT_EQ(answerFor({ip6}), failed(UrlErrorCode::cannotConnectToHost));
  sessions_.neverAnswer(ipv6EchoUrl);
  EXPECT_EQ(answerFor({ip6}), failed(UrlErrorCode::timedOut));
}

TEST_F(QuernapleIp6ResolverTest, AnyOtherErrorIsPassedOn) {
  for (const auto code :
       {UrlErrorCode::cancelled, UrlErrorCode::cannotFindHost, UrlErrorCode::networkConnectionLost,
        UrlErrorCode::secureConnectionFailed, UrlErrorCode::serverCertificateUntrusted,
        UrlErrorCode::cannotConnectToProxy, UrlErrorCode::tooManyRedirects}) {
    sessions_.fail(ipv6EchoUrl, code);
    EXPECT_EQ(answerFor({ip6, supportsIp6}), failed(code));
  }
}

TEST_F(QuernapleIp6ResolverTest, TheSameNumberInAnotherDomainIsPassedOn) {
  const std::error_code other(static_cast<int>(UrlErrorCode::timedOut), std::generic_category());
  sessions_.fail(ipv6EchoUrl, other);
  EXPECT_EQ(answerFor({ip6, supportsIp6}), failed(other));
}

TEST_F(QuernapleIp6ResolverTest, NeitherAnAnswerNorAnErrorIsAGenericError) {
  sessions_.setServer(ipv6EchoUrl, {});
  EXPECT_EQ(answerFor({ip6, supportsIp6}), failed(PublicInfoResolverError::generic));
}

TEST_F(QuernapleIp6ResolverTest, WhatIsNoIPv6AddressIsADecodingError) {
  for (const char* data : {R"({"ip":"203.0.113.7"})", R"({"ip":"fe80::1%en0"})"}) {
    sessions_.answer(ipv6EchoUrl, data);
    EXPECT_EQ(answerFor({ip6, supportsIp6}), failed(decodingError(Error::notAnIPv6Address, "ip")));
  }
}

TEST_F(QuernapleIp6ResolverTest, ASecondResolveCancelsTheFirst) {
  sessions_.answer(ipv6EchoUrl, R"({"ip":"2001:db8::7"})", std::chrono::seconds(1));
  const auto resolver = make<QuernapleIp6Resolver>();
  ask(resolver, {ip6, supportsIp6});
  ask(resolver, {ip6});
  dispatch_.advance(std::chrono::hours(1));
  EXPECT_EQ(answers_, (std::vector<Answer>{failed(UrlErrorCode::cancelled),
                                           PublicInfo{{ip6, "2001:db8::7"}}}));
}

class IpApiPublicInfoResolverTest : public RestResolverTest {
 protected:
  Answer answerTo(std::string data, Keys keys = {isp, country, ip}) {
    sessions_.answer(geolocationUrl, std::move(data));
    return answerOf(make<IpApiPublicInfoResolver>(), std::move(keys));
  }
};

TEST_F(IpApiPublicInfoResolverTest, SupportsAddressProviderAndCountry) {
  EXPECT_EQ(make<IpApiPublicInfoResolver>()->supportedKeys(), (Keys{ip, isp, country}));
}

TEST_F(IpApiPublicInfoResolverTest, AnswersTheAddressTheProviderAndTheCountry) {
  EXPECT_EQ(answerTo(R"({"isp":"Example Net","countryCode":"IT","as":"AS64496 Example",)"
                     R"("query":"203.0.113.7"})"),
            (PublicInfo{{ip, "203.0.113.7"}, {isp, "Example Net"}, {country, "IT"}}));
}

TEST_F(IpApiPublicInfoResolverTest, OnlyTheRequestedKeysAreAnswered) {
  EXPECT_EQ(answerTo(R"({"isp":"Example Net","countryCode":"IT","as":"","query":"203.0.113.7"})",
                     {country}),
            (PublicInfo{{country, "IT"}}));
}

TEST_F(IpApiPublicInfoResolverTest, AsksOverIPv4LikeTheAddressThatItsAnswerIsKeptFor) {
  static_cast<void>(answerTo("{}"));
  ASSERT_EQ(sessions_.exchanges().size(), 1U);
  EXPECT_EQ(sessions_.exchanges()[0].request.addressFamily, UrlAddressFamily::ipv4);
}

TEST_F(IpApiPublicInfoResolverTest, AnAnswerMissingAnyOfItsFourMembersIsADecodingError) {
  const std::vector<std::pair<std::string, std::string>> members{
      {"isp", "Example Net"}, {"countryCode", "IT"}, {"as", "AS64496"}, {"query", "203.0.113.7"}};
  for (const auto& [missing, unused] : members) {
    std::string data = "{\"status\":\"success\"";
    for (const auto& [name, value] : members) {
      if (name != missing) data.append(",\"" + name + "\":\"").append(value).append("\"");
    }
    EXPECT_EQ(answerTo(data + "}"), failed(decodingError(Error::missingMember, missing)));
  }
}

TEST_F(IpApiPublicInfoResolverTest, TheRefusalOfAPrivateAddressIsADecodingError) {
  EXPECT_EQ(answerTo(R"({"query":"192.168.1.7"})"),
            failed(decodingError(Error::missingMember, "isp")));
}

TEST_F(IpApiPublicInfoResolverTest, AMemberThatIsNoTextIsADecodingError) {
  EXPECT_EQ(
      answerTo(R"({"isp":"Example Net","countryCode":"IT","as":64496,"query":"203.0.113.7"})"),
      failed(decodingError(Error::notAString, "as")));
}

TEST_F(IpApiPublicInfoResolverTest, TheAddressMayBeOfEitherFamily) {
  EXPECT_EQ(answerTo(R"({"isp":"Example Net","countryCode":"IT","as":"","query":"2001:db8::7"})"),
            (PublicInfo{{ip, "2001:db8::7"}, {isp, "Example Net"}, {country, "IT"}}));
}

TEST_F(IpApiPublicInfoResolverTest, WhatIsNoAddressIsADecodingError) {
  EXPECT_EQ(answerTo(R"({"isp":"Example Net","countryCode":"IT","as":"","query":"localhost"})"),
            failed(decodingError(Error::notAnAddress, "query")));
}

TEST_F(IpApiPublicInfoResolverTest, ACountryThatIsNotTwoLettersIsADecodingError) {
  EXPECT_EQ(
      answerTo(R"({"isp":"Example Net","countryCode":"Italy","as":"","query":"203.0.113.7"})"),
      failed(decodingError(Error::notACountryCode, "countryCode")));
}

TEST_F(IpApiPublicInfoResolverTest, AnEmptyProviderOrCountryIsUnknown) {
  EXPECT_EQ(answerTo(R"({"isp":"","countryCode":"","as":"","query":"203.0.113.7"})"),
            (PublicInfo{{ip, "203.0.113.7"}}));
}

TEST_F(IpApiPublicInfoResolverTest, TheProvidersNameIsGivenThroughAsItIs) {
  EXPECT_EQ(answerTo("{\"isp\":\"B\xC3\xBC"
                     R"(rger\u001b[31m","countryCode":"DE","as":"",)"
                     R"("query":"203.0.113.7"})",
                     {isp}),
            (PublicInfo{{isp, "B\xC3\xBCrger\x1B[31m"}}));
}

TEST_F(IpApiPublicInfoResolverTest, AProvidersNameOfAnyLengthIsNotTaken) {
  EXPECT_EQ(answerTo(R"({"isp":")" + std::string(257, 'x') +
                     R"(","countryCode":"IT","as":"","query":"203.0.113.7"})"),
            failed(decodingError(Error::tooLong, "isp")));
}

TEST(NullPublicInfoResolverTest, CompletesAtOnceWithNothing) {
  NullPublicInfoResolver resolver;
  EXPECT_TRUE(resolver.supportedKeys().empty());
  int completions = 0;
  resolver.resolve({ip, isp}, [&completions](PublicInfoResolver::Answer answer) {
    EXPECT_EQ(answer, PublicInfo{});
    ++completions;
  });
  EXPECT_EQ(completions, 1);
}

}  // namespace
}  // namespace lanternfold
