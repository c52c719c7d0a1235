#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// A code is the fault, and above it the place of the member counted from 1; 0 for the answer as a
/// whole.
constexpr int memberUnit = 100;

class ResolverErrors final : public std::error_category {
 public:
  [[nodiscard]] const char* name() const noexcept override { return "public info"; }
  [[nodiscard]] std::string message(int code) const override {
    switch (static_cast<PublicInfoResolverError>(code)) {
      case PublicInfoResolverError::generic:
        return "there was no answer";
      case PublicInfoResolverError::timeout:
        return "the answer took too long";
    }
    return "error " + std::to_string(code);
  }
};

/// What is said of the answer, or of a member of it.
std::string clauseOf(PublicInfoDecodingError error) {
  switch (error) {
    case PublicInfoDecodingError::notJson:
      return "is not JSON";
    case PublicInfoDecodingError::notAnObject:
      return "is not a JSON object";
    case PublicInfoDecodingError::missingMember:
      return "lacks a member";
    case PublicInfoDecodingError::notAString:
      return "is not a text";
    case PublicInfoDecodingError::duplicateMember:
      return "stands twice";
    case PublicInfoDecodingError::tooLong:
      return "is too long";
    case PublicInfoDecodingError::tooDeep:
      return "is nested too deeply";
    case PublicInfoDecodingError::notAnIPv4Address:
      return "is not an IPv4 address";
    case PublicInfoDecodingError::notAnIPv6Address:
      return "is not an IPv6 address";
    case PublicInfoDecodingError::notAnAddress:
      return "is not an address";
    case PublicInfoDecodingError::notACountryCode:
      return "is not a country's code of two letters";
  }
  return {};
}

class DecodingErrors final : public std::error_category {
 public:
  [[nodiscard]] const char* name() const noexcept override { return "public info decoding"; }

  [[nodiscard]] std::string message(int code) const override {
    const auto fault = static_cast<PublicInfoDecodingError>(code % memberUnit);
    const std::string clause = clauseOf(fault);
    const int place = code / memberUnit;
    if (clause.empty() || place < 0 || place > std::ssize(answerMembers)) {
      return "error " + std::to_string(code);
    }
    if (place == 0) return "the answer " + clause;
    const std::string member =
        '"' + std::string(answerMembers[static_cast<std::size_t>(place) - 1]) + '"';
    if (fault == PublicInfoDecodingError::missingMember) return "the answer lacks " + member;
    return member + " in the answer " + clause;
  }

  [[nodiscard]] std::error_condition default_error_condition(int code) const noexcept override {
    return {code % memberUnit, *this};
  }
};

}  // namespace

const std::error_category& publicInfoResolverErrors() {
  static const ResolverErrors errors;
  return errors;
}

const std::error_category& publicInfoDecodingErrors() {
  static const DecodingErrors errors;
  return errors;
}

std::error_code decodingError(PublicInfoDecodingError error, std::string_view member) {
  const auto found = std::ranges::find(answerMembers, member);
  if (found == answerMembers.end()) {
    fatalError("a decoding error blames a member that no service's answer has");
  }
  const auto place = static_cast<int>(found - answerMembers.begin()) + 1;
  return {static_cast<int>(error) + memberUnit * place, publicInfoDecodingErrors()};
}

}  // namespace lanternfold
