#include <set>

#include <gtest/gtest.h>

#include "Support/UserLanguage.h"

namespace lanternfold {
namespace {

const std::set<std::string> catalogues{"ar", "de", "es", "fr", "it", "ja", "ru", "zh_CN"};

UserLanguage chosen(const LocaleEnvironment& environment) {
  return userLanguage(environment,
                      [](const std::string& name) { return catalogues.contains(name); });
}

std::string catalogueFor(const LocaleEnvironment& environment) {
  return chosen(environment).catalogue;
}

TEST(UserLanguage, EmptyEnvironmentSpeaksEnglish) {
  EXPECT_EQ(chosen({}), (UserLanguage{.catalogue = "", .dateLocale = "en", .numberLocale = "en"}));
}

TEST(UserLanguage, IsThatOfTheLocale) {
  EXPECT_EQ(chosen({.lang = "de_DE.UTF-8"}),
            (UserLanguage{.catalogue = "de", .dateLocale = "de_DE", .numberLocale = "de_DE"}));
  EXPECT_EQ(chosen({.all = "ja_JP.UTF-8"}),
            (UserLanguage{.catalogue = "ja", .dateLocale = "ja_JP", .numberLocale = "ja_JP"}));
}

TEST(UserLanguage, EncodingAndModifierSayNothing) {
  for (const char* name :
       {"de_DE", "de_DE.UTF-8", "de_DE.ISO-8859-1@euro", "de_DE@euro", "de-DE"}) {
    EXPECT_EQ(chosen({.lang = name}).catalogue, "de") << name;
    EXPECT_EQ(chosen({.lang = name}).dateLocale, "de_DE") << name;
  }
}

TEST(UserLanguage, LocaleWithoutARegionHasNone) {
  EXPECT_EQ(chosen({.lang = "fr"}),
            (UserLanguage{.catalogue = "fr", .dateLocale = "fr", .numberLocale = "fr"}));
}

TEST(UserLanguage, LcAllGoesBeforeLcMessagesBeforeLang) {
  EXPECT_EQ(catalogueFor({.all = "it_IT", .messages = "fr_FR", .lang = "de_DE"}), "it");
  EXPECT_EQ(catalogueFor({.messages = "fr_FR", .lang = "de_DE"}), "fr");
}

TEST(UserLanguage, LanguageGoesBeforeTheLocales) {
  EXPECT_EQ(catalogueFor({.language = "fr:de", .all = "it_IT"}), "fr");
  EXPECT_EQ(catalogueFor({.language = "fr:de", .lang = "C.UTF-8"}), "fr");
}

TEST(UserLanguage, FirstPreferenceThatHasACatalogue) {
  EXPECT_EQ(catalogueFor({.language = "pl:sv:it:de", .lang = "C.UTF-8"}), "it");
}

TEST(UserLanguage, LanguageIsNotAskedInPlainC) {
  for (const char* name : {"", "C", "POSIX"}) {
    EXPECT_EQ(catalogueFor({.language = "fr", .lang = name}), "") << name;
    EXPECT_EQ(catalogueFor({.language = "fr", .all = name, .lang = name}), "") << name;
  }
  EXPECT_EQ(catalogueFor({.language = "fr", .all = "C", .lang = "de_DE"}), "");
}

TEST(UserLanguage, PlainCAmongThePreferencesEndsThem) {
  EXPECT_EQ(catalogueFor({.language = "pl:C:de", .lang = "de_DE"}), "");
  EXPECT_EQ(catalogueFor({.language = "pl:POSIX:de", .lang = "de_DE"}), "");
}

TEST(UserLanguage, EnglishAmongThePreferencesIsSpoken) {
  EXPECT_EQ(catalogueFor({.language = "en:de", .lang = "de_DE"}), "");
  EXPECT_EQ(catalogueFor({.language = "pl:en_GB:de", .lang = "de_DE"}), "");
}

TEST(UserLanguage, AnyRegionOfALanguageIsServed) {
  EXPECT_EQ(chosen({.lang = "de_AT.UTF-8"}),
            (UserLanguage{.catalogue = "de", .dateLocale = "de_AT", .numberLocale = "de_AT"}));
  EXPECT_EQ(catalogueFor({.lang = "es_419"}), "es");
  EXPECT_EQ(catalogueFor({.lang = "ar_MA"}), "ar");
}

TEST(UserLanguage, CatalogueOfTheRegionGoesBeforeThatOfTheLanguage) {
  const auto both = [](const std::string& name) { return name == "pt" || name == "pt_BR"; };
  EXPECT_EQ(userLanguage({.lang = "pt_BR"}, both).catalogue, "pt_BR");
  EXPECT_EQ(userLanguage({.lang = "pt_PT"}, both).catalogue, "pt");
}

TEST(UserLanguage, SimplifiedChineseByAnyOfItsNames) {
  for (const char* name : {"zh_CN", "zh_CN.GB18030", "zh", "zh_Hans", "zh-Hans-CN", "zh_SG"}) {
    EXPECT_EQ(catalogueFor({.lang = name}), "zh_CN") << name;
  }
}

TEST(UserLanguage, TraditionalChineseIsAnotherLanguageToRead) {
  for (const char* name : {"zh_TW", "zh_HK.UTF-8", "zh_Hant", "zh_Hant_CN"}) {
    EXPECT_EQ(catalogueFor({.lang = name}), "") << name;
  }
}

TEST(UserLanguage, AnotherScriptOfALanguageIsAnotherLanguageToRead) {
  EXPECT_EQ(catalogueFor({.lang = "ar_Latn_EG"}), "");
}

TEST(UserLanguage, NeighbouringLanguageIsNoSubstitute) {
  for (const char* name : {"uk_UA", "ca_ES", "nds_DE", "br_FR", "gsw_CH"}) {
    EXPECT_EQ(catalogueFor({.lang = name}), "") << name;
  }
}

TEST(UserLanguage, WithoutACatalogueIsEnglishInTheUsersRegion) {
  EXPECT_EQ(chosen({.lang = "pl_PL.UTF-8"}),
            (UserLanguage{.catalogue = "", .dateLocale = "en_PL", .numberLocale = "en_PL"}));
  EXPECT_EQ(chosen({.lang = "tlh"}), UserLanguage{});
}

TEST(UserLanguage, DatesAndNumbersTakeTheRegionsOfTheirCategories) {
  EXPECT_EQ(chosen({.time = "de_AT", .numeric = "de_CH", .lang = "de_DE"}),
            (UserLanguage{.catalogue = "de", .dateLocale = "de_AT", .numberLocale = "de_CH"}));
  EXPECT_EQ(chosen({.all = "de_DE", .time = "de_AT", .numeric = "de_CH"}),
            (UserLanguage{.catalogue = "de", .dateLocale = "de_DE", .numberLocale = "de_DE"}));
}

TEST(UserLanguage, DatesOfAnotherLanguageGiveTheirRegionAlone) {
  EXPECT_EQ(chosen({.time = "en_GB.UTF-8", .lang = "de_DE.UTF-8"}).dateLocale, "de_GB");
  EXPECT_EQ(chosen({.messages = "C", .lang = "de_DE.UTF-8"}),
            (UserLanguage{.catalogue = "", .dateLocale = "en_DE", .numberLocale = "en_DE"}));
}

TEST(UserLanguage, RegionOfThePreferenceServesWhereNoCategoryHasOne) {
  EXPECT_EQ(chosen({.language = "de_AT", .lang = "C.UTF-8"}).dateLocale, "de_AT");
  EXPECT_EQ(chosen({.language = "de_AT", .time = "C", .lang = "de_CH"}).dateLocale, "de_AT");
  EXPECT_EQ(chosen({.language = "de", .lang = "C.UTF-8"}).dateLocale, "de");
}

TEST(UserLanguage, RegionThatWritesTheLanguageInAnotherScriptKeepsTheScript) {
  EXPECT_EQ(chosen({.language = "zh_CN", .lang = "zh_TW"}).dateLocale, "zh_Hans_TW");
  EXPECT_EQ(chosen({.lang = "zh_CN"}).dateLocale, "zh_CN");
  EXPECT_EQ(chosen({.lang = "zh_SG"}).dateLocale, "zh_SG");
}

TEST(UserLanguage, ArabicIsWrittenFromRightToLeft) {
  EXPECT_TRUE(chosen({.lang = "ar_EG"}).isRightToLeft);
  for (const auto& name : {"de", "ja", "ru", "zh_CN", "en", "C"}) {
    EXPECT_FALSE(chosen({.lang = name}).isRightToLeft) << name;
  }
}

TEST(UserLanguage, EnglishInARegionOfRightToLeftWritingIsWrittenFromTheLeft) {
  EXPECT_FALSE(chosen({.lang = "he_IL"}).isRightToLeft) << "there is no catalogue for it";
  EXPECT_EQ(chosen({.lang = "he_IL"}).dateLocale, "en_IL");
}

TEST(UserLanguage, NoLocalesNameIsNoPreference) {
  for (const char* name : {"../../etc", "/etc/passwd", "de DE", "\xC3\xA4\xC3\xB6", "___", ".", "@",
                           "12345", ":::", "%n%s", "de/DE"}) {
    EXPECT_EQ(chosen({.lang = name}), UserLanguage{}) << name;
    EXPECT_EQ(chosen({.language = std::string(name) + ":it", .lang = "C.UTF-8"}).catalogue, "it")
        << name;
  }
}

TEST(UserLanguage, VeryLongValuesAreBounded) {
  const std::string name(100'000, 'x');
  EXPECT_EQ(chosen({.all = name, .lang = name}), UserLanguage{});
  std::string list;
  for (int count = 0; count < 100'000; ++count) list += "pl:";
  int questions = 0;
  const auto counted = [&questions](const std::string&) {
    ++questions;
    return false;
  };
  EXPECT_EQ(userLanguage({.language = list + "de", .lang = "C.UTF-8"}, counted), UserLanguage{});
  EXPECT_LE(questions, 100);
}

TEST(UserLanguage, AsksForNamesOfFilesThatStayInTheFolder) {
  const auto isHarmless = [](const std::string& name) {
    EXPECT_EQ(
        name.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789"),
        std::string::npos)
        << name;
    return false;
  };
  EXPECT_EQ(userLanguage({.language = "../x:a/b:..:de_DE/..:zh_Hans-../CN", .lang = "x_../Y"},
                         isHarmless),
            UserLanguage{});
}

}  // namespace
}  // namespace lanternfold
