// Why a public-info resolver has no answer, beside the errors of URL loading.
//
// Made by: the resolvers. Read by: whoever reports the internet side to the user.
#pragma once

#include <array>
#include <string_view>
#include <system_error>

namespace lanternfold {

enum class PublicInfoResolverError {
  generic = 1,  ///< neither an answer nor an error came
  timeout,
};

[[nodiscard]] const std::error_category& publicInfoResolverErrors();
[[nodiscard]] inline std::error_code make_error_code(PublicInfoResolverError error) {
  return {static_cast<int>(error), publicInfoResolverErrors()};
}

/// What is wrong with a service's answer.
enum class PublicInfoDecodingError {
  notJson = 1,  ///< also text that is not UTF-8
  notAnObject,
  missingMember,
  notAString,
  duplicateMember,
  tooLong,           ///< the answer, or a text in it
  tooDeep,           ///< values within values
  notAnIPv4Address,  ///< also one with blanks around it, a port or leading zeros
  notAnIPv6Address,
  notAnAddress,     ///< of neither family
  notACountryCode,  ///< not two letters
};

/// The members of the services' answers, by which an error says which one is to blame.
inline constexpr auto answerMembers =
    std::to_array<std::string_view>({"ip", "isp", "countryCode", "as", "query"});

[[nodiscard]] const std::error_category& publicInfoDecodingErrors();
/// Of the answer as a whole.
[[nodiscard]] inline std::error_code make_error_code(PublicInfoDecodingError error) {
  return {static_cast<int>(error), publicInfoDecodingErrors()};
}
/// Of one member, which the message names. Stops the program when it is none of `answerMembers`.
[[nodiscard]] std::error_code decodingError(PublicInfoDecodingError error, std::string_view member);
/// Equal to the errors of every member: `error == decodingFault(…)`.
[[nodiscard]] inline std::error_condition decodingFault(PublicInfoDecodingError error) {
  return {static_cast<int>(error), publicInfoDecodingErrors()};
}

}  // namespace lanternfold

template <>
struct std::is_error_code_enum<lanternfold::PublicInfoResolverError> : std::true_type {};
template <>
struct std::is_error_code_enum<lanternfold::PublicInfoDecodingError> : std::true_type {};
