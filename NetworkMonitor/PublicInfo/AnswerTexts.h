// The texts of a web service's answer: a JSON object from whoever answers on the network.
//
// Read by: the public-info resolvers. Pure: any thread, nothing thrown for bad input.
#pragma once

#include <cstddef>
#include <expected>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

namespace lanternfold {

/// A session hands over no longer answer, a decoder of its own accord takes none.
inline constexpr std::size_t longestAnswerBytes = 64 * 1024;
/// Levels below the object itself, which only unknown members can hold.
inline constexpr int deepestAnswer = 32;
/// Of a text that is shown. The names of providers are some dozen bytes long.
inline constexpr std::size_t longestAnswerTextBytes = 256;

using AnswerTexts = std::map<std::string_view, std::string>;

/// The texts under `members`, which are names of `answerMembers`; every one of them must be there,
/// once, and be a text of at most `longestAnswerTextBytes`. Other members are not looked at. Errors
/// are `PublicInfoDecodingError`s.
[[nodiscard]] std::expected<AnswerTexts, std::error_code> decodeAnswerTexts(
    std::string_view data, std::initializer_list<std::string_view> members);

/// A dotted quad as the system writes it.
[[nodiscard]] bool isIPv4Literal(std::string_view text);
/// Any form of an IPv6 address, without a zone, brackets or a prefix.
[[nodiscard]] bool isIPv6Literal(std::string_view text);
/// Two ASCII letters.
[[nodiscard]] bool isCountryCode(std::string_view text);

}  // namespace lanternfold
