// Command lines that were mistyped, and the one sentence that each of them gets.
#include <sstream>

#include <gtest/gtest.h>

#include "CommandLine/Program.h"
#include "Tests/CommandLine/FakeMachine.h"

namespace lanternfold {
namespace {

using Arguments = std::vector<std::string>;

class ArgumentFaultsTest : public testing::Test {
 protected:
  ExitStatus run(const Arguments& arguments) {
    errors_.str({});
    return runProgram(arguments, {.output = output_, .errors = errors_},
                      [this](const MachineOptions&) -> const Machine& { return fake_.machine; });
  }
  /// What stands behind the program's name; status 2 is expected.
  std::string sentence(const Arguments& arguments) {
    EXPECT_EQ(run(arguments), ExitStatus::badArguments) << testing::PrintToString(arguments);
    const std::string begin = "lanternfold-widgets: ";
    const std::string line = errors_.str();
    EXPECT_THAT(line, testing::AllOf(testing::StartsWith(begin), testing::EndsWith("\n")));
    return line.size() < begin.size() ? line
                                      : line.substr(begin.size(), line.size() - begin.size() - 1);
  }
  static Arguments render(const Arguments& more) {
    Arguments all = {"render", "NetworkAdapterWidget", "-o", "/nowhere/at/all.png"};
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }

  FakeMachine fake_;
  std::ostringstream output_;
  std::ostringstream errors_;
};

const std::string wholeSeconds = "a whole number of seconds from 1 to 86400";

TEST_F(ArgumentFaultsTest, AnIntervalIsAPlainWholeNumberInItsRange) {
  for (const char* text : {"", " ", "0x5", " 5", "5 ", "5.0", "+5", "-1", "5e0", "0", "86401",
                           "abc", "nan", "99999999999999999999999"}) {
    const std::string expected = "--interval takes " + wholeSeconds + ", not \"" + text + "\"";
    EXPECT_EQ(sentence({"record", "--interval", text}), expected);
    EXPECT_EQ(sentence({"record", std::string("--interval=") + text}), expected);
  }
}

TEST_F(ArgumentFaultsTest, TheBoundsOfAnIntervalAreTaken) {
  for (const char* text : {"1", "86400", "010"}) {
    EXPECT_EQ(run({"record", "--json", "--interval", text}), ExitStatus::done) << errors_.str();
    EXPECT_EQ(run({"record", "--json", std::string("--interval=") + text}), ExitStatus::done);
  }
}

TEST_F(ArgumentFaultsTest, AScaleIsAPlainNumberInItsRange) {
  for (const char* text :
       {"", "0x2", " 2", "+2", "-2", "2.", ".5", "2e0", "0.4", "8.1", "two", "nan"}) {
    EXPECT_EQ(sentence(render({"--scale", text})),
              std::string("--scale takes a number from 0.5 to 8, such as 2 or 1.5, not \"") + text +
                  "\"");
  }
}

TEST_F(ArgumentFaultsTest, AValueThatIsMissingAtTheEnd) {
  EXPECT_EQ(sentence({"record", "--interval"}),
            "--interval needs " + wholeSeconds + ", and nothing follows it");
  EXPECT_EQ(sentence({"render", "NetworkAdapterWidget", "-o"}),
            "--output needs a file's name that ends in .png, .svg or .pdf, and nothing follows it");
}

TEST_F(ArgumentFaultsTest, TheNextOptionIsNoValue) {
  EXPECT_EQ(sentence({"record", "--interval", "--json"}),
            "--interval needs " + wholeSeconds + ", and \"--json\" follows it");
  EXPECT_EQ(sentence({"state", "--data-dir", "--json"}),
            "--data-dir needs a folder's name, and \"--json\" follows it");
  EXPECT_EQ(sentence({"render", "NetworkAdapterWidget", "--adapter", "-o", "a.png"}),
            "--adapter needs an interface's name, and \"-o\" follows it");
}

TEST_F(ArgumentFaultsTest, EveryOptionWithAValueSaysWhatItTakes) {
  const std::vector<std::pair<std::string, Arguments>> options = {
      {"interfaces", {"--prefix", "--excluding", "--data-dir", "--app-group"}},
      {"state", {"--categories", "--data-dir", "--app-group"}},
      {"record", {"--interval", "--data-dir", "--app-group"}},
      {"render",
       {"--family", "--scheme", "--scale", "--entry", "--adapter", "--output", "--data-dir",
        "--app-group"}}};
  for (const auto& [command, names] : options) {
    for (const std::string& name : names) {
      const std::string missing = sentence({command, name});
      EXPECT_THAT(missing, testing::AllOf(testing::StartsWith(name + " needs "),
                                          testing::EndsWith(", and nothing follows it")));
      // The library's own names of types are in capitals.
      EXPECT_EQ(missing.find("TEXT"), std::string::npos) << missing;
      EXPECT_EQ(sentence({command, name, "1", name, "1"}), name + " was given twice; give it once");
    }
  }
}

TEST_F(ArgumentFaultsTest, AnEmptyValueIsNotTheNextArgument) {
  EXPECT_EQ(run({"interfaces", "--prefix=", "--json"}), ExitStatus::done) << errors_.str();
  EXPECT_EQ(output_.str(), "[]\n");
  EXPECT_EQ(sentence({"state", "--data-dir=", "--json"}),
            "--data-dir needs a folder's name, not \"\"");
}

TEST_F(ArgumentFaultsTest, AnOptionGivenTwiceUnderTwoNames) {
  EXPECT_EQ(sentence(render({"--output=b.png"})), "--output was given twice; give it once");
}

TEST_F(ArgumentFaultsTest, ASwitchMayBeRepeatedButTakesNoValue) {
  EXPECT_EQ(run({"interfaces", "--json", "--json"}), ExitStatus::done);
  for (const char* value : {"abc", "true", "1", ""}) {
    EXPECT_EQ(sentence({"interfaces", std::string("--json=") + value}),
              std::string("--json takes no value, and was given \"") + value + "\"");
  }
}

TEST_F(ArgumentFaultsTest, UnknownOptionsAreNamedWithoutTheirValue) {
  const std::string where = "; \"lanternfold-widgets record --help\" lists what it takes";
  for (const char* name : {"--bogus", "--intervall", "-x", "---", "--Json"}) {
    EXPECT_EQ(sentence({"record", name}), std::string("unknown option \"") + name + "\"" + where);
  }
  EXPECT_EQ(sentence({"record", "--bogus=7"}), "unknown option \"--bogus\"" + where);
}

TEST_F(ArgumentFaultsTest, AnOptionBeforeTheCommandIsToldWhereItBelongs) {
  EXPECT_EQ(sentence({"--json", "record"}),
            "unknown option \"--json\"; options come behind the command; \"lanternfold-widgets "
            "--help\" lists the commands");
}

TEST_F(ArgumentFaultsTest, UnknownCommands) {
  EXPECT_EQ(sentence({"recrod"}),
            "unknown command \"recrod\"; \"lanternfold-widgets --help\" lists the commands");
  EXPECT_EQ(sentence({""}),
            "unknown command \"\"; \"lanternfold-widgets --help\" lists the commands");
  EXPECT_EQ(sentence({}),
            "no command was given; \"lanternfold-widgets --help\" lists the commands");
}

TEST_F(ArgumentFaultsTest, AnArgumentTooMany) {
  for (const Arguments& arguments :
       {Arguments{"record", "eth0"}, {"record", "--", "eth0"}, {"record", "--json", "eth0"}}) {
    EXPECT_EQ(sentence(arguments),
              "unexpected argument \"eth0\"; \"lanternfold-widgets record --help\" lists what it "
              "takes");
  }
  EXPECT_THAT(sentence(render({"more"})), testing::StartsWith("unexpected argument \"more\""));
  EXPECT_THAT(sentence({"record", "state"}), testing::StartsWith("unexpected argument \"state\""));
  EXPECT_THAT(sentence({"interfaces", "--excluding", "en0", "en1"}),
              testing::StartsWith("unexpected argument \"en1\""));
  EXPECT_THAT(sentence({"record", "++"}), testing::StartsWith("unexpected argument \"++\""));
}

TEST_F(ArgumentFaultsTest, WhatACommandCannotDoWithout) {
  EXPECT_EQ(sentence({"render"}),
            "render needs KIND, a widget's kind: PanoramicNetworkStateWidget, "
            "InternetNetworkStateWidget, NetworkAdapterWidget, BandwidthMonitorWidget or "
            "WlanNetworkStateWidget");
  EXPECT_EQ(sentence({"render", "NetworkAdapterWidget"}),
            "render needs --output FILE, a file's name that ends in .png, .svg or .pdf");
}

TEST_F(ArgumentFaultsTest, WhatWasGivenIsEscapedAndCut) {
  const std::string given = "\x1b[31m" + std::string(100'000, 'a') + "\n";
  for (const Arguments& arguments : {Arguments{"record", "--interval", given},
                                     {given},
                                     {"record", given},
                                     {"record", "--" + given},
                                     {"state", "--categories", given},
                                     {"interfaces", "--app-group", given},
                                     {"interfaces", "--json=" + given},
                                     render({"--family", given}),
                                     render({"--scheme", given}),
                                     render({"--entry", given}),
                                     render({"--scale", given}),
                                     {"render", given, "-o", "a.png"},
                                     {"render", "NetworkAdapterWidget", "-o", given}}) {
    const std::string said = sentence(arguments);
    EXPECT_THAT(said,
                testing::AllOf(testing::HasSubstr("\\x1b[31maaa"), testing::HasSubstr("\u2026\"")));
    EXPECT_LT(said.size(), 300U);
  }
}

TEST_F(ArgumentFaultsTest, HelpIsGivenWhateverElseIsWrong) {
  EXPECT_EQ(run({"record", "--bogus", "--help"}), ExitStatus::done);
  EXPECT_THAT(output_.str(), testing::HasSubstr("--interval SECONDS"));
}

}  // namespace
}  // namespace lanternfold
