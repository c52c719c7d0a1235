#include "NetworkMonitor/Metrics/LockFileText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <locale>
#include <sstream>

namespace lanternfold {
namespace {

constexpr std::chrono::sys_seconds startOf2001 =
    std::chrono::sys_days(std::chrono::year(2001) / std::chrono::January / 1);

/// Takes characters off the front of a text.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool takeOneOf(std::string_view characters) {
    if (rest_.empty() || !characters.contains(rest_.front())) return false;
    rest_.remove_prefix(1);
    return true;
  }
  /// Whether there was at least one.
  bool takeDigits() {
    const std::size_t count = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
    rest_.remove_prefix(count);
    return count > 0;
  }
  [[nodiscard]] bool atEnd() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

bool isDecimalNumber(std::string_view text) {
  Scanner scanner(text);
  scanner.takeOneOf("+-");
  if (!scanner.takeDigits()) return false;
  if (scanner.takeOneOf(".") && !scanner.takeDigits()) return false;
  if (scanner.takeOneOf("eE")) {
    scanner.takeOneOf("+-");
    if (!scanner.takeDigits()) return false;
  }
  return scanner.atEnd();
}

}  // namespace

SecondsSince2001 secondsSince2001(std::chrono::system_clock::time_point date) {
  // Whole seconds and the rest are divided apart: the difference in nanoseconds has more digits
  // than a double, and at the beginning of the clock's range more than the clock. Rounded towards
  // zero, since the second below that beginning is outside.
  const auto whole = std::chrono::time_point_cast<std::chrono::seconds>(date);
  return SecondsSince2001(whole - startOf2001) + SecondsSince2001(date - whole);
}

std::string encodeLockFileText(std::chrono::system_clock::time_point expiry) {
  // Room for the ten digits that the range of the system's clock can have, sign and point.
  std::array<char, 32> buffer{};
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), secondsSince2001(expiry).count(),
                    std::chars_format::fixed, 8);
  static_cast<void>(error);
  return {buffer.data(), end};
}

std::optional<SecondsSince2001> decodeLockFileText(std::string_view text) {
  if (text.size() > longestLockFileTextBytes || !isDecimalNumber(text)) return std::nullopt;
  // Not std::from_chars, which does not say in which direction a number leaves the range.
  std::istringstream stream{std::string(text)};
  stream.imbue(std::locale::classic());
  double seconds = 0;
  stream >> seconds;
  return SecondsSince2001(seconds);
}

}  // namespace lanternfold
