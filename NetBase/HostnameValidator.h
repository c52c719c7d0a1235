// Whether a text can be the name of a host. Pure.
#pragma once

#include <string_view>

#include "Support/WholeTextPattern.h"

namespace lanternfold {

/// A value; copies share the compiled expression. Any thread.
class HostnameValidator {
 public:
  /// One or more labels between full stops, each of ASCII letters, digits and hyphens, the first of
  /// them no hyphen. Neither a label nor the name has a greatest length, and a label may end with a
  /// hyphen; an empty label, at the name's end too, is none.
  [[nodiscard]] bool validate(std::string_view name) const;

 private:
  WholeTextPattern domainLabelRegex{"^[a-zA-Z0-9][a-zA-Z0-9-]*$"};
};

}  // namespace lanternfold
