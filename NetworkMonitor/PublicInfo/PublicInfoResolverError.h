// Why a public-info resolver has no answer, beside the errors of URL loading.
//
// Made by: the resolvers. Read by: whoever reports the internet side to the user.
#pragma once

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
};

[[nodiscard]] const std::error_category& publicInfoDecodingErrors();
[[nodiscard]] inline std::error_code make_error_code(PublicInfoDecodingError error) {
  return {static_cast<int>(error), publicInfoDecodingErrors()};
}

}  // namespace lanternfold

template <>
struct std::is_error_code_enum<lanternfold::PublicInfoResolverError> : std::true_type {};
template <>
struct std::is_error_code_enum<lanternfold::PublicInfoDecodingError> : std::true_type {};
