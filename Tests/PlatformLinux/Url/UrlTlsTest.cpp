// URL sessions over TLS: whom they trust, and what a broken connection looks like.
#include "Tests/PlatformLinux/Url/ScriptedServer.h"
#include "Tests/PlatformLinux/Url/TlsServer.h"
#include "Tests/PlatformLinux/Url/UrlWorld.h"

namespace lanternfold::test {
namespace {

using namespace std::chrono_literals;

class UrlTlsInNamespace : public testing::Test {
 protected:
  void SetUp() override { OPEN_URL_WORLD(world_); }

  void trust(const std::string& file) {
    world_.remake(
        {.userAgent = "lanternfold-test/1.0", .certificateAuthoritiesFile = file, .proxies = {}});
  }
  std::string beginningOf(const std::string& url) { return world_.fetch(url).substr(0, 14); }

  // Made before the world hides the machine's /etc, which openssl reads.
  const Certificate certificate_{30};
  const Certificate expired_{-1};
  UrlWorld world_;
};

TEST_F(UrlTlsInNamespace, ACertificateOfTheGivenFileIsTrusted) {
  const TlsServer server(certificate_);
  trust(certificate_.file());
  EXPECT_EQ(beginningOf(server.url()), "answer: <HTML>");
}

TEST_F(UrlTlsInNamespace, ACertificateOfTheSystemsStoreIsTrusted) {
  const TlsServer server(certificate_);
  PrivateEtc::write("ssl/certs/ca-certificates.crt", certificate_.text());
  EXPECT_EQ(beginningOf(server.url()), "answer: <HTML>");
}

TEST_F(UrlTlsInNamespace, ACertificateOfAnUnknownIssuerIsNot) {
  const TlsServer server(certificate_);
  PrivateEtc::write("ssl/certs/ca-certificates.crt", expired_.text());
  EXPECT_EQ(world_.fetch(server.url()), "error -1202");
}

TEST_F(UrlTlsInNamespace, TheGivenFileStandsInPlaceOfTheSystemsStore) {
  const TlsServer server(certificate_);
  PrivateEtc::write("ssl/certs/ca-certificates.crt", certificate_.text());
  trust(expired_.file());
  EXPECT_EQ(world_.fetch(server.url()), "error -1202");
}

TEST_F(UrlTlsInNamespace, ACertificateThatHasExpiredHasABadDate) {
  const TlsServer server(expired_);
  trust(expired_.file());
  EXPECT_EQ(world_.fetch(server.url()), "error -1201");
}

TEST_F(UrlTlsInNamespace, ACertificateOfAnotherHostIsNotTrusted) {
  const TlsServer server(certificate_);
  trust(certificate_.file());
  EXPECT_EQ(world_.fetch(server.url("127.0.0.1")), "error -1202");
  EXPECT_EQ(world_.fetch(server.url("four.example")), "error -1202");
}

TEST_F(UrlTlsInNamespace, AFileThatCannotBeReadIsAFailureOfTls) {
  const TlsServer server(certificate_);
  trust("/nowhere.pem");
  EXPECT_EQ(world_.fetch(server.url()), "error -1200");
  trust(certificate_.keyFile());
  EXPECT_EQ(world_.fetch(server.url()), "error -1200") << "it holds no certificate";
}

TEST_F(UrlTlsInNamespace, AVersionOfTlsThatIsTooOldIsAFailure) {
  const TlsServer server(certificate_, {"-tls1_1", "-cipher", "ALL:@SECLEVEL=0"});
  trust(certificate_.file());
  EXPECT_EQ(world_.fetch(server.url()), "error -1200");
}

TEST_F(UrlTlsInNamespace, AServerThatSpeaksNoTlsIsAFailure) {
  const ScriptedServer server([](ServerConnection& connection) {
    connection.send("220 mail.example ESMTP\r\n");
    connection.waitUntilTheClientLeaves();
  });
  PrivateEtc::write("ssl/certs/ca-certificates.crt", certificate_.text());
  EXPECT_EQ(world_.fetch("https://127.0.0.1:" + std::to_string(server.port()) + "/"),
            "error -1200");
}

TEST_F(UrlTlsInNamespace, AServerThatNeverShakesHandsTimesOut) {
  const ScriptedServer server(
      [](ServerConnection& connection) { connection.waitUntilTheClientLeaves(); });
  PrivateEtc::write("ssl/certs/ca-certificates.crt", certificate_.text());
  EXPECT_EQ(world_.fetch({.url = "https://127.0.0.1:" + std::to_string(server.port()) + "/",
                          .timeout = 400ms}),
            "error -1001");
}

TEST_F(UrlTlsInNamespace, AServerThatResetsTheHandshakeFailsButCouldBeReached) {
  const ScriptedServer server([](ServerConnection& connection) {
    connection.pause(50ms);
    connection.reset();
  });
  PrivateEtc::write("ssl/certs/ca-certificates.crt", certificate_.text());
  EXPECT_EQ(world_.fetch("https://127.0.0.1:" + std::to_string(server.port()) + "/"),
            "error -1200");
}

TEST_F(UrlTlsInNamespace, ARedirectFromPlainToTlsIsFollowedAndVerified) {
  const ScriptedServer first(
      answering(httpAnswer("", "302 Found", "Location: https://localhost:4433/\r\n")));
  const TlsServer server(certificate_);
  trust(certificate_.file());
  EXPECT_EQ(beginningOf(first.url()), "answer: <HTML>");
  trust(expired_.file());
  EXPECT_EQ(world_.fetch(first.url()), "error -1202");
}

}  // namespace
}  // namespace lanternfold::test
