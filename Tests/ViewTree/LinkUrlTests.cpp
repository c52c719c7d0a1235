#include <string>

#include <gtest/gtest.h>

#include "ViewTree/LinkUrl.h"

namespace lanternfold {
namespace {

TEST(LinkUrl, HasASchemeAndMore) {
  for (const char* url :
       {"net.quernaple.LanternfoldX://bandwidth-monitor?mini=1", "https://example.net/a%20b#c",
        "http://[2001:db8::1]:80/", "mailto:a@example.net", "a:b", "x+y-z.1:2"}) {
    EXPECT_TRUE(isLinkUrl(url)) << url;
  }
}

TEST(LinkUrl, IsAbsolute) {
  for (const char* text :
       {"", ":", "a:", "//example.net", "/a", "example.net", "1a:b", "-a:b", "a b:c", "\u00e9:b"}) {
    EXPECT_FALSE(isLinkUrl(text)) << text;
  }
}

TEST(LinkUrl, HasNoOtherCharacters) {
  for (const char* text : {"a:b c", "a:\n", "a:\x1b[2J", "a:\"", "a:<b>", "a:\\b", "a:^", "a:`",
                           "a:{b}", "a:|", "a:caf\u00e9", "a:\x7f", "a:%", "a:%4", "a:%4g"}) {
    EXPECT_FALSE(isLinkUrl(text)) << text;
  }
  EXPECT_FALSE(isLinkUrl(std::string_view("a:b\0c", 5)));
}

TEST(LinkUrl, IsBounded) {
  const std::string longest = "a:" + std::string(longestLinkUrl - 2, 'b');
  EXPECT_TRUE(isLinkUrl(longest));
  EXPECT_FALSE(isLinkUrl(longest + 'b'));
}

}  // namespace
}  // namespace lanternfold
