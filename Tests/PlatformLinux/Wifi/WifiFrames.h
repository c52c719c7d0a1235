// Builds nl80211's answers and information elements byte by byte, well-formed or not.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <linux/genetlink.h>
#include <linux/nl80211.h>

#include "PlatformLinux/Wifi/HardwareAddress.h"
#include "Tests/PlatformLinux/Netlink/NetlinkFrames.h"

namespace lanternfold::test {

inline constexpr int nl80211Type = 0x1C;

/// The locally administered address of this last byte.
inline HardwareAddress cellAddress(std::uint8_t last) { return {0x02, 0, 0, 0, 0x01, last}; }

/// What follows the message's header: the generic header and the attributes.
inline Bytes wifiPayload(int command, std::initializer_list<Bytes> attributes) {
  return joined({bytesOf(genlmsghdr{.cmd = static_cast<std::uint8_t>(command), .version = 1}),
                 joined(attributes)});
}

inline Bytes nested(int type, std::initializer_list<Bytes> attributes) {
  return attribute(type | NLA_F_NESTED, joined(attributes));
}

inline Bytes number8(int type, int value) {
  return numberAttributeBytes(type, static_cast<std::uint8_t>(value));
}
inline Bytes number16(int type, int value) {
  return numberAttributeBytes(type, static_cast<std::uint16_t>(value));
}
inline Bytes number32(int type, std::int64_t value) {
  return numberAttributeBytes(type, static_cast<std::uint32_t>(value));
}
inline Bytes flag(int type) { return attribute(type, {}); }

inline Bytes textOnly(std::string_view text) { return {text.begin(), text.end()}; }

/// One information element. `length` lies when it is not that of the body.
inline Bytes element(int identifier, const Bytes& body, int length = -1) {
  Bytes bytes = {static_cast<std::uint8_t>(identifier),
                 static_cast<std::uint8_t>(length < 0 ? static_cast<int>(body.size()) : length)};
  append(bytes, body);
  return bytes;
}

inline Bytes extension(int identifier, std::size_t bodySize) {
  Bytes body(bodySize + 1);
  body.front() = static_cast<std::uint8_t>(identifier);
  return element(255, body);
}

/// The suites with these numbers, behind their count, of 802.11 or of the first WPA.
inline Bytes suites(std::initializer_list<int> numbers, bool ofWpa = false) {
  Bytes bytes = {static_cast<std::uint8_t>(numbers.size()), 0};
  for (const int number : numbers) {
    append(bytes, ofWpa ? Bytes{0x00, 0x50, 0xF2} : Bytes{0x00, 0x0F, 0xAC});
    bytes.push_back(static_cast<std::uint8_t>(number));
  }
  return bytes;
}

/// The body of an RSN element with CCMP and these ways to the keys.
inline Bytes rsnBody(std::initializer_list<int> authentications, int capabilities = 0) {
  return joined({{1, 0, 0x00, 0x0F, 0xAC, 4},
                 suites({4}),
                 suites(authentications),
                 {static_cast<std::uint8_t>(capabilities), 0}});
}

/// The body of a WPA element, with its identifier in front.
inline Bytes wpaBody(std::initializer_list<int> authentications, int pairwiseCipher = 2) {
  return joined({{0x00, 0x50, 0xF2, 1, 1, 0, 0x00, 0x50, 0xF2, 2},
                 suites({pairwiseCipher}, true),
                 suites(authentications, true)});
}

inline Bytes oweTransitionElement() { return element(221, {0x50, 0x6F, 0x9A, 0x1C, 0}); }

/// Calls `check` with every shorter beginning of the payload, each in memory of its own size.
template <typename Check>
void forEveryCut(const Bytes& payload, Check check) {
  for (std::size_t size = 0; size < payload.size(); ++size) {
    const Bytes cut(payload.begin(), payload.begin() + static_cast<std::ptrdiff_t>(size));
    check(cut);
  }
}

/// An attribute of an answer, and what a record holds more for it.
template <typename Record>
struct MeaningfulAttribute {
  Bytes bytes;
  std::function<void(Record&)> means = nullptr;
};

/// Cuts the answer at every byte: inside an attribute it is an error, between two it tells exactly
/// what the attributes before it say. The first one makes the answer one that can be decoded.
template <typename Record, typename Decode>
void expectCutsTellWholeAttributes(int command,
                                   const std::vector<MeaningfulAttribute<Record>>& attributes,
                                   Decode decode) {
  Bytes payload = wifiPayload(command, {});
  forEveryCut(payload, [&](const Bytes& cut) { EXPECT_FALSE(decode(cut)); });
  EXPECT_FALSE(decode(payload)) << "no attribute at all";
  Record expected;
  for (const MeaningfulAttribute<Record>& each : attributes) {
    const std::size_t length = each.bytes.at(0) + each.bytes.at(1) * std::size_t{256};
    if (each.means) each.means(expected);
    for (std::size_t size = 1; size <= each.bytes.size(); ++size) {
      Bytes cut = payload;
      cut.insert(cut.end(), each.bytes.begin(),
                 each.bytes.begin() + static_cast<std::ptrdiff_t>(size));
      const auto record = decode(cut);
      ASSERT_EQ(record.has_value(), size >= length) << cut.size();
      if (!record) continue;
      EXPECT_EQ(*record, expected) << cut.size();
    }
    append(payload, each.bytes);
  }
}

}  // namespace lanternfold::test
