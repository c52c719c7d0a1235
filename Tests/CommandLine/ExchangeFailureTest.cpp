#include <string>

#include <asio/error.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CommandLine/ExchangeFailure.h"

namespace lanternfold {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::string failureOf(const std::string& host, std::error_code error) {
  return exchangeFailure(error, {Transport::udp, host, 7}, "");
}

std::string failureOf(const std::string& host, std::errc error) {
  return failureOf(host, std::make_error_code(error));
}

TEST(ExchangeFailureTest, AsksForTheInterfaceOfAnAddressThatEveryLinkMayHave) {
  for (const char* host : {"fe80::1", "ff02::1", "name.example"}) {
    EXPECT_THAT(failureOf(host, std::errc::invalid_argument),
                AllOf(HasSubstr(std::string(host) + " port 7 failed"), HasSubstr("fe80::1%eth0"),
                      HasSubstr("lanternfold-widgets interfaces"), Not(HasSubstr("Invalid"))));
  }
}

TEST(ExchangeFailureTest, NamesAnInterfaceThatThereIsNot) {
  for (const char* host : {"fe80::1%nowhere", "ff02::1%nowhere", "ff01::1%nowhere"}) {
    EXPECT_THAT(failureOf(host, asio::error::host_not_found),
                AllOf(HasSubstr("there is no interface \"nowhere\""),
                      HasSubstr("lanternfold-widgets interfaces"), Not(HasSubstr("DNS"))));
  }
  EXPECT_THAT(failureOf("fe80::1%", asio::error::host_not_found),
              HasSubstr("there is no interface \"\""));
  EXPECT_THAT(failureOf("fe80::1%\x1b[2J", asio::error::host_not_found), Not(HasSubstr("\x1b")));
}

TEST(ExchangeFailureTest, SaysWhichAddressesHaveAnInterface) {
  for (const char* host : {"2001:db8::1%eth0", "192.0.2.1%eth0", "name.example%eth0", "%"}) {
    EXPECT_THAT(
        failureOf(host, asio::error::host_not_found),
        AllOf(HasSubstr("cannot find the host"), HasSubstr("leave \"%\""), Not(HasSubstr("DNS"))));
  }
}

TEST(ExchangeFailureTest, SaysThatThereIsNoWayOverAnInterface) {
  EXPECT_THAT(failureOf("fe80::1%99", std::errc::network_unreachable),
              AllOf(HasSubstr("fe80::1%99 port 7"), HasSubstr("over that interface")));
  EXPECT_THAT(failureOf("192.0.2.1", std::errc::network_unreachable),
              HasSubstr("Network is unreachable; check the address"));
}

}  // namespace
}  // namespace lanternfold
