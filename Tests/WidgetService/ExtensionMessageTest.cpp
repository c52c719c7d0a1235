#include <gtest/gtest.h>

#include "WidgetService/ExtensionMessage.h"
#include "WidgetService/ServiceAnswer.h"

namespace lanternfold {
namespace {

std::string idText(const RequestIdentifier& id) {
  if (const auto* const number = std::get_if<std::int64_t>(&id)) return std::to_string(*number);
  if (const auto* const text = std::get_if<std::string>(&id)) return '"' + *text + '"';
  return "null";
}

struct MessageText {
  std::string operator()(const ReceivedAnswer& answer) const {
    return "answer " + idText(answer.id);
  }
  std::string operator()(const ReceivedRefusal& refusal) const {
    return "refusal " + idText(refusal.id) + " " + refusal.message;
  }
  std::string operator()(const ConsentNotification& notification) const {
    return notification.whenInUse ? "consent when in use" : "consent";
  }
  std::string operator()(const UnknownExtensionMessage& /*message*/) const { return "unknown"; }
  std::string operator()(const ExtensionNonsense& nonsense) const {
    return "nonsense: " + nonsense.fault;
  }
};

std::string textOf(std::string_view line) {
  return std::visit(MessageText{}, parseExtensionMessage(line));
}

/// A message whose further members are given.
std::string message(const std::string& members) { return R"({"jsonrpc":"2.0",)" + members + "}"; }

TEST(ExtensionMessage, IsWhatAnExtensionHasWritten) {
  EXPECT_EQ(textOf(answerLine(std::int64_t{7}, emptyResult())), "answer 7");
  EXPECT_EQ(textOf(answerLine("seven", emptyResult())), "answer \"seven\"");
  EXPECT_EQ(textOf(answerLine(nullptr, emptyResult())), "answer null");
  EXPECT_EQ(textOf(answerLine(std::int64_t{7},
                              std::unexpected(ServiceError{ServiceErrorCode::busy, "too many"}))),
            "refusal 7 too many");
  EXPECT_EQ(textOf(locationRequestLine(true)), "consent when in use");
  EXPECT_EQ(textOf(locationRequestLine(false)), "consent");
}

TEST(ExtensionMessage, MembersMayComeInAnyOrderAndUnknownOnesAreIgnored) {
  EXPECT_EQ(textOf(R"({"later":[{}],"result":{},"id":7,"jsonrpc":"2.0"})"), "answer 7");
  EXPECT_EQ(textOf(message(R"("method":"location/request","params":{"whenInUse":true,"x":1})")),
            "consent when in use");
}

TEST(ExtensionMessage, WhatALaterExtensionSaysIsUnknown) {
  EXPECT_EQ(textOf(message(R"("method":"widgets/changed")")), "unknown");
  EXPECT_EQ(textOf(message(R"("method":"user/ask","id":1,"params":{})")), "unknown");
  EXPECT_EQ(textOf(message(R"("method":"location/request","id":1)")), "unknown");
}

TEST(ExtensionMessage, ARefusalIsOneBoundedLineFitToShow) {
  const std::string members = R"("id":7,"error":{"code":-1,"message":"a\nb\u001B\u202E)";
  EXPECT_EQ(textOf(message(members + R"("})")), R"(refusal 7 a\x0ab\x1b\xe2\x80\xae)");
  const std::string longText(10'000, 'x');
  EXPECT_EQ(textOf(message(members + longText + R"("})")).size(),
            std::string("refusal 7 ").size() + longestErrorText);
}

TEST(ExtensionMessage, AnythingElseIsNonsense) {
  const std::vector<std::pair<std::string, std::string>> lines{
      {"", "It is not JSON."},
      {"Starting up...", "It is not JSON."},
      {"{}{}", "It is not JSON."},
      {std::string("{}\0", 3), "It is not JSON."},
      {"\xFF", "It is not JSON."},
      {"[]", "a message is an object"},
      {"null", "a message is an object"},
      {R"({"id":7,"result":{}})", "jsonrpc is not \"2.0\""},
      {R"({"jsonrpc":2.0,"id":7,"result":{}})", "jsonrpc is not \"2.0\""},
      {R"({"jsonrpc":"1.0","id":7,"result":{}})", "jsonrpc is not \"2.0\""},
      {message(R"("result":{})"), "method and id are missing"},
      {message(R"("id":7)"), "there is neither a result nor an error"},
      {message(R"("id":7,"result":{},"error":{"code":1,"message":""})"),
       "there are a result and an error"},
      {message(R"("id":7,"error":{"message":""})"), "error.code is no number"},
      {message(R"("id":7,"error":"no")"), "error.code is no number"},
      {message(R"("id":7,"error":{"code":1})"), "error.message is no text"},
      {message(R"("method":7)"), "method is not a text"},
      {message(R"("method":"location/request")"), "params.whenInUse is neither true nor false"},
      {message(R"("method":"location/request","params":{"whenInUse":1})"),
       "params.whenInUse is neither true nor false"},
      {message(R"("id":7,"id":7,"result":{})"), "id: There are two members of this name."}};
  for (const auto& [line, fault] : lines) EXPECT_EQ(textOf(line), "nonsense: " + fault) << line;
}

TEST(ExtensionMessage, AMarkThatTurnsTheWritingIsNotRepeated) {
  EXPECT_EQ(textOf(R"({"a\u200Eb":})"), R"(nonsense: a\xe2\x80\x8eb: It is not JSON.)");
}

TEST(ExtensionMessage, AnIdentifierIsOneThatAHostMayHaveChosen) {
  EXPECT_EQ(textOf(message(R"("id":9007199254740992,"result":{})")), "answer 9007199254740992");
  EXPECT_EQ(textOf(message(R"("id":-9007199254740992,"result":{})")), "answer -9007199254740992");
  const std::string fault =
      "nonsense: id is neither a text nor null nor a whole number within ±2^53";
  for (const std::string id : {"7.5", "9007199254740994", "1e300", "true", "[]", "{}"}) {
    EXPECT_EQ(textOf(message(R"("id":)" + id + R"(,"result":{})")), fault) << id;
  }
  const std::string longText = '"' + std::string(257, 'x') + '"';
  EXPECT_EQ(textOf(message(R"("id":)" + longText + R"(,"result":{})")), fault);
}

TEST(ExtensionMessage, IsNonsenseWhereverItIsCut) {
  const std::string whole = answerLine(std::int64_t{7}, entryResult({.date = {}, .view = {}}));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const std::string text = textOf(whole.substr(0, size));
    EXPECT_TRUE(text.starts_with("nonsense: ") && text.ends_with("It is not JSON.")) << text;
  }
}

TEST(ExtensionMessage, IsBoundedInDepthAndNumber) {
  const auto nested = [](std::size_t levels) {
    return message(R"("id":7,"result":)" + std::string(levels, '[') + std::string(levels, ']'));
  };
  EXPECT_EQ(textOf(nested(100)), "answer 7");
  EXPECT_TRUE(textOf(nested(1'000'000)).ends_with(": It is nested too deeply."));
  std::string many = message(R"("id":7,"result":[0)");
  many.pop_back();
  for (int count = 0; count < 1'000'000; ++count) many += ",0";
  EXPECT_TRUE(textOf(many + "]}").ends_with(": There are too many values."));
}

}  // namespace
}  // namespace lanternfold
