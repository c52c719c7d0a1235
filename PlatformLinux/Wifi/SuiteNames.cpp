#include "PlatformLinux/Wifi/SuiteNames.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>
#include <string_view>

namespace lanternfold {

namespace {

struct SuiteName {
  SuiteSelector suite;
  std::string_view name;
};

constexpr std::array<SuiteName, 29> authentications = {{
    {rsnSuite(1), "802.1X"},
    {rsnSuite(2), "PSK"},
    {rsnSuite(3), "FT-802.1X"},
    {rsnSuite(4), "FT-PSK"},
    {rsnSuite(5), "802.1X-SHA256"},
    {rsnSuite(6), "PSK-SHA256"},
    {rsnSuite(7), "TDLS"},
    {rsnSuite(8), "SAE"},
    {rsnSuite(9), "FT-SAE"},
    {rsnSuite(10), "AP-PEER-KEY"},
    {rsnSuite(11), "802.1X-SUITE-B"},
    {rsnSuite(12), "802.1X-SUITE-B-192"},
    {rsnSuite(13), "FT-802.1X-SHA384"},
    {rsnSuite(14), "FILS-SHA256"},
    {rsnSuite(15), "FILS-SHA384"},
    {rsnSuite(16), "FT-FILS-SHA256"},
    {rsnSuite(17), "FT-FILS-SHA384"},
    {rsnSuite(18), "OWE"},
    {rsnSuite(19), "FT-PSK-SHA384"},
    {rsnSuite(20), "PSK-SHA384"},
    {rsnSuite(21), "PASN"},
    {rsnSuite(22), "FT-802.1X-SHA384-UNRESTRICTED"},
    {rsnSuite(23), "802.1X-SHA384"},
    {rsnSuite(24), "SAE-EXT-KEY"},
    {rsnSuite(25), "FT-SAE-EXT-KEY"},
    {wpaSuite(1), "802.1X"},
    {wpaSuite(2), "PSK"},
    {0x00409600, "CCKM"},
    {0x506F9A02, "DPP"},
}};

constexpr std::array<SuiteName, 18> ciphers = {{
    {rsnSuite(0), "GROUP"},
    {rsnSuite(1), "WEP-40"},
    {rsnSuite(2), "TKIP"},
    {rsnSuite(4), "CCMP-128"},
    {rsnSuite(5), "WEP-104"},
    {rsnSuite(6), "BIP-CMAC-128"},
    {rsnSuite(7), "NO-GROUP-TRAFFIC"},
    {rsnSuite(8), "GCMP-128"},
    {rsnSuite(9), "GCMP-256"},
    {rsnSuite(10), "CCMP-256"},
    {rsnSuite(11), "BIP-GMAC-128"},
    {rsnSuite(12), "BIP-GMAC-256"},
    {rsnSuite(13), "BIP-CMAC-256"},
    {wpaSuite(0), "GROUP"},
    {wpaSuite(1), "WEP-40"},
    {wpaSuite(2), "TKIP"},
    {wpaSuite(4), "CCMP-128"},
    {wpaSuite(5), "WEP-104"},
}};

std::string nameIn(std::span<const SuiteName> table, SuiteSelector suite) {
  const auto row = std::ranges::find(table, suite, &SuiteName::suite);
  if (row != table.end()) return std::string(row->name);
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%02x-%02x-%02x:%u", suite >> 24U, suite >> 16U & 0xFFU,
                suite >> 8U & 0xFFU, suite & 0xFFU);
  return text.data();
}

}  // namespace

std::string authenticationName(SuiteSelector suite) { return nameIn(authentications, suite); }

std::string cipherName(SuiteSelector suite) { return nameIn(ciphers, suite); }

}  // namespace lanternfold
