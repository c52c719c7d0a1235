// Which proxy each URL goes through.
#include "PlatformLinux/Url/ProxyRules.h"

namespace lanternfold {
namespace {

using Variables = std::map<std::string, std::string>;

ProxyEnvironment environmentOf(const Variables& variables) {
  return proxyEnvironmentFrom([&](const char* name) -> std::optional<std::string> {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  });
}

std::string proxy(const Variables& variables, std::string_view url) {
  return proxyFor(environmentOf(variables), *parseHttpUrl(url, UrlCredentials::kept));
}

bool isDirect(const std::string& noProxy, std::string_view url) {
  return proxy({{"all_proxy", "all:1"}, {"no_proxy", noProxy}}, url).empty();
}

TEST(ProxyRulesTest, WithoutVariablesConnectionsAreDirect) {
  EXPECT_EQ(proxy({}, "http://host.example/"), "");
  EXPECT_EQ(proxy({{"http_proxy", ""}}, "http://host.example/"), "");
}

TEST(ProxyRulesTest, EachSchemeHasItsProxy) {
  const Variables variables{{"http_proxy", "plain:1"}, {"https_proxy", "secure:2"}};
  EXPECT_EQ(proxy(variables, "http://host.example/"), "plain:1");
  EXPECT_EQ(proxy(variables, "https://host.example/"), "secure:2");
}

TEST(ProxyRulesTest, AllIsForWhatHasNoneOfItsOwn) {
  const Variables variables{{"http_proxy", "plain:1"}, {"all_proxy", "socks5h://all:3"}};
  EXPECT_EQ(proxy(variables, "http://host.example/"), "plain:1");
  EXPECT_EQ(proxy(variables, "https://host.example/"), "socks5h://all:3");
}

TEST(ProxyRulesTest, HttpProxyCountsInLowerCaseOnly) {
  EXPECT_EQ(proxy({{"HTTP_PROXY", "sent-by-a-client:1"}}, "http://host.example/"), "");
}

TEST(ProxyRulesTest, TheOthersCountInEitherCaseAndLowerCaseFirst) {
  EXPECT_EQ(proxy({{"HTTPS_PROXY", "upper:1"}}, "https://host.example/"), "upper:1");
  EXPECT_EQ(
      proxy({{"HTTPS_PROXY", "upper:1"}, {"https_proxy", "lower:1"}}, "https://host.example/"),
      "lower:1");
  EXPECT_EQ(proxy({{"ALL_PROXY", "all:1"}}, "http://host.example/"), "all:1");
  EXPECT_EQ(proxy({{"ALL_PROXY", "all:1"}, {"NO_PROXY", "host.example"}}, "http://host.example/"),
            "");
}

TEST(ProxyRulesTest, AVariableThatIsEmptyCountsAsNotSet) {
  EXPECT_EQ(proxy({{"HTTPS_PROXY", "upper:1"}, {"https_proxy", ""}}, "https://host.example/"),
            "upper:1");
  EXPECT_EQ(proxy({{"all_proxy", "all:1"}, {"no_proxy", ""}, {"NO_PROXY", "host.example"}},
                  "http://host.example/"),
            "");
}

TEST(ProxyRulesTest, AnAsteriskMeansEveryHost) {
  EXPECT_TRUE(isDirect("*", "http://host.example/"));
  EXPECT_TRUE(isDirect("*", "http://192.0.2.1/"));
}

TEST(ProxyRulesTest, ANameCoversItselfAndWhatIsBelow) {
  for (const char* list :
       {"example.test", ".example.test", "Example.TEST", "example.test.", "other.test,example.test",
        "other.test example.test", " , other.test ,\texample.test ,"}) {
    EXPECT_TRUE(isDirect(list, "http://example.test/")) << list;
    EXPECT_TRUE(isDirect(list, "https://a.b.EXAMPLE.test:8443/")) << list;
    EXPECT_TRUE(isDirect(list, "http://example.test./")) << list;
    EXPECT_FALSE(isDirect(list, "http://counterexample.test/")) << list;
    EXPECT_FALSE(isDirect(list, "http://example.test.other/")) << list;
  }
}

TEST(ProxyRulesTest, AnEmptyListCoversNothing) {
  for (const char* list : {"", " ", ",", ".", ",.,"}) {
    EXPECT_FALSE(isDirect(list, "http://host.example/")) << "\"" << list << "\"";
  }
}

TEST(ProxyRulesTest, AnAddressCoversItself) {
  EXPECT_TRUE(isDirect("192.0.2.1", "http://192.0.2.1/"));
  EXPECT_FALSE(isDirect("192.0.2.1", "http://192.0.2.10/"));
  EXPECT_FALSE(isDirect("0.2.1", "http://192.0.2.1/"));
  EXPECT_TRUE(isDirect("2001:db8::1", "http://[2001:DB8:0::1]/"));
  EXPECT_FALSE(isDirect("2001:db8::1", "http://[2001:db8::2]/"));
}

TEST(ProxyRulesTest, APrefixCoversItsAddresses) {
  EXPECT_TRUE(isDirect("192.0.2.0/24", "http://192.0.2.77/"));
  EXPECT_FALSE(isDirect("192.0.2.0/25", "http://192.0.2.200/"));
  EXPECT_TRUE(isDirect("192.0.2.0/0", "http://203.0.113.5/"));
  EXPECT_TRUE(isDirect("2001:db8::/33", "http://[2001:db8:7fff::1]/"));
  EXPECT_FALSE(isDirect("2001:db8::/33", "http://[2001:db8:8000::1]/"));
}

TEST(ProxyRulesTest, APrefixThatIsNoneCoversNothing) {
  for (const char* list : {"192.0.2.1/33", "192.0.2.1/-1", "192.0.2.1/", "192.0.2.1/x",
                           "192.0.2.1/8x", "192.0.2/24", "/24"}) {
    EXPECT_FALSE(isDirect(list, "http://192.0.2.1/")) << list;
  }
}

}  // namespace
}  // namespace lanternfold
