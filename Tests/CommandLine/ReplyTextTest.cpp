#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandLine/ReplyText.h"

namespace lanternfold {
namespace {

using std::string_literals::operator""s;

TEST(ReplyText, ShowsLines) {
  EXPECT_EQ(replyText({"one\ntwo\n", "192.0.2.1:7"}), "From 192.0.2.1:7, 8 bytes:\none\ntwo\n");
  EXPECT_EQ(replyText({"one\r\n\ttwo", "[::1]:7"}), "From [::1]:7, 9 bytes:\none\n\ttwo\n");
  EXPECT_EQ(replyText({"x", std::nullopt}), "From an unknown peer, 1 byte:\nx\n");
  EXPECT_EQ(replyText({"m\u00FCnchen", "192.0.2.1:7"}),
            "From 192.0.2.1:7, 8 bytes:\nm\u00FCnchen\n");
}

TEST(ReplyText, ShowsAnEmptyLine) {
  EXPECT_EQ(replyText({"\n", "192.0.2.1:7"}), "From 192.0.2.1:7, 1 byte:\n\n");
}

TEST(ReplyText, WritesOutWhatCouldMoveATerminalsCursor) {
  EXPECT_EQ(replyText({"\x1B[31mred\rover", "192.0.2.1:7"}),
            "From 192.0.2.1:7, 13 bytes:\n\\x1b[31mred\\x0dover\n");
}

TEST(ReplyText, ShowsWhatIsNoTextAsBytes) {
  EXPECT_EQ(replyText({"\x00\x01\xFF"s, "192.0.2.1:7"}),
            "From 192.0.2.1:7, 3 bytes:\n00000000  00 01 ff\n");
  const std::string text = replyText({std::string(17, '\xFE'), "192.0.2.1:7"});
  EXPECT_TRUE(text.ends_with("fe\n00000010  fe\n")) << text;
}

TEST(ReplyJson, HoldsTheBytesAndTheirTextWhenTheyAreOne) {
  EXPECT_EQ(replyJson({"a\"\n", "192.0.2.1:7"}),
            "{\"data\":\"YSIK\",\"text\":\"a\\\"\\n\",\"from\":\"192.0.2.1:7\"}\n");
  EXPECT_EQ(replyJson({"\xFF", std::nullopt}), "{\"data\":\"/w==\",\"text\":null,\"from\":null}\n");
  EXPECT_EQ(replyJson({"a\0b"s, "192.0.2.1:7"}),
            "{\"data\":\"YQBi\",\"text\":null,\"from\":\"192.0.2.1:7\"}\n");
}

}  // namespace
}  // namespace lanternfold
