// URL sessions behind proxies: what goes through one, and what a broken one looks like.
#include "Tests/PlatformLinux/Url/ScriptedServer.h"
#include "Tests/PlatformLinux/Url/UrlWorld.h"

namespace lanternfold::test {
namespace {

using namespace std::chrono_literals;

class UrlProxyInNamespace : public testing::Test {
 protected:
  void SetUp() override { OPEN_URL_WORLD(world_); }

  void useProxies(const ProxyEnvironment& proxies) {
    world_.remake({.userAgent = "lanternfold-test/1.0", .proxies = proxies});
  }
  void useProxyForAll(const std::string& proxy) { useProxies({.allProxy = proxy}); }

  UrlWorld world_;
};

TEST_F(UrlProxyInNamespace, ThePlainRequestGoesToTheProxyWhole) {
  std::string request;
  const ScriptedServer proxy([&request](ServerConnection& connection) {
    request = connection.readRequest();
    connection.send(httpAnswer("through"));
  });
  useProxies({.httpProxy = proxy.url()});
  EXPECT_EQ(world_.fetch("http://host.example/path"), "answer: through")
      << "the name is the proxy's to find";
  EXPECT_THAT(request, testing::StartsWith("GET http://host.example/path HTTP/1.1\r\n"));
}

TEST_F(UrlProxyInNamespace, TheSecureRequestAsksTheProxyToConnect) {
  std::string request;
  const ScriptedServer proxy([&request](ServerConnection& connection) {
    request = connection.readRequest();
    connection.send("HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n");
  });
  useProxies({.httpsProxy = proxy.url()});
  EXPECT_EQ(world_.fetch("https://host.example/path"), "error -1300");
  EXPECT_THAT(request, testing::StartsWith("CONNECT host.example:443 HTTP/1.1\r\n"));
}

TEST_F(UrlProxyInNamespace, HostsThatNeedNoProxyAreAskedDirectly) {
  const ScriptedServer server(answering(httpAnswer("direct")));
  useProxies({.allProxy = "http://127.0.0.1:9", .noProxy = "four.example"});
  EXPECT_EQ(world_.fetch(server.url("/", "four.example")), "answer: direct");
}

TEST_F(UrlProxyInNamespace, EachRedirectGoesThroughItsOwnProxy) {
  const ScriptedServer server(answering(httpAnswer("direct")));
  const ScriptedServer proxy(answering(
      httpAnswer("", "302 Found", "Location: " + server.url("/", "four.example") + "\r\n")));
  useProxies({.httpProxy = proxy.url(), .noProxy = "four.example"});
  EXPECT_EQ(world_.fetch("http://host.example/"), "answer: direct");
}

TEST_F(UrlProxyInNamespace, TheFamilyIsLeftToTheProxy) {
  const ScriptedServer proxy(answering(httpAnswer("through")));
  useProxyForAll(proxy.url());
  EXPECT_EQ(world_.fetch({.url = "http://host.example/", .addressFamily = UrlAddressFamily::ipv6}),
            "answer: through")
      << "the proxy is reached over IPv4";
  EXPECT_EQ(world_.fetch({.url = "http://192.0.2.1/", .addressFamily = UrlAddressFamily::ipv6}),
            "answer: through");
}

TEST_F(UrlProxyInNamespace, AProxyThatRefusesIsNotTheHost) {
  for (const char* proxy : {"http://127.0.0.1:9", "127.0.0.1:9", "http://[::1]:9",
                            "socks5h://127.0.0.1:9", "https://127.0.0.1:9"}) {
    useProxyForAll(proxy);
    EXPECT_EQ(world_.fetch("http://host.example/"), "error -1300") << proxy;
    EXPECT_EQ(world_.fetch("https://host.example/"), "error -1300") << proxy;
  }
}

TEST_F(UrlProxyInNamespace, AProxyWithoutARouteIsNotTheHost) {
  useProxyForAll("http://192.0.2.1:3128");
  EXPECT_EQ(world_.fetch("http://host.example/"), "error -1300");
}

TEST_F(UrlProxyInNamespace, AProxyThatCannotBeFoundIsNotTheHost) {
  useProxyForAll("http://proxy.example:3128");
  EXPECT_EQ(world_.fetch("http://host.example/"), "error -1300");
}

TEST_F(UrlProxyInNamespace, AProxyThatIsNoneIsNotTheHost) {
  for (const char* proxy : {"http://", "what://proxy.example", "http://127.0.0.1:99999", " "}) {
    useProxyForAll(proxy);
    EXPECT_EQ(world_.fetch("http://host.example/"), "error -1300") << proxy;
  }
}

TEST_F(UrlProxyInNamespace, AProxyThatIsNeverReachedIsNotTheHost) {
  ASSERT_TRUE(
      NetworkNamespace::run("ip link add en0 type veth peer name far && ip link set far up "
                            "&& ip link set en0 up && ip addr add 192.0.2.2/24 dev en0"));
  useProxyForAll("http://192.0.2.1:3128");
  EXPECT_EQ(world_.fetch({.url = "http://host.example/", .timeout = 400ms}), "error -1300");
}

TEST_F(UrlProxyInNamespace, AProxyThatIsReachedAndStaysSilentTimesOut) {
  const ScriptedServer proxy(neverAnswering());
  useProxyForAll(proxy.url());
  EXPECT_EQ(world_.fetch({.url = "http://host.example/", .timeout = 400ms}), "error -1001");
}

TEST_F(UrlProxyInNamespace, AProxyThatNeverOpensItsTunnelIsNotTheHost) {
  const ScriptedServer proxy(neverAnswering());
  useProxyForAll(proxy.url());
  EXPECT_EQ(world_.fetch({.url = "https://host.example/", .timeout = 400ms}), "error -1300");
}

TEST_F(UrlProxyInNamespace, TheVariablesOfTheProcessAreNotReadBehindTheCompositionsBack) {
  const ScriptedServer server(answering(httpAnswer("direct")));
  ASSERT_EQ(setenv("http_proxy", "http://127.0.0.1:9", 1), 0);
  ASSERT_EQ(setenv("all_proxy", "http://127.0.0.1:9", 1), 0);
  EXPECT_EQ(world_.fetch(server.url()), "answer: direct");
  ASSERT_EQ(setenv("no_proxy", "*", 1), 0);
  useProxyForAll("http://127.0.0.1:9");
  EXPECT_EQ(world_.fetch(server.url()), "error -1300");
  for (const char* name : {"http_proxy", "all_proxy", "no_proxy"}) unsetenv(name);
}

}  // namespace
}  // namespace lanternfold::test
