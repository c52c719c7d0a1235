// A host's message as JSON: those of its members that mean something, whatever else it holds.
//
// Made by: `readMessageDocument`. Read by: `parseHostMessage`.
#pragma once

#include <cstdint>
#include <expected>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <variant>

namespace lanternfold {

/// Levels of arrays and objects in a message.
inline constexpr std::size_t deepestServiceMessage = 64;

/// Whole numbers beyond this, either way, lose their last digit in many a host.
inline constexpr std::int64_t largestExactNumber = std::int64_t{1} << 53;

/// Values of which no more matters than what they are.
enum class OpaqueValue {
  object,
  array,
  number,  ///< with a fraction or an exponent, or beyond `largestExactNumber`
};

using MessageValue = std::variant<std::nullptr_t, bool, std::int64_t, std::string, OpaqueValue>;

struct MessageDocument {
  bool isObject = false;  ///< else the rest is empty
  bool isArray = false;
  /// By path: "method", "params.configuration.adapter.display". Of one that stands twice the last.
  std::map<std::string_view, MessageValue> members;
  /// The paths of those that stand twice in their object.
  std::set<std::string_view> repeated;

  /// Null when there is none.
  [[nodiscard]] const MessageValue* find(std::string_view path) const;
};

/// Any bytes. Holds no more than the members that a message may have, whatever the text nests. The
/// error says why it is no JSON, or that it nests too deep.
[[nodiscard]] std::expected<MessageDocument, std::string> readMessageDocument(
    std::string_view text);

}  // namespace lanternfold
