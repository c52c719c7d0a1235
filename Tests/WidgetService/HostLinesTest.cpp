#include <gtest/gtest.h>

#include "WidgetService/HostLines.h"

namespace lanternfold {
namespace {

const EntryCall chosenAdapter{
    .entry = EntryCall::Kind::timeline,
    .kind = "NetworkAdapterWidget",
    .request = {
        .family = WidgetFamily::medium,
        .configuration = {.showTimestamp = true,
                          .adapter = AdapterParameter{.identifier = "en0", .display = "Ethernet"}},
        .context = {.isPreview = true}}};

/// What an extension understands of a request.
HostMessage understood(const ServiceCall& call, const RequestIdentifier& id) {
  return parseHostMessage(requestLine({.id = id, .call = call}));
}

TEST(RequestLine, IsUnderstoodAsWhatWentIn) {
  const EntryCall plain{.entry = EntryCall::Kind::snapshot, .kind = "Plain", .request = {}};
  const EntryCall automatic{
      .entry = EntryCall::Kind::placeholder,
      .kind = "\"\\\n\x01 \xE2\x82\xAC",
      .request = {.configuration = {.showTimestamp = false,
                                    .adapter = AdapterParameter{std::nullopt, "Any"}}}};
  for (const ServiceCall& call :
       {ServiceCall(ListCall{}), ServiceCall(chosenAdapter), ServiceCall(plain),
        ServiceCall(automatic), ServiceCall(PerformIntentCall{"RefreshAppIntent"})}) {
    for (const RequestIdentifier& id : {RequestIdentifier(std::int64_t{7}),
                                        RequestIdentifier("seven"), RequestIdentifier(nullptr)}) {
      EXPECT_EQ(understood(call, id), HostMessage(ServiceRequest{.id = id, .call = call}));
    }
  }
}

TEST(RequestLine, HasEveryMemberOfARequest) {
  EXPECT_EQ(requestLine({.id = std::int64_t{7}, .call = chosenAdapter}),
            R"({"jsonrpc":"2.0","id":7,"method":"widget/timeline","params":{)"
            R"("kind":"NetworkAdapterWidget","family":"medium","configuration":{)"
            R"("showTimestamp":true,"adapter":{"identifier":"en0","display":"Ethernet"}},)"
            R"("context":{"isPreview":true}}})");
  EXPECT_EQ(requestLine({.id = std::int64_t{1}, .call = ListCall{}}),
            R"({"jsonrpc":"2.0","id":1,"method":"widgets/list","params":{}})");
}

TEST(RequestLine, IsOneLineOfTextWhateverItIsAbout) {
  const std::string line =
      requestLine({.id = std::int64_t{7}, .call = PerformIntentCall{"a\nb\xFF"}});
  EXPECT_FALSE(line.contains('\n'));
  EXPECT_TRUE(line.contains("a\\nb\uFFFD"));
}

TEST(CancelLine, IsUnderstoodAsWhatWentIn) {
  EXPECT_EQ(parseHostMessage(cancelLine({std::int64_t{7}})),
            HostMessage(CancelNotification{std::int64_t{7}}));
}

TEST(LocationChangedLine, IsUnderstoodAsWhatWentIn) {
  for (std::int32_t status = -1; status <= 4; ++status) {
    EXPECT_EQ(parseHostMessage(locationChangedLine({status})),
              HostMessage(LocationNotification{status}));
  }
}

}  // namespace
}  // namespace lanternfold
