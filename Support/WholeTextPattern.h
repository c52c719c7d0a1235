// A regular expression that texts match from their beginning to their end, or not.
//
// Made by: whoever knows the pattern, once; copies share what was compiled. Any thread.
#pragma once

#include <memory>
#include <string_view>

namespace lanternfold {

class WholeTextPattern {
 public:
  /// `expression` in the syntax of ICU, without options; UTF-8. One that does not compile is a
  /// programmer's error and stops the program.
  explicit WholeTextPattern(std::string_view expression);

  /// Whether all of `text` matches. Text that is no UTF-8 has replacement characters there, and so
  /// has one of two gigabytes and more no match at all.
  [[nodiscard]] bool matches(std::string_view text) const;

 private:
  struct Compiled;
  std::shared_ptr<const Compiled> compiled_;
};

}  // namespace lanternfold
