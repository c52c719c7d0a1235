// What is refused, with which code, and in which words.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/WidgetService/HostMessageText.h"
#include "WidgetService/ServiceMessage.h"

namespace lanternfold {
namespace {

// -32700

TEST(RefusedHostMessage, WhatIsNoJsonIsAParseError) {
  EXPECT_EQ(refusalOf(""), "null -32700 the line is not JSON from byte 1 on");
  EXPECT_EQ(refusalOf("GET / HTTP/1.1"), "null -32700 the line is not JSON from byte 1 on");
  EXPECT_EQ(refusalOf(R"({"jsonrpc":"2.0","id":7,"method":"widgets/list"} x)"),
            "null -32700 the line is not JSON from byte 50 on");
  EXPECT_EQ(refusalOf(R"({"jsonrpc":"2.0","id":7,})"),
            "null -32700 the line is not JSON from byte 25 on");
  EXPECT_EQ(refusalOf("{\"id\":\"\xFF\"}"), "null -32700 the line is not JSON from byte 8 on");
  EXPECT_EQ(refusalOf(R"({"id":"\ud800"})"), "null -32700 the line is not JSON from byte 14 on");
  EXPECT_EQ(refusalOf("{\"id\":1e999}"), "null -32700 the line is not JSON from byte 11 on");
}

TEST(RefusedHostMessage, AZeroByteIsAParseErrorAlsoBehindTheMessage) {
  const std::string whole = withId(R"("method":"widgets/list")");
  EXPECT_EQ(refusalOf(whole + '\0'), "null -32700 the line holds a zero byte, which is not JSON");
  EXPECT_EQ(refusalOf(whole + '\0' + "x"),
            "null -32700 the line holds a zero byte, which is not JSON");
}

TEST(RefusedHostMessage, AMessageCutAnywhereIsAParseError) {
  const std::string whole =
      timelineWith(R"("kind":"A€","family":"small","context":{"isPreview":true})");
  ASSERT_EQ(refusalOf(whole), "not refused");
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_THAT(refusalOf(std::string_view(whole).substr(0, length)),
                testing::StartsWith("null -32700 "))
        << length;
  }
}

TEST(RefusedHostMessage, NestsNoDeeperThan64Levels) {
  const auto nested = [](std::size_t levels) {
    return withId(R"("method":"widgets/list","x":)" + std::string(levels, '[') +
                  std::string(levels, ']'));
  };
  EXPECT_EQ(refusalOf(nested(63)), "not refused");
  EXPECT_EQ(refusalOf(nested(64)), "null -32700 the line nests deeper than 64 levels");
  EXPECT_EQ(refusalOf(std::string(4'000'000, '[')),
            "null -32700 the line nests deeper than 64 levels");
  std::string objects;
  for (int level = 0; level < 100'000; ++level) objects += R"({"params":)";
  EXPECT_EQ(refusalOf(objects), "null -32700 the line nests deeper than 64 levels");
}

// -32600

TEST(RefusedHostMessage, WhatIsNoObjectIsNoRequest) {
  for (const char* const line : {"7", "null", "true", R"("widgets/list")", "1.5"}) {
    EXPECT_EQ(refusalOf(line), "null -32600 a message is an object") << line;
  }
}

TEST(RefusedHostMessage, ABatchIsNoRequest) {
  const std::string refused = "null -32600 a batch is not taken: send one request a line";
  EXPECT_EQ(refusalOf("[]"), refused);
  EXPECT_EQ(refusalOf("[" + withId(R"("method":"widgets/list")") + "]"), refused);
}

TEST(RefusedHostMessage, VersionMissingOrAnotherOne) {
  EXPECT_EQ(refusalOf("{}"), "null -32600 jsonrpc is missing");
  EXPECT_EQ(refusalOf(R"({"id":7,"method":"widgets/list"})"), "7 -32600 jsonrpc is missing");
  EXPECT_EQ(refusalOf(R"({"jsonrpc":"1.0","id":7,"method":"widgets/list"})"),
            "7 -32600 jsonrpc is not \"2.0\"");
  EXPECT_EQ(refusalOf(R"({"jsonrpc":2.0,"id":"a","method":"widgets/list"})"),
            "\"a\" -32600 jsonrpc is not \"2.0\"");
  EXPECT_EQ(refusalOf(R"({"jsonrpc":null,"method":"widgets/list"})"),
            "null -32600 jsonrpc is not \"2.0\"");
}

TEST(RefusedHostMessage, MethodMissingOrNoText) {
  EXPECT_EQ(refusalOf(R"({"jsonrpc":"2.0","id":7})"), "7 -32600 method is missing");
  EXPECT_EQ(refusalOf(R"({"jsonrpc":"2.0"})"), "null -32600 method is missing");
  EXPECT_EQ(refusalOf(withId(R"("method":5)")), "7 -32600 method is not a text");
  EXPECT_EQ(refusalOf(withId(R"("method":null)")), "7 -32600 method is not a text");
  EXPECT_EQ(refusalOf(withId(R"("method":["widgets/list"])")), "7 -32600 method is not a text");
}

TEST(RefusedHostMessage, AnAnswerIsNoRequest) {
  EXPECT_EQ(refusalOf(withId(R"("result":{})")), "7 -32600 method is missing");
}

TEST(RefusedHostMessage, AMemberTwiceIsNoRequest) {
  const std::string list = R"("method":"widgets/list")";
  EXPECT_EQ(refusalOf(withId(list + R"(,"id":7)")), "null -32600 id stands twice");
  EXPECT_EQ(refusalOf(withId(list + "," + list)), "7 -32600 method stands twice");
  EXPECT_EQ(refusalOf(withId(list + R"(,"params":{},"params":{})")),
            "7 -32600 params stands twice");
  EXPECT_EQ(refusalOf(withId(list + R"(,"jsonrpc":"2.0")")), "7 -32600 jsonrpc stands twice");
  EXPECT_EQ(refusalOf(withId(list + R"(,"\u006dethod":"x")")), "7 -32600 method stands twice");
  EXPECT_EQ(refusalOf(R"({"jsonrpc":"2.0","method":"a","method":"b"})"),
            "null -32600 method stands twice");
  EXPECT_EQ(refusalOf(withId(list + R"(,"more":1,"more":2)")), "not refused");
}

// -32601

TEST(RefusedHostMessage, AnUnknownMethodIsNotFound) {
  EXPECT_EQ(refusalOf(withId(R"("method":"widget/remove")")),
            "7 -32601 \"widget/remove\" is no method of this service");
  EXPECT_EQ(refusalOf(withId(R"("method":"Widgets/List")")),
            "7 -32601 \"Widgets/List\" is no method of this service");
  EXPECT_EQ(refusalOf(withId(R"("method":"")")), "7 -32601 \"\" is no method of this service");
  EXPECT_EQ(refusalOf(withId(R"("method":"x","params":5)")),
            "7 -32601 \"x\" is no method of this service");
}

TEST(RefusedHostMessage, ANotificationWithAnIdIsNotFound) {
  EXPECT_EQ(refusalOf(withId(R"("method":"$/cancel","params":{"id":7})")),
            "7 -32601 \"$/cancel\" is a notification and takes no id");
  EXPECT_EQ(refusalOf(withId(R"("method":"location/changed","params":{"status":3})")),
            "7 -32601 \"location/changed\" is a notification and takes no id");
}

TEST(RefusedHostMessage, AnErrorQuotesThePeerShortenedAndEscaped) {
  EXPECT_EQ(refusalOf(withId(R"("method":"a\n\u001b[31m\u202e")")),
            "7 -32601 \"a\\x0a\\x1b[31m\\xe2\\x80\\xae\" is no method of this service");
  EXPECT_EQ(refusalOf(withId(R"("method":")" + std::string(1'000'000, 'x') + '"')),
            "7 -32601 \"" + std::string(64, 'x') + "…\" is no method of this service");
}

// -32602

TEST(RefusedHostMessage, ParametersByPositionAreRefused) {
  for (const char* const method : {"widgets/list", "widget/timeline", "intent/perform"}) {
    EXPECT_EQ(refusalOf(withId(R"("method":")" + std::string(method) + R"(","params":[])")),
              "7 -32602 params is not an object")
        << method;
  }
  EXPECT_EQ(refusalOf(withId(R"("method":"widgets/list","params":5)")),
            "7 -32602 params is not an object");
}

TEST(RefusedHostMessage, AParameterThatIsMissing) {
  EXPECT_EQ(refusalOf(withId(R"("method":"widget/timeline")")), "7 -32602 params.kind is missing");
  EXPECT_EQ(refusalOf(timelineWith(R"("family":"small")")), "7 -32602 params.kind is missing");
  EXPECT_EQ(refusalOf(timelineWith(R"("kind":null,"family":"small")")),
            "7 -32602 params.kind is missing");
  EXPECT_EQ(refusalOf(timelineWith(R"("kind":"A")")), "7 -32602 params.family is missing");
  EXPECT_EQ(refusalOf(withId(R"("method":"intent/perform","params":{})")),
            "7 -32602 params.intent is missing");
}

TEST(RefusedHostMessage, AFamilyThatIsNone) {
  EXPECT_EQ(refusalOf(timelineWith(R"("kind":"A","family":"huge")")),
            "7 -32602 params.family: \"huge\" is none of small, medium, large");
  EXPECT_EQ(refusalOf(timelineWith(R"("kind":"A","family":"Small")")),
            "7 -32602 params.family: \"Small\" is none of small, medium, large");
  EXPECT_EQ(refusalOf(timelineWith(R"("kind":"A","family":"")")),
            "7 -32602 params.family: \"\" is none of small, medium, large");
}

TEST(RefusedHostMessage, ParametersOfAWrongType) {
  const auto refused = [](const std::string& rest) {
    return refusalOf(timelineWith(R"("kind":"A","family":"small",)" + rest));
  };
  EXPECT_EQ(refusalOf(timelineWith(R"("kind":5,"family":"small")")),
            "7 -32602 params.kind is not a text");
  EXPECT_EQ(refusalOf(timelineWith(R"("kind":"A","family":0)")),
            "7 -32602 params.family is not a text");
  EXPECT_EQ(refused(R"("configuration":[])"), "7 -32602 params.configuration is not an object");
  EXPECT_EQ(refused(R"("configuration":{"showTimestamp":1})"),
            "7 -32602 params.configuration.showTimestamp is neither true nor false");
  EXPECT_EQ(refused(R"("configuration":{"adapter":"en0"})"),
            "7 -32602 params.configuration.adapter is not an object");
  EXPECT_EQ(refused(R"("configuration":{"adapter":{"identifier":{}}})"),
            "7 -32602 params.configuration.adapter.identifier is not a text");
  EXPECT_EQ(refused(R"("configuration":{"adapter":{"display":false}})"),
            "7 -32602 params.configuration.adapter.display is not a text");
  EXPECT_EQ(refused(R"("context":true)"), "7 -32602 params.context is not an object");
  EXPECT_EQ(refused(R"("context":{"isPreview":"yes"})"),
            "7 -32602 params.context.isPreview is neither true nor false");
  EXPECT_EQ(refusalOf(withId(R"("method":"intent/perform","params":{"intent":[]})")),
            "7 -32602 params.intent is not a text");
}

TEST(RefusedHostMessage, TextsAreBounded) {
  const auto text = [](std::size_t size) { return '"' + std::string(size, 'x') + '"'; };
  const auto withKind = [&](std::size_t size) {
    return refusalOf(timelineWith(R"("family":"small","kind":)" + text(size)));
  };
  EXPECT_EQ(withKind(256), "not refused");
  EXPECT_EQ(withKind(257), "7 -32602 params.kind is longer than 256 bytes");
  const auto withAdapter = [&](const std::string& member, std::size_t size) {
    return refusalOf(timelineWith(R"("kind":"A","family":"small","configuration":{"adapter":{")" +
                                  member + "\":" + text(size) + "}}"));
  };
  for (const char* const member : {"identifier", "display"}) {
    EXPECT_EQ(withAdapter(member, 1024), "not refused");
    EXPECT_EQ(withAdapter(member, 1025), "7 -32602 params.configuration.adapter." +
                                             std::string(member) + " is longer than 1024 bytes");
  }
  EXPECT_EQ(refusalOf(withId(R"("method":"intent/perform","params":{"intent":)" + text(257) + "}")),
            "7 -32602 params.intent is longer than 256 bytes");
}

TEST(RefusedHostMessage, AParameterTwice) {
  EXPECT_EQ(refusalOf(timelineWith(R"("kind":"A","kind":"B","family":"small")")),
            "7 -32602 params.kind stands twice");
  EXPECT_EQ(refusalOf(timelineWith(
                R"("kind":"A","family":"small","configuration":{},"configuration":{})")),
            "7 -32602 params.configuration stands twice");
}

TEST(RefusedHostMessage, AMemberWhoseNameHasADotIsNobodysMember) {
  EXPECT_EQ(refusalOf(withId(
                R"("method":"widget/timeline","params.kind":"A","params":{"family":"small"})")),
            "7 -32602 params.kind is missing");
}

TEST(RefusedHostMessage, MembersOfElementsOfAListAreNobodysMembers) {
  EXPECT_EQ(refusalOf(withId(R"("method":"intent/perform","x":[{"intent":"A"}],"params":{})")),
            "7 -32602 params.intent is missing");
  EXPECT_EQ(refusalOf(R"({"jsonrpc":"2.0","method":"widgets/list","x":[{"id":7}]})"),
            "not refused");
}

}  // namespace
}  // namespace lanternfold
