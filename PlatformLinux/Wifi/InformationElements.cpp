#include "PlatformLinux/Wifi/InformationElements.h"

#include <algorithm>
#include <array>

#include "PlatformLinux/Netlink/ByteReader.h"

namespace lanternfold {

namespace {

constexpr std::size_t longestSsid = 32;
constexpr std::uint8_t extensionElement = 255;
constexpr std::uint8_t vendorElement = 221;

using Body = std::span<const std::uint8_t>;

/// What is noted of the elements while they are walked.
struct Walked {
  InformationElements elements;
  unsigned announcements = 0;  // bits of `Announcement`
  bool hasRates = false;
  bool hasNewerRates = false;
};

/// The elements that tell a generation.
enum class Announcement : unsigned {
  htCapabilities = 1U << 0U,
  htOperation = 1U << 1U,
  vhtCapabilities = 1U << 2U,
  vhtOperation = 1U << 3U,
  heCapabilities = 1U << 4U,
  heOperation = 1U << 5U,
  ehtCapabilities = 1U << 6U,
  ehtOperation = 1U << 7U,
};

template <Announcement announcement>
void note(Body, Walked& walked) {
  walked.announcements |= static_cast<unsigned>(announcement);
}

void readSsid(Body body, Walked& walked) {
  if (!walked.elements.ssid) walked.elements.ssid.emplace(body.begin(), body.end());
}

/// The rates of 802.11b in units of 500 kbit/s, without the bit that marks a mandatory one.
bool isOldestRate(std::uint8_t rate) {
  static constexpr std::array<unsigned, 4> oldest = {2, 4, 11, 22};
  return std::ranges::find(oldest, rate & 0x7FU) != oldest.end();
}

// The numbers from 122 on are no rates, but what a station must be able to do.
bool isMembershipSelector(std::uint8_t rate) {
  return (rate & 0x80U) != 0 && (rate & 0x7FU) >= 122;
}

void readRates(Body body, Walked& walked) {
  for (const std::uint8_t rate : body) {
    if (isMembershipSelector(rate)) continue;
    walked.hasRates = true;
    walked.hasNewerRates = walked.hasNewerRates || !isOldestRate(rate);
  }
}

using SecurityDecoder = std::expected<SecurityElement, DecodeError> (*)(Body);

void readSecurity(Body body, SecurityDecoder decode, std::optional<SecurityElement>& element,
                  bool& isDamaged) {
  if (element) return;
  auto decoded = decode(body);
  if (decoded) {
    element = *std::move(decoded);
  } else {
    isDamaged = true;
  }
}

void readRsn(Body body, Walked& walked) {
  readSecurity(body, decodeRsnElement, walked.elements.rsn, walked.elements.isDamaged);
}

void readWpa(Body body, Walked& walked) {
  readSecurity(body, decodeWpaElement, walked.elements.wpa, walked.elements.isDamaged);
}

void readOweTransition(Body, Walked& walked) { walked.elements.isOweTransition = true; }

struct ElementRule {
  std::uint32_t identifier;  // of the element, of the extension, or of vendor and type
  std::size_t shortest;      // bytes of the body, behind the identifier
  std::size_t longest;
  void (*read)(Body, Walked&);
};

constexpr std::size_t anyLength = 255;

constexpr std::array<ElementRule, 8> elementRules = {{
    {0, 0, longestSsid, readSsid},
    {1, 1, anyLength, readRates},
    {45, 26, anyLength, note<Announcement::htCapabilities>},
    {48, 0, anyLength, readRsn},
    {50, 1, anyLength, readRates},
    {61, 22, anyLength, note<Announcement::htOperation>},
    {191, 12, anyLength, note<Announcement::vhtCapabilities>},
    {192, 5, anyLength, note<Announcement::vhtOperation>},
}};

constexpr std::array<ElementRule, 4> extensionRules = {{
    {35, 21, anyLength, note<Announcement::heCapabilities>},
    {36, 6, anyLength, note<Announcement::heOperation>},
    {106, 5, anyLength, note<Announcement::ehtOperation>},
    {108, 11, anyLength, note<Announcement::ehtCapabilities>},
}};

constexpr std::array<ElementRule, 2> vendorRules = {{
    {0x0050F201, 0, anyLength, readWpa},
    {0x506F9A1C, 0, anyLength, readOweTransition},
}};

void apply(std::span<const ElementRule> rules, std::uint32_t identifier, Body body,
           Walked& walked) {
  const auto rule = std::ranges::find(rules, identifier, &ElementRule::identifier);
  if (rule == rules.end() || body.size() < rule->shortest || body.size() > rule->longest) return;
  rule->read(body, walked);
}

void readExtension(Body body, Walked& walked) {
  ByteReader reader(body);
  if (const auto identifier = reader.read<std::uint8_t>()) {
    apply(extensionRules, *identifier, reader.takeRest(), walked);
  }
}

void readVendor(Body body, Walked& walked) {
  ByteReader reader(body);
  const auto bytes = reader.read<std::array<std::uint8_t, 4>>();
  if (!bytes) return;
  std::uint32_t identifier = 0;
  for (const std::uint8_t byte : *bytes) identifier = identifier << 8U | byte;
  apply(vendorRules, identifier, reader.takeRest(), walked);
}

void readElement(std::uint8_t identifier, Body body, Walked& walked) {
  if (identifier == extensionElement) return readExtension(body, walked);
  if (identifier == vendorElement) return readVendor(body, walked);
  apply(elementRules, identifier, body, walked);
}

struct GenerationRule {
  WifiGeneration generation;
  Announcement capabilities;
  Announcement operation;
};

constexpr std::array<GenerationRule, 4> latestFirst = {{
    {WifiGeneration::eht, Announcement::ehtCapabilities, Announcement::ehtOperation},
    {WifiGeneration::he, Announcement::heCapabilities, Announcement::heOperation},
    {WifiGeneration::vht, Announcement::vhtCapabilities, Announcement::vhtOperation},
    {WifiGeneration::ht, Announcement::htCapabilities, Announcement::htOperation},
}};

WifiGeneration generationOf(unsigned announcements) {
  for (const GenerationRule& rule : latestFirst) {
    const unsigned both =
        static_cast<unsigned>(rule.capabilities) | static_cast<unsigned>(rule.operation);
    if ((announcements & both) == both) return rule.generation;
  }
  return WifiGeneration::legacy;
}

}  // namespace

InformationElements decodeInformationElements(std::span<const std::uint8_t> bytes) {
  struct Header {
    std::uint8_t identifier;
    std::uint8_t length;
  };
  Walked walked;
  ByteReader reader(bytes);
  while (!reader.empty()) {
    const auto header = reader.read<Header>();
    const auto body = header ? reader.take(header->length) : std::nullopt;
    if (!body) {
      walked.elements.isDamaged = true;
      break;
    }
    readElement(header->identifier, *body, walked);
  }
  walked.elements.generation = generationOf(walked.announcements);
  walked.elements.onlyOldestRates = walked.hasRates && !walked.hasNewerRates;
  return walked.elements;
}

}  // namespace lanternfold
