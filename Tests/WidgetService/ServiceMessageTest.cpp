#include <gtest/gtest.h>

#include "Tests/WidgetService/HostMessageText.h"
#include "WidgetService/ServiceMessage.h"

namespace lanternfold {
namespace {

HostMessage request(RequestIdentifier id, ServiceCall call) {
  return ServiceRequest{.id = std::move(id), .call = std::move(call)};
}

std::string idOf(const std::string& id) {
  const HostMessage message =
      parseHostMessage(R"({"jsonrpc":"2.0","method":"widgets/list","id":)" + id + "}");
  if (const auto* const asked = std::get_if<ServiceRequest>(&message)) return idText(asked->id);
  return refusalOf(R"({"jsonrpc":"2.0","method":"widgets/list","id":)" + id + "}");
}

// What is understood

TEST(HostMessage, ListCallWithAndWithoutParameters) {
  const HostMessage expected = request(7, ListCall{});
  EXPECT_EQ(parseHostMessage(withId(R"("method":"widgets/list")")), expected);
  EXPECT_EQ(parseHostMessage(withId(R"("method":"widgets/list","params":{})")), expected);
  EXPECT_EQ(parseHostMessage(withId(R"("method":"widgets/list","params":null)")), expected);
  EXPECT_EQ(parseHostMessage(withId(R"("method":"widgets/list","params":{"kind":5,"x":[]})")),
            expected);
}

TEST(HostMessage, EntryCallsWithEverything) {
  EntryCall call{.entry = EntryCall::Kind::placeholder,
                 .kind = "NetworkAdapterWidget",
                 .request = {.family = WidgetFamily::large,
                             .configuration = {.showTimestamp = true,
                                               .adapter = AdapterParameter{"en0", "Ethernet"}},
                             .context = {.isPreview = true}}};
  const std::string parameters =
      R"({"kind":"NetworkAdapterWidget","family":"large","configuration":{"showTimestamp":true,)"
      R"("adapter":{"identifier":"en0","display":"Ethernet"}},"context":{"isPreview":true}})";
  const auto parsed = [&](const std::string& method) {
    return parseHostMessage(withId(R"("method":")" + method + R"(","params":)" + parameters));
  };
  EXPECT_EQ(parsed("widget/placeholder"), request(7, call));
  call.entry = EntryCall::Kind::snapshot;
  EXPECT_EQ(parsed("widget/snapshot"), request(7, call));
  call.entry = EntryCall::Kind::timeline;
  EXPECT_EQ(parsed("widget/timeline"), request(7, call));
}

TEST(HostMessage, AbsentNullAndEmptyConfigurationsAndContextsAreTheSame) {
  const HostMessage expected = request(
      7, EntryCall{
             .entry = EntryCall::Kind::timeline,
             .kind = "A",
             .request = {.family = WidgetFamily::small,
                         .configuration = {.showTimestamp = std::nullopt, .adapter = std::nullopt},
                         .context = {.isPreview = false}}});
  for (const char* const rest :
       {"", R"(,"configuration":{},"context":{})", R"(,"configuration":null,"context":null)",
        R"(,"configuration":{"showTimestamp":null,"adapter":null},"context":{"isPreview":null})",
        R"(,"configuration":{"colour":{"red":1}},"context":{"size":[1,2]},"more":"x")"}) {
    EXPECT_EQ(parseHostMessage(timelineWith(R"("kind":"A","family":"small")" + std::string(rest))),
              expected)
        << rest;
  }
}

std::optional<AdapterParameter> adapterOf(const std::string& adapter) {
  const HostMessage message = parseHostMessage(
      timelineWith(R"("kind":"A","family":"small","configuration":{"adapter":)" + adapter + "}"));
  return std::get<EntryCall>(std::get<ServiceRequest>(message).call).request.configuration.adapter;
}

TEST(HostMessage, AnAdapterIsDisplayedByItsIdentifierUnlessItHasADisplayText) {
  EXPECT_EQ(adapterOf(R"({"identifier":"en0"})"), (AdapterParameter{"en0", "en0"}));
  EXPECT_EQ(adapterOf(R"({"identifier":"en0","display":null})"), (AdapterParameter{"en0", "en0"}));
  EXPECT_EQ(adapterOf(R"({"identifier":"en0","display":""})"), (AdapterParameter{"en0", ""}));
}

TEST(HostMessage, AnAdapterMayHaveNoIdentifier) {
  EXPECT_EQ(adapterOf(R"({"display":"Automatic"})"), (AdapterParameter{std::nullopt, "Automatic"}));
  EXPECT_EQ(adapterOf(R"({"identifier":null,"display":"A"})"),
            (AdapterParameter{std::nullopt, "A"}));
  EXPECT_EQ(adapterOf("{}"), (AdapterParameter{std::nullopt, ""}));
}

TEST(HostMessage, PerformIntentCall) {
  EXPECT_EQ(parseHostMessage(
                withId(R"("method":"intent/perform","params":{"intent":"RefreshAppIntent"})")),
            request(7, PerformIntentCall{"RefreshAppIntent"}));
}

TEST(HostMessage, CancelNotification) {
  const auto parsed = [](const std::string& id) {
    return parseHostMessage(R"({"jsonrpc":"2.0","method":"$/cancel","params":{"id":)" + id + "}}");
  };
  EXPECT_EQ(parsed("7"), HostMessage(CancelNotification{7}));
  EXPECT_EQ(parsed(R"("seven")"), HostMessage(CancelNotification{"seven"}));
  EXPECT_EQ(parsed("null"), HostMessage(CancelNotification{nullptr}));
}

TEST(HostMessage, LocationNotificationOfEveryStatus) {
  for (const std::int32_t status : {-1, 0, 1, 2, 3, 4}) {
    EXPECT_EQ(
        parseHostMessage(R"({"jsonrpc":"2.0","method":"location/changed","params":{"status":)" +
                         std::to_string(status) + "}}"),
        HostMessage(LocationNotification{status}));
  }
}

TEST(HostMessage, MembersInAnyOrderAndSpacesBetweenThem) {
  EXPECT_EQ(parseHostMessage(" \t{ \"method\" : \"widgets/list\" ,\r\"id\":\"a\", \"extra\": "
                             "{\"id\": 9}, \"jsonrpc\"\t: \"2.0\" } "),
            request("a", ListCall{}));
}

TEST(HostMessage, TextsMayBeWrittenWithEscapes) {
  EXPECT_EQ(
      parseHostMessage(R"({"jsonrpc":"2.0","i\u0064":"\ud83d\ude80","method":"widgets\/list"})"),
      request("\U0001F680", ListCall{}));
}

// Identifiers

TEST(HostMessage, IdentifiersThatAreUnderstood) {
  EXPECT_EQ(idOf("0"), "0");
  EXPECT_EQ(idOf("-0"), "0");
  EXPECT_EQ(idOf("-12"), "-12");
  EXPECT_EQ(idOf("9007199254740992"), "9007199254740992");
  EXPECT_EQ(idOf("-9007199254740992"), "-9007199254740992");
  EXPECT_EQ(idOf(R"("")"), "\"\"");
  EXPECT_EQ(idOf(R"("7")"), "\"7\"");
  EXPECT_EQ(idOf("null"), "null");
  EXPECT_EQ(idOf('"' + std::string(256, 'x') + '"'), '"' + std::string(256, 'x') + '"');
}

TEST(HostMessage, IdentifiersOfAWrongKindOrSize) {
  const std::string refused =
      "null -32600 id is neither a text nor null nor a whole number within ±2^53";
  for (const char* const id :
       {"1.5", "1.0", "1e3", "9007199254740993", "-9007199254740993", "18446744073709551615",
        "9223372036854775808", "-9223372036854775808", "99999999999999999999999", "true", "[1]",
        "{}"}) {
    EXPECT_EQ(idOf(id), refused) << id;
  }
  EXPECT_EQ(idOf('"' + std::string(257, 'x') + '"'), "null -32600 id is longer than 256 bytes");
}

// Notifications that nobody can be told about

TEST(HostMessage, ARequestWithoutAnIdIsIgnored) {
  for (const char* const method : {"widgets/list", "widget/timeline", "intent/perform"}) {
    EXPECT_EQ(parseHostMessage(R"({"jsonrpc":"2.0","method":")" + std::string(method) + "\"}"),
              HostMessage(IgnoredNotification{}))
        << method;
  }
}

TEST(HostMessage, AnUnknownNotificationIsIgnored) {
  EXPECT_EQ(parseHostMessage(R"({"jsonrpc":"2.0","method":"$/progress","params":5})"),
            HostMessage(IgnoredNotification{}));
}

TEST(HostMessage, ANotificationWithWrongParametersIsIgnored) {
  for (const char* const rest :
       {R"("$/cancel")", R"("$/cancel","params":{})", R"("$/cancel","params":[7])",
        R"("$/cancel","params":{"id":1.5})", R"("$/cancel","params":{"id":7,"id":8})",
        R"("location/changed")", R"("location/changed","params":{"status":5})",
        R"("location/changed","params":{"status":-2})",
        R"("location/changed","params":{"status":3.0})",
        R"("location/changed","params":{"status":null})",
        R"("location/changed","params":{"status":"3"})"}) {
    EXPECT_EQ(parseHostMessage(R"({"jsonrpc":"2.0","method":)" + std::string(rest) + "}"),
              HostMessage(IgnoredNotification{}))
        << rest;
  }
}

}  // namespace
}  // namespace lanternfold
