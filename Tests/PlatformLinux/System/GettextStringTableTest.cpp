// Which language a gettext table speaks, and what it leaves alone.
#include <clocale>
#include <thread>

#include "PlatformLinux/System/GettextStringTable.h"
#include "Tests/PlatformLinux/Contracts/GettextCatalogue.h"

namespace lanternfold {
namespace {

class GettextStringTableTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(catalogue.add("it", "table", {{"Carrier", "Operatore"}}));
    ASSERT_TRUE(catalogue.add("de", "table", {{"Carrier", "Anbieter"}, {"Status", "Zustand"}}));
  }

  /// To be asked once per test: gettext remembers the answer, but not for another directory.
  [[nodiscard]] std::string carrierIn(const std::string& locale, const std::string& language) {
    const ScopedEnvironment scopedLocale("LC_ALL", locale);
    const ScopedEnvironment scopedLanguage("LANGUAGE", language);
    return GettextStringTable("table", catalogue.directory()).localized("Carrier");
  }

  GettextCatalogue catalogue;
};

TEST_F(GettextStringTableTest, LanguageOfTheEnvironment) {
  EXPECT_EQ(carrierIn("C.UTF-8", "it"), "Operatore");
}

TEST_F(GettextStringTableTest, AnotherLanguageOfTheEnvironment) {
  EXPECT_EQ(carrierIn("C.UTF-8", "de"), "Anbieter");
}

TEST_F(GettextStringTableTest, FirstLanguageThatHasACatalogue) {
  EXPECT_EQ(carrierIn("C.UTF-8", "fr:it:de"), "Operatore");
}

TEST_F(GettextStringTableTest, LanguagesInTheOrderOfPreference) {
  const ScopedEnvironment locale("LC_ALL", "C.UTF-8");
  const ScopedEnvironment language("LANGUAGE", "it:de");
  const GettextStringTable table("table", catalogue.directory());
  EXPECT_EQ(table.localized("Carrier"), "Operatore");
  EXPECT_EQ(table.localized("Status"), "Zustand") << "the second language has what the first lacks";
}

TEST_F(GettextStringTableTest, CountryFallsBackToTheLanguage) {
  EXPECT_EQ(carrierIn("C.UTF-8", "it_CH.UTF-8"), "Operatore");
}

TEST_F(GettextStringTableTest, LocaleThatIsNotInstalledStillFollowsTheLanguage) {
  EXPECT_EQ(carrierIn("xx_XX.UTF-8", "it"), "Operatore");
}

TEST_F(GettextStringTableTest, PlainCLocaleSpeaksTheKeys) {
  EXPECT_EQ(carrierIn("C", "it"), "Carrier");
}

TEST_F(GettextStringTableTest, LanguageWithoutACatalogueSpeaksTheKeys) {
  EXPECT_EQ(carrierIn("C.UTF-8", "fr"), "Carrier");
}

TEST_F(GettextStringTableTest, MissingDomainSpeaksTheKeys) {
  const ScopedEnvironment locale("LC_ALL", "C.UTF-8");
  const ScopedEnvironment language("LANGUAGE", "it");
  const GettextStringTable table("absent", catalogue.directory() / "nowhere");
  EXPECT_EQ(table.localized("Carrier"), "Carrier");
  EXPECT_EQ(table.localized(""), "");
}

TEST_F(GettextStringTableTest, DamagedCatalogueSpeaksTheKeys) {
  const auto file = catalogue.directory() / "it" / "LC_MESSAGES" / "table.mo";
  std::filesystem::resize_file(file, 20);
  EXPECT_EQ(carrierIn("C.UTF-8", "it"), "Carrier");
}

TEST_F(GettextStringTableTest, ProcessLocaleIsNeitherNeededNorChanged) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  EXPECT_EQ(carrierIn("C.UTF-8", "it"), "Operatore");
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
  EXPECT_EQ(uselocale(nullptr), LC_GLOBAL_LOCALE);
}

TEST_F(GettextStringTableTest, AnyThreadMayAsk) {
  const ScopedEnvironment locale("LC_ALL", "C.UTF-8");
  const ScopedEnvironment language("LANGUAGE", "it");
  const GettextStringTable table("table", catalogue.directory());
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

}  // namespace
}  // namespace lanternfold
