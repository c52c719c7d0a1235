// What a host does not take from an extension, and where it says that the fault is.
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/ViewTree/ViewSamples.h"
#include "ViewTree/ViewArchive.h"

namespace lanternfold {

void PrintTo(const ViewArchiveFault& fault, std::ostream* stream) {
  *stream << fault.path << ": " << fault.sentence;
}

namespace {

std::string archived(const std::string& root) { return R"({"version":1,"root":)" + root + "}"; }

ViewArchiveFault faultOf(const std::string& json) {
  const auto view = viewOfArchive(json);
  return view ? ViewArchiveFault{"none", ""} : view.error();
}

using Fault = ViewArchiveFault;

TEST(ViewArchiveFault, OfWhatIsNoJson) {
  const Fault noJson{"", "It is not JSON."};
  for (const char* json : {"", " ", "nonsense", "\xff", "[", "{", "\"", "{}{}", "{\"a\"}"}) {
    EXPECT_EQ(faultOf(json).sentence, noJson.sentence) << json;
  }
  EXPECT_EQ(faultOf(archived(R"({"type":"empty"})") + "x"), noJson);
  const std::string behindAZero = archived(R"({"type":"empty"})") + '\0' + "x";
  EXPECT_EQ(faultOf(behindAZero), noJson);
}

TEST(ViewArchiveFault, OfBytesThatAreNoUtf8) {
  EXPECT_EQ(faultOf(archived("{\"type\":\"text\",\"fontSize\":1,\"text\":\"a\xff\"}")),
            (Fault{"root.text", "It is not JSON."}));
  EXPECT_EQ(faultOf(archived("{\"type\":\"symbol\",\"name\":\"\\ud800\"}")),
            (Fault{"root.name", "It is not JSON."}));
}

TEST(ViewArchiveFault, OfAWrongVersion) {
  EXPECT_EQ(faultOf(R"({"root":{"type":"empty"}})"), (Fault{"version", "It is missing."}));
  for (const char* version : {"2", "0", "1.5", "\"1\"", "null", "[1]"}) {
    const std::string json =
        std::string("{\"version\":") + version + R"(,"root":{"type":"empty"}})";
    EXPECT_EQ(faultOf(json), (Fault{"version", "It is not 1."})) << version;
  }
}

TEST(ViewArchiveFault, OfAMissingOrWrongRoot) {
  EXPECT_EQ(faultOf("[]"), (Fault{"", "It is not an object."}));
  EXPECT_EQ(faultOf("1"), (Fault{"", "It is not an object."}));
  EXPECT_EQ(faultOf(R"({"version":1})"), (Fault{"root", "It is missing."}));
  EXPECT_EQ(faultOf(archived("[]")), (Fault{"root", "It is not an object."}));
  EXPECT_EQ(faultOf(archived("{}")), (Fault{"root.type", "It is missing."}));
}

TEST(ViewArchiveFault, OfAnUnknownType) {
  const Fault unknown{"root.type", "It is not a type of node."};
  EXPECT_EQ(faultOf(archived(R"({"type":"webView"})")), unknown);
  EXPECT_EQ(faultOf(archived(R"({"type":""})")), unknown);
  EXPECT_EQ(faultOf(archived(R"({"type":7})")), (Fault{"root.type", "It is not a text."}));
}

TEST(ViewArchiveFault, HasThePathToIt) {
  const std::string good = R"({"type":"empty"},)";
  EXPECT_EQ(faultOf(archived(R"({"type":"vstack","children":[)" + good + good + good +
                             R"({"type":"text","text":"a"}]})")),
            (Fault{"root.children[3].fontSize", "It is missing."}));
  EXPECT_EQ(faultOf(archived(R"({"type":"padding","children":[{"type":"hstack","children":[)" +
                             good + R"({"type":"foreground","colour":{"red":1,"green":2}}]}]})")),
            (Fault{"root.children[0].children[1].colour.green", "The number is too large."}));
  EXPECT_EQ(faultOf(archived(R"({"type":"wholeRows","spacings":[1,2,"3"]})")),
            (Fault{"root.spacings[2]", "It is not a number."}));
}

struct BadMember {
  std::string node;
  ViewArchiveFault fault;
  friend void PrintTo(const BadMember& member, std::ostream* stream) { *stream << member.node; }
};

class ViewArchiveMember : public testing::TestWithParam<BadMember> {};

TEST_P(ViewArchiveMember, IsRefused) {
  EXPECT_EQ(faultOf(archived(GetParam().node)), GetParam().fault);
}

const char* const missing = "It is missing.";
const char* const noNumber = "It is not a number.";
const char* const noText = "It is not a text.";
const char* const noWord = "It is none of the words that may stand here.";
const char* const tooLarge = "The number is too large.";
const char* const tooSmall = "The number is too small.";

INSTANTIATE_TEST_SUITE_P(
    Missing, ViewArchiveMember,
    testing::Values(BadMember{R"({"type":"text","fontSize":1})", {"root.text", missing}},
                    BadMember{R"({"type":"drawingTime","fontSize":1})", {"root.format", missing}},
                    BadMember{R"({"type":"symbol"})", {"root.name", missing}},
                    BadMember{R"({"type":"image"})", {"root.name", missing}},
                    BadMember{R"({"type":"circle"})", {"root.lineWidth", missing}},
                    BadMember{R"({"type":"roundedRectangle","cornerRadius":1})",
                              {"root.fill", missing}},
                    BadMember{R"({"type":"linearGradient"})", {"root.start", missing}},
                    BadMember{R"({"type":"wholeRows"})", {"root.spacings", missing}},
                    BadMember{R"({"type":"opacity","light":1})", {"root.dark", missing}},
                    BadMember{R"({"type":"foreground"})", {"root.colour", missing}},
                    BadMember{R"({"type":"foreground","colour":{}})", {"root.colour.red", missing}},
                    BadMember{R"({"type":"button"})", {"root.intent", missing}},
                    BadMember{R"({"type":"link"})", {"root.url", missing}},
                    BadMember{R"({"type":"layoutPriority"})", {"root.priority", missing}}));

INSTANTIATE_TEST_SUITE_P(
    OfAWrongKind, ViewArchiveMember,
    testing::Values(
        BadMember{R"({"type":"text","text":1,"fontSize":1})", {"root.text", noText}},
        BadMember{R"({"type":"text","text":null,"fontSize":1})", {"root.text", noText}},
        BadMember{R"({"type":"text","text":"a","fontSize":"1"})", {"root.fontSize", noNumber}},
        BadMember{R"({"type":"text","text":"a","fontSize":[1]})", {"root.fontSize", noNumber}},
        BadMember{R"({"type":"circle","lineWidth":true})", {"root.lineWidth", noNumber}},
        BadMember{R"({"type":"hstack","alignment":"leading"})", {"root.alignment", noWord}},
        BadMember{R"({"type":"hstack","alignment":0})", {"root.alignment", noText}},
        BadMember{R"({"type":"zstack","alignment":"top"})", {"root.alignment", noWord}},
        BadMember{R"({"type":"empty","accessibleName":1})", {"root.accessibleName", noText}},
        BadMember{R"({"type":"zstack","children":{}})", {"root.children", "It is not a list."}},
        BadMember{R"({"type":"zstack","children":null})", {"root.children", "It is not a list."}},
        BadMember{R"({"type":"zstack","children":[7]})",
                  {"root.children[0]", "It is not an object."}},
        BadMember{R"({"type":"foreground","colour":"red"})",
                  {"root.colour", "It is not an object."}},
        BadMember{R"({"type":"foreground","colour":{"name":1}})", {"root.colour.name", noText}},
        BadMember{R"({"type":"wholeRows","spacings":1})", {"root.spacings", "It is not a list."}},
        BadMember{R"({"type":"wholeRows","spacings":[]})", {"root.spacings", "It is empty."}},
        BadMember{R"({"type":"colourScheme","scheme":"sepia"})", {"root.scheme", noWord}},
        BadMember{R"({"type":"text","text":"a","fontSize":1,"lineLimit":"2"})",
                  {"root.lineLimit", noNumber}},
        BadMember{R"({"type":"text","text":"a","fontSize":1,"sizedWith":1})",
                  {"root.sizedWith", noText}},
        BadMember{R"({"type":"link","url":"example.net"})", {"root.url", "It is not a URL."}},
        BadMember{R"({"type":"link","url":"a:\u001b"})", {"root.url", "It is not a URL."}}));

INSTANTIATE_TEST_SUITE_P(
    OutOfBounds, ViewArchiveMember,
    testing::Values(
        BadMember{R"({"type":"circle","lineWidth":100001})", {"root.lineWidth", tooLarge}},
        BadMember{R"({"type":"circle","lineWidth":1e300})", {"root.lineWidth", tooLarge}},
        BadMember{R"({"type":"circle","lineWidth":18446744073709551615})",
                  {"root.lineWidth", tooLarge}},
        BadMember{R"({"type":"circle","lineWidth":-1})", {"root.lineWidth", tooSmall}},
        BadMember{R"({"type":"circle","lineWidth":1e999})", {"root.lineWidth", tooLarge}},
        BadMember{R"({"type":"circle","lineWidth":-1e999})", {"root.lineWidth", tooLarge}},
        BadMember{R"({"type":"circle","lineWidth":NaN})", {"root.lineWidth", "It is not JSON."}},
        BadMember{R"({"type":"circle","lineWidth":Infinity})",
                  {"root.lineWidth", "It is not JSON."}},
        BadMember{R"({"type":"circle","lineWidth":"unlimited"})", {"root.lineWidth", noNumber}},
        BadMember{R"({"type":"frame","width":"unlimited"})", {"root.width", noNumber}},
        BadMember{R"({"type":"frame","maximumWidth":"infinite"})", {"root.maximumWidth", noNumber}},
        BadMember{R"({"type":"frame","maximumHeight":1e5000})", {"root.maximumHeight", tooLarge}},
        BadMember{R"({"type":"offset","x":-100001})", {"root.x", tooSmall}},
        BadMember{R"({"type":"text","text":"a","fontSize":-1})", {"root.fontSize", tooSmall}},
        BadMember{R"({"type":"text","text":"a","fontSize":1,"minimumScale":1.5})",
                  {"root.minimumScale", tooLarge}},
        BadMember{R"({"type":"opacity","light":-0.1,"dark":1})", {"root.light", tooSmall}},
        BadMember{R"({"type":"symbol","name":"wifi","strength":1.01})",
                  {"root.strength", tooLarge}},
        BadMember{R"({"type":"text","text":"a","fontSize":1,"lineLimit":0})",
                  {"root.lineLimit", tooSmall}},
        BadMember{R"({"type":"text","text":"a","fontSize":1,"lineLimit":1001})",
                  {"root.lineLimit", tooLarge}},
        BadMember{R"({"type":"text","text":"a","fontSize":1,"lineLimit":1.5})",
                  {"root.lineLimit", "It is not a whole number."}},
        BadMember{R"({"type":"wholeGrid","columns":0})", {"root.columns", tooSmall}},
        BadMember{R"({"type":"wholeGrid","columns":17})", {"root.columns", tooLarge}},
        BadMember{R"({"type":"clip","cornerRadius":-1})", {"root.cornerRadius", tooSmall}}));

const char* const child = R"({"type":"empty"})";

INSTANTIATE_TEST_SUITE_P(
    WrongCountsOfChildren, ViewArchiveMember,
    testing::Values(
        BadMember{std::string(R"({"type":"empty","children":[)") + child + "]}",
                  {"root.children", "There must be no child."}},
        BadMember{R"({"type":"padding"})", {"root.children", "There must be one child."}},
        BadMember{R"({"type":"padding","children":[]})",
                  {"root.children", "There must be one child."}},
        BadMember{std::string(R"({"type":"padding","children":[)") + child + "," + child + "]}",
                  {"root.children", "There must be one child."}},
        BadMember{std::string(R"({"type":"background","children":[)") + child + "]}",
                  {"root.children", "There must be two children."}},
        BadMember{R"({"type":"firstThatFits","children":[]})",
                  {"root.children", "There must be at least one child."}}));

TEST(ViewArchiveFault, OfAMemberThatStandsTwice) {
  EXPECT_EQ(faultOf(archived(R"({"type":"circle","lineWidth":1,"lineWidth":2})")),
            (Fault{"root.lineWidth", "There are two members of this name."}));
  EXPECT_EQ(faultOf(archived(R"({"type":"empty","later":{"a":1,"\u0061":2}})")),
            (Fault{"root.later.a", "There are two members of this name."}));
}

std::string nested(std::size_t depth) {
  std::string json;
  for (std::size_t level = 1; level < depth; ++level) json += R"({"type":"zstack","children":[)";
  json += R"({"type":"zstack"})";
  for (std::size_t level = 1; level < depth; ++level) json += "]}";
  return archived(json);
}

TEST(ViewArchiveFault, OfATreeThatIsTooDeep) {
  EXPECT_EQ(faultOf(nested(deepestArchivedNode)).path, "none");
  EXPECT_EQ(faultOf(nested(deepestArchivedNode + 1)).sentence, "It is nested too deeply.");
}

TEST(ViewArchiveFault, OfNestingThatWouldExhaustAStack) {
  EXPECT_EQ(faultOf(std::string(4'000'000, '[')).sentence, "It is nested too deeply.");
  EXPECT_EQ(faultOf(nested(100'000)).sentence, "It is nested too deeply.");
  EXPECT_EQ(faultOf(archived(R"({"type":"empty","later":)" + std::string(1'000'000, '['))).sentence,
            "It is nested too deeply.");
}

std::string repeated(const std::string& element, std::size_t count) {
  std::string list = element;
  for (std::size_t index = 1; index < count; ++index) list.append(",").append(element);
  return list;
}

TEST(ViewArchiveFault, OfTooManyNodes) {
  const auto stack = [](std::size_t children) {
    return archived(R"({"type":"zstack","children":[)" + repeated(child, children) + "]}");
  };
  EXPECT_EQ(faultOf(stack(mostArchivedNodes - 1)).path, "none");
  EXPECT_EQ(faultOf(stack(mostArchivedNodes)),
            (Fault{"root.children[9999]", "There are too many nodes."}));
}

TEST(ViewArchiveFault, OfTooManyValuesAndMembers) {
  EXPECT_EQ(faultOf(R"({"later":[)" + repeated("0", 400'000) + "]}").sentence,
            "There are too many values.");
  std::string members;
  for (int index = 0; index < 100; ++index) members += "\"m" + std::to_string(index) + "\":0,";
  EXPECT_EQ(faultOf(archived("{" + members + R"("type":"empty"})")).sentence,
            "There are too many members.");
  EXPECT_EQ(faultOf(archived(R"({"type":"wholeRows","spacings":[)" + repeated("1", 17) + "]}")),
            (Fault{"root.spacings", "There are too many of them."}));
}

TEST(ViewArchiveFault, OfATextThatIsTooLong) {
  const auto symbolOf = [](std::size_t length) {
    return archived(R"({"type":"symbol","name":")" + std::string(length, 'x') + "\"}");
  };
  EXPECT_EQ(faultOf(symbolOf(longestArchivedText)).path, "none");
  EXPECT_EQ(faultOf(symbolOf(longestArchivedText + 1)),
            (Fault{"root.name", "The text is too long."}));
}

TEST(ViewArchiveFault, OfAnArchiveThatIsTooLong) {
  const std::string archive = archived(child);
  const std::string whole = archive + std::string(longestViewArchive - archive.size(), ' ');
  EXPECT_EQ(faultOf(whole).path, "none");
  EXPECT_EQ(faultOf(whole + ' '), (Fault{"", "It is too long."}));
}

TEST(ViewArchiveFault, SaysNothingThatATerminalWouldObey) {
  EXPECT_EQ(faultOf(archived(R"({"type":"empty","\u001b[2J":[1e999]})")),
            (Fault{"root. [2J[0]", "The number is too large."}));
}

// Every beginning of an archive is refused, and none of them stops the program.
TEST(ViewArchiveFault, OfAnArchiveThatIsCutShort) {
  for (const View& view : viewsOfEveryKind()) {
    const std::string json = archiveJson(view);
    for (std::size_t length = 0; length < json.size(); ++length) {
      ASSERT_EQ(faultOf(json.substr(0, length)).sentence, "It is not JSON.") << json << length;
    }
  }
}

}  // namespace
}  // namespace lanternfold
