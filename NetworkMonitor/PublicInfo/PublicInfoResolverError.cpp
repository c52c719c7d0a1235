#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"

#include <string>

namespace lanternfold {
namespace {

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

class DecodingErrors final : public std::error_category {
 public:
  [[nodiscard]] const char* name() const noexcept override { return "public info decoding"; }
  [[nodiscard]] std::string message(int code) const override {
    switch (static_cast<PublicInfoDecodingError>(code)) {
      case PublicInfoDecodingError::notJson:
        return "the answer is not JSON";
      case PublicInfoDecodingError::notAnObject:
        return "the answer is not a JSON object";
      case PublicInfoDecodingError::missingMember:
        return "the answer lacks a member";
      case PublicInfoDecodingError::notAString:
        return "a member of the answer is not a text";
    }
    return "error " + std::to_string(code);
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

}  // namespace lanternfold
