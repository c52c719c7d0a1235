// What a gettext table speaks, and what it leaves alone.
#include <clocale>
#include <cstdlib>
#include <fstream>
#include <locale.h>
#include <thread>

#include "PlatformLinux/System/GettextStringTable.h"
#include "Tests/PlatformLinux/Contracts/GettextCatalogue.h"

namespace lanternfold {
namespace {

UserLanguage language(const std::string& name) {
  return {.catalogue = name, .dateLocale = name, .numberLocale = name};
}

/// LANGUAGE is the process's: each test puts back what it found.
class GettextStringTableTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(catalogue.add("it", "table", {{"Carrier", "Operatore"}}));
    ASSERT_TRUE(catalogue.add("de", "table", {{"Carrier", "Anbieter"}, {"Status", "Zustand"}}));
  }

  /// To be asked once per test: gettext remembers the answer, but not for another directory.
  [[nodiscard]] std::string carrierIn(const std::string& name) {
    makeGettextSpeak(language(name));
    return GettextStringTable("table", catalogue.directory(), language(name)).localized("Carrier");
  }

  const ScopedEnvironment languages{"LANGUAGE", std::nullopt};
  GettextCatalogue catalogue;
};

TEST_F(GettextStringTableTest, SpeaksTheLanguage) { EXPECT_EQ(carrierIn("it"), "Operatore"); }

TEST_F(GettextStringTableTest, SpeaksAnotherLanguage) { EXPECT_EQ(carrierIn("de"), "Anbieter"); }

TEST_F(GettextStringTableTest, LocaleOfTheProcessSaysNothing) {
  for (const char* name : {"C", "POSIX", "xx_XX.UTF-8", "de_DE.UTF-8", ""}) {
    const ScopedEnvironment locale("LC_ALL", name);
    EXPECT_EQ(carrierIn("it"), "Operatore") << name;
  }
}

TEST_F(GettextStringTableTest, EnglishIsTheKeysWhateverTheEnvironment) {
  const ScopedEnvironment locale("LC_ALL", "de_DE.UTF-8");
  const ScopedEnvironment german("LANGUAGE", "de");
  EXPECT_EQ(GettextStringTable("table", catalogue.directory(), {}).localized("Carrier"), "Carrier");
}

TEST_F(GettextStringTableTest, EnglishLeavesTheEnvironmentAlone) {
  const ScopedEnvironment german("LANGUAGE", "pl:sv");
  makeGettextSpeak({});
  EXPECT_STREQ(std::getenv("LANGUAGE"), "pl:sv");
}

TEST_F(GettextStringTableTest, OnlyTheLanguageThatWasChosenIsSpoken) {
  const ScopedEnvironment both("LANGUAGE", "it:de");
  makeGettextSpeak(language("it"));
  const GettextStringTable table("table", catalogue.directory(), language("it"));
  EXPECT_EQ(table.localized("Carrier"), "Operatore");
  EXPECT_EQ(table.localized("Status"), "Status") << "no second language among the first one's";
}

TEST_F(GettextStringTableTest, MissingCatalogueSpeaksTheKeys) {
  EXPECT_EQ(carrierIn("fr"), "Carrier");
}

TEST_F(GettextStringTableTest, MissingDomainSpeaksTheKeys) {
  makeGettextSpeak(language("it"));
  const GettextStringTable table("absent", catalogue.directory() / "nowhere", language("it"));
  EXPECT_EQ(table.localized("Carrier"), "Carrier");
  EXPECT_EQ(table.localized(""), "");
}

TEST_F(GettextStringTableTest, DamagedCatalogueSpeaksTheKeys) {
  const auto file = catalogue.directory() / "it" / "LC_MESSAGES" / "table.mo";
  std::filesystem::resize_file(file, 20);
  EXPECT_EQ(carrierIn("it"), "Carrier");
}

TEST_F(GettextStringTableTest, WritesNumbersAsTheLanguageDoes) {
  const GettextStringTable table("table", catalogue.directory(), language("it"));
  EXPECT_EQ(table.localizedDecimal("1.25"), "1,25");
  EXPECT_EQ(GettextStringTable("table", catalogue.directory(), {}).localizedDecimal("1.25"),
            "1.25");
}

TEST_F(GettextStringTableTest, ProcessLocaleIsNeitherNeededNorChanged) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  EXPECT_EQ(carrierIn("it"), "Operatore");
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
  EXPECT_EQ(uselocale(nullptr), LC_GLOBAL_LOCALE);
}

TEST_F(GettextStringTableTest, AnyThreadMayAsk) {
  makeGettextSpeak(language("it"));
  const GettextStringTable table("table", catalogue.directory(), language("it"));
  std::vector<std::string> texts(4);
  std::vector<std::thread> threads;
  for (std::string& text : texts) {
    threads.emplace_back([&table, &text] {
      for (int count = 0; count < 500; ++count) text = table.localized("Carrier");
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(texts, testing::Each("Operatore"));
}

TEST_F(GettextStringTableTest, CatalogueIsAFileOfItsDomain) {
  EXPECT_TRUE(hasGettextCatalogue(catalogue.directory(), "table", "it"));
  EXPECT_FALSE(hasGettextCatalogue(catalogue.directory(), "table", "fr"));
  EXPECT_FALSE(hasGettextCatalogue(catalogue.directory(), "other", "it"));
  EXPECT_FALSE(hasGettextCatalogue(catalogue.directory() / "nowhere", "table", "it"));
}

TEST(LocaleEnvironmentTest, IsWhatTheVariablesSay) {
  const ScopedEnvironment language("LANGUAGE", "fr:de");
  const ScopedEnvironment all("LC_ALL", std::nullopt);
  const ScopedEnvironment messages("LC_MESSAGES", "it_IT");
  const ScopedEnvironment time("LC_TIME", "de_AT");
  const ScopedEnvironment numeric("LC_NUMERIC", "de_CH");
  const ScopedEnvironment lang("LANG", "");
  EXPECT_EQ(localeEnvironmentOfProcess(), (LocaleEnvironment{.language = "fr:de",
                                                             .all = "",
                                                             .messages = "it_IT",
                                                             .time = "de_AT",
                                                             .numeric = "de_CH",
                                                             .lang = ""}));
}

}  // namespace
}  // namespace lanternfold
