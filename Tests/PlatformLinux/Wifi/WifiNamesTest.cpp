#include "PlatformLinux/Wifi/SuiteNames.h"
#include "PlatformLinux/Wifi/WifiNames.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

std::string shown(std::string_view bytes) { return ssidText(textOnly(bytes)); }

TEST(WifiNames, Utf8StaysAsItIs) {
  for (const std::string text : {"cafe", "Caf\u00e9 \u2603", "\U0001F468\u200D\U0001F469",
                                 "<b>&amp;\"'", "a\\x41", " ", "\u65e5\u672c", "\u00a0"}) {
    EXPECT_EQ(shown(text), text);
  }
}

TEST(WifiNames, EverythingElseIsEscaped) {
  using namespace std::string_view_literals;
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"a\0b"sv, "a\\x00b"},
      {"a\nb\t"sv, "a\\x0ab\\x09"},
      {"\x1b[31m"sv, "\\x1b[31m"},
      {"\x7f"sv, "\\x7f"},
      {"\xc2\x85"sv, "\\xc2\\x85"},           // next line, a control character
      {"\xe2\x80\xa8"sv, "\\xe2\\x80\\xa8"},  // line separator
      {"\xff\xfe"sv, "\\xff\\xfe"},
      {"\xc3"sv, "\\xc3"},  // cut in a character
      {"\xc3(\xe2\x82"sv, "\\xc3(\\xe2\\x82"},
      {"\xc0\xaf"sv, "\\xc0\\xaf"},           // overlong
      {"\xed\xa0\x80"sv, "\\xed\\xa0\\x80"},  // surrogate
      {"\xf4\x90\x80\x80"sv, "\\xf4\\x90\\x80\\x80"},
      {""sv, ""},
  };
  for (const auto& [bytes, text] : cases) EXPECT_EQ(shown(bytes), text);
}

TEST(WifiNames, ANameThatTurnsTheWritingDirectionIsEscaped) {
  EXPECT_EQ(shown("caf\u202Egpj.e"), "caf\\xe2\\x80\\xaegpj.e");
  EXPECT_EQ(shown("\u2066a\u2069"), "\\xe2\\x81\\xa6a\\xe2\\x81\\xa9");
  EXPECT_EQ(shown("\u200F\u061C"), "\\xe2\\x80\\x8f\\xd8\\x9c");
}

TEST(WifiNames, EveryByteAloneGivesTextThatCanBeShown) {
  for (int byte = 0; byte < 256; ++byte) {
    const Bytes ssid(1, static_cast<std::uint8_t>(byte));
    const bool isPlain = byte >= 0x20 && byte < 0x7F;
    EXPECT_EQ(ssidText(ssid).size(), isPlain ? 1U : 4U) << byte;
  }
}

TEST(WifiNames, ANameOf32BadBytesIsFourTimesAsLong) {
  EXPECT_EQ(ssidText(Bytes(32, 0xFF)).size(), 128U);
}

TEST(WifiNames, AHardwareAddressIsLowerCasePairs) {
  EXPECT_EQ(hardwareAddressText({0x02, 0xAB, 0x00, 0x0F, 0xF0, 0x01}), "02:ab:00:0f:f0:01");
}

TEST(SuiteNames, NamesWhatIsKnownAndSpellsOutTheRest) {
  EXPECT_EQ(authenticationName(rsnSuite(8)), "SAE");
  EXPECT_EQ(authenticationName(wpaSuite(2)), "PSK");
  EXPECT_EQ(authenticationName(rsnSuite(99)), "00-0f-ac:99");
  EXPECT_EQ(cipherName(rsnSuite(9)), "GCMP-256");
  EXPECT_EQ(cipherName(wpaSuite(2)), "TKIP");
  EXPECT_EQ(cipherName(0xFFFFFFFF), "ff-ff-ff:255");
}

}  // namespace
}  // namespace lanternfold::test
