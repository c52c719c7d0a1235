#include "PlatformLinux/Wifi/WifiSecurityMapping.h"

#include <algorithm>
#include <array>
#include <span>

namespace lanternfold {

namespace {

/// The ways in that a network may offer, as a set.
enum Way : unsigned {
  wpaPassword = 1U << 0U,
  rsnPassword = 1U << 1U,
  saePassword = 1U << 2U,
  wpaAccount = 1U << 3U,
  rsnAccount = 1U << 4U,
  wpa3Account = 1U << 5U,
  opportunistic = 1U << 6U,
  wepAccount = 1U << 7U,
};

constexpr unsigned passwords = wpaPassword | rsnPassword | saePassword;
constexpr unsigned accounts = wpaAccount | rsnAccount | wpa3Account;

struct SuiteWay {
  SuiteSelector suite;
  unsigned way;
};

// 7 (direct links), 10 (between access points) and 21 (ranging) are no ways into a network.
constexpr std::array<SuiteWay, 25> rsnWays = {{
    {rsnSuite(1), rsnAccount},      // 802.1X
    {rsnSuite(2), rsnPassword},     // PSK
    {rsnSuite(3), rsnAccount},      // FT over 802.1X
    {rsnSuite(4), rsnPassword},     // FT over PSK
    {rsnSuite(5), rsnAccount},      // 802.1X with SHA-256; see `isWpa3Only`
    {rsnSuite(6), rsnPassword},     // PSK with SHA-256
    {rsnSuite(8), saePassword},     // SAE
    {rsnSuite(9), saePassword},     // FT over SAE
    {rsnSuite(11), wpa3Account},    // Suite B
    {rsnSuite(12), wpa3Account},    // Suite B of 192 bits
    {rsnSuite(13), wpa3Account},    // FT over 802.1X with SHA-384
    {rsnSuite(14), rsnAccount},     // FILS with SHA-256
    {rsnSuite(15), rsnAccount},     // FILS with SHA-384
    {rsnSuite(16), rsnAccount},     // FT over FILS with SHA-256
    {rsnSuite(17), rsnAccount},     // FT over FILS with SHA-384
    {rsnSuite(18), opportunistic},  // OWE
    {rsnSuite(19), rsnPassword},    // FT over PSK with SHA-384
    {rsnSuite(20), rsnPassword},    // PSK with SHA-384
    {rsnSuite(22), wpa3Account},    // FT over 802.1X with SHA-384, any cipher
    {rsnSuite(23), wpa3Account},    // 802.1X with SHA-384
    {rsnSuite(24), saePassword},    // SAE with a key of the group's length
    {rsnSuite(25), saePassword},    // FT over SAE with a key of the group's length
    {0x00409600, rsnAccount},       // CCKM
    {wpaSuite(1), rsnAccount},      // 802.1X and PSK by the older numbers
    {wpaSuite(2), rsnPassword},
}};

constexpr std::array<SuiteWay, 5> wpaWays = {{
    {wpaSuite(1), wpaAccount},
    {wpaSuite(2), wpaPassword},
    {0x00409600, wpaAccount},
    {rsnSuite(1), wpaAccount},
    {rsnSuite(2), wpaPassword},
}};

unsigned waysOf(const SecurityElement& element, std::span<const SuiteWay> table) {
  unsigned ways = 0;
  for (const SuiteSelector suite : element.authentications) {
    const auto row = std::ranges::find(table, suite, &SuiteWay::suite);
    if (row != table.end()) ways |= row->way;
  }
  return ways;
}

/// WPA3 for accounts differs from WPA2 with the stronger hash only in that nothing older is let in:
/// management frames must be protected. Fast roaming, which has the stronger hash in any case, may
/// stand beside it.
bool isWpa3Only(const SecurityElement& rsn) {
  const auto isStrong = [](SuiteSelector suite) { return suite == rsnSuite(5); };
  return rsn.requiresManagementProtection && std::ranges::any_of(rsn.authentications, isStrong) &&
         std::ranges::all_of(rsn.authentications, [&](SuiteSelector suite) {
           return isStrong(suite) || suite == rsnSuite(3);
         });
}

bool usesOnlyWep(const SecurityElement& wpa) {
  return std::ranges::all_of(wpa.pairwiseCiphers, [](SuiteSelector cipher) {
    return cipher == wpaSuite(1) || cipher == wpaSuite(5);
  });
}

unsigned rsnWaysOf(const SecurityElement& rsn) {
  return isWpa3Only(rsn) ? unsigned{wpa3Account} : waysOf(rsn, rsnWays);
}

unsigned wpaWaysOf(const SecurityElement& wpa) {
  const unsigned ways = waysOf(wpa, wpaWays);
  return ways == wpaAccount && usesOnlyWep(wpa) ? unsigned{wepAccount} : ways;
}

struct SecurityRow {
  unsigned ways;
  WifiSecurity security;
};

constexpr std::array<SecurityRow, 11> rows = {{
    {wpaPassword, WifiSecurity::wpaPersonal},
    {wpaPassword | rsnPassword, WifiSecurity::wpaPersonalMixed},
    {rsnPassword, WifiSecurity::wpa2Personal},
    {rsnPassword | saePassword, WifiSecurity::wpa3Transition},
    {saePassword, WifiSecurity::wpa3Personal},
    {wpaAccount, WifiSecurity::wpaEnterprise},
    {wpaAccount | rsnAccount, WifiSecurity::wpaEnterpriseMixed},
    {rsnAccount, WifiSecurity::wpa2Enterprise},
    {wpa3Account, WifiSecurity::wpa3Enterprise},
    {opportunistic, WifiSecurity::owe},
    {wepAccount, WifiSecurity::dynamicWep},
}};

WifiSecurity securityOfWays(unsigned ways) {
  const auto row = std::ranges::find(rows, ways, &SecurityRow::ways);
  if (row != rows.end()) return row->security;
  if (ways != 0 && (ways & ~passwords) == 0) return WifiSecurity::personal;
  if (ways != 0 && (ways & ~accounts) == 0) return WifiSecurity::enterprise;
  return WifiSecurity::unknown;
}

}  // namespace

WifiSecurity securityOf(const InformationElements& elements, bool hasPrivacy) {
  if (elements.isDamaged && !elements.rsn) return WifiSecurity::unknown;
  if (!elements.rsn && !elements.wpa) {
    // Every network sends the element of the name, be it empty: these are no elements at all.
    if (!elements.ssid) return WifiSecurity::unknown;
    // Nothing but the bit tells of the oldest protection.
    if (hasPrivacy) return WifiSecurity::wep;
    return elements.isOweTransition ? WifiSecurity::oweTransition : WifiSecurity::none;
  }
  unsigned ways = elements.rsn ? rsnWaysOf(*elements.rsn) : 0;
  if (elements.wpa) ways |= wpaWaysOf(*elements.wpa);
  const WifiSecurity security = securityOfWays(ways);
  return security == WifiSecurity::owe && elements.isOweTransition ? WifiSecurity::oweTransition
                                                                   : security;
}

}  // namespace lanternfold
