#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"
#include "NetworkMonitor/PublicInfo/ServiceFaults.h"
#include "Platform/UrlError.h"
#include "Tests/Support/FakePublicInfoResolver.h"
#include "Tests/Support/RecordingDiagnosticLog.h"

namespace lanternfold {
namespace {

using Lines = std::vector<std::string>;

class ServiceFaultsTest : public testing::Test {
 protected:
  static constexpr const char* beginning = "Not every service has answered: ";
  static constexpr const char* remedy = "; check the connection and the services' URLs";

  RecordingDiagnosticLog log_;
  ServiceFaults faults_{log_};
};

TEST_F(ServiceFaultsTest, WithoutFaultsNothingIsTold) {
  faults_.note("IPv4 echo", {});
  faults_.tell();
  EXPECT_EQ(log_.lines(), Lines{});
}

TEST_F(ServiceFaultsTest, ServicesThatFailAlikeStandTogether) {
  faults_.note("geolocation", UrlErrorCode::cannotFindHost);
  faults_.note("IPv6 echo", UrlErrorCode::timedOut);
  faults_.note("IPv4 echo", UrlErrorCode::cannotFindHost);
  faults_.tell();
  EXPECT_EQ(log_.lines(),
            Lines{beginning +
                  std::string("the host cannot be found (IPv4 echo, geolocation); the "
                              "request timed out (IPv6 echo)") +
                  remedy});
}

TEST_F(ServiceFaultsTest, WhatHasBeenToldIsToldAgainOnlyAfterAChange) {
  faults_.note("IPv4 echo", UrlErrorCode::timedOut);
  faults_.tell();
  faults_.note("IPv4 echo", UrlErrorCode::timedOut);
  faults_.tell();
  EXPECT_EQ(log_.lines().size(), 1U);
  faults_.note("IPv4 echo", {});
  faults_.tell();
  EXPECT_EQ(log_.lines().size(), 1U);
  faults_.note("IPv4 echo", UrlErrorCode::timedOut);
  faults_.tell();
  EXPECT_EQ(log_.lines().size(), 2U);
}

TEST_F(ServiceFaultsTest, ACancelledRequestSaysNothingOfItsService) {
  faults_.note("IPv4 echo", UrlErrorCode::cancelled);
  faults_.tell();
  EXPECT_EQ(log_.lines(), Lines{});
  faults_.note("IPv4 echo", UrlErrorCode::timedOut);
  faults_.note("IPv4 echo", UrlErrorCode::cancelled);
  faults_.tell();
  EXPECT_EQ(log_.lines().size(), 1U);
}

TEST_F(ServiceFaultsTest, AServiceThatIsNotAskedAnyMoreHasNoFault) {
  faults_.note("geolocation", UrlErrorCode::timedOut);
  faults_.tell();
  faults_.begin();
  faults_.note("IPv4 echo", {});
  faults_.tell();
  EXPECT_EQ(log_.lines().size(), 1U);
}

TEST_F(ServiceFaultsTest, AnAnswerThatCannotBeReadIsOneToo) {
  faults_.note("geolocation", decodingError(PublicInfoDecodingError::missingMember, "isp"));
  faults_.tell();
  EXPECT_EQ(log_.lines(),
            Lines{beginning +
                  std::string("the answer lacks \"isp\" (geolocation); check the services' URLs")});
}

TEST_F(ServiceFaultsTest, EachFaultHasItsRemedy) {
  const std::vector<std::pair<UrlErrorCode, std::string>> remedies{
      {UrlErrorCode::serverCertificateUntrusted, "; name whom to trust with --ca-file"},
      {UrlErrorCode::serverCertificateHasBadDate, "; check the clock and the hosts' certificates"},
      {UrlErrorCode::cannotConnectToProxy,
       "; check the proxies that http_proxy, https_proxy and all_proxy name"},
      {UrlErrorCode::cannotConnectToHost, remedy},
      {UrlErrorCode::badServerResponse, "; check the services' URLs"}};
  for (const auto& [code, sentence] : remedies) {
    faults_.begin();
    faults_.note("IPv4 echo", code);
    faults_.tell();
    EXPECT_THAT(log_.lines().back(), testing::EndsWith(sentence));
  }
}

TEST_F(ServiceFaultsTest, RemediesOfSeveralFaultsStandTogether) {
  faults_.note("IPv4 echo", UrlErrorCode::serverCertificateUntrusted);
  faults_.note("IPv6 echo", UrlErrorCode::timedOut);
  faults_.note("geolocation", UrlErrorCode::timedOut);
  faults_.tell();
  EXPECT_THAT(log_.lines().back(),
              testing::EndsWith("; check the connection and the services' URLs, name whom to trust "
                                "with --ca-file"));
}

}  // namespace
}  // namespace lanternfold
