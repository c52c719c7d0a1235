#include "Support/Rfc3339Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>

namespace lanternfold {
namespace {

constexpr std::chrono::sys_days earliest = std::chrono::year(1970) / 1 / 1;
constexpr std::chrono::sys_days latest = std::chrono::year(2262) / 1 / 1;

/// Takes a text apart from its beginning; what is missing makes all that follows missing too.
class DateTextReader {
 public:
  explicit DateTextReader(std::string_view text) : rest_(text) {}

  /// Of exactly so many digits, within the bounds.
  int number(std::size_t digits, int smallest, int largest) {
    const int number = value(rest_.substr(0, digits));
    isRight_ = isRight_ && rest_.size() >= digits && number >= smallest && number <= largest;
    rest_.remove_prefix(std::min(digits, rest_.size()));
    return isRight_ ? number : smallest;
  }

  bool skip(char expected) {
    if (!rest_.starts_with(expected)) return false;
    rest_.remove_prefix(1);
    return true;
  }
  void require(bool condition) { isRight_ = isRight_ && condition; }

  /// Of up to nine digits, which stand behind a point.
  std::chrono::nanoseconds fraction() {
    const std::size_t digits = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
    require(digits >= 1 && digits <= 9);
    if (!isRight_) return {};
    std::string nine(rest_.substr(0, digits));
    nine.resize(9, '0');
    rest_.remove_prefix(digits);
    return std::chrono::nanoseconds(value(nine));
  }

  [[nodiscard]] bool isWholeAndRight() const { return isRight_ && rest_.empty(); }

 private:
  /// Below zero for what is no number.
  static int value(std::string_view digits) {
    int number = -1;
    const char* const end = digits.data() + digits.size();
    if (digits.empty() || digits.front() == '-') return -1;
    const auto read = std::from_chars(digits.data(), end, number);
    return read.ec == std::errc() && read.ptr == end ? number : -1;
  }

  std::string_view rest_;
  bool isRight_ = true;
};

std::chrono::sys_days readDate(DateTextReader& reader) {
  const std::chrono::year year(reader.number(4, 1969, 2262));
  reader.require(reader.skip('-'));
  const std::chrono::month month(static_cast<unsigned>(reader.number(2, 1, 12)));
  reader.require(reader.skip('-'));
  const std::chrono::day day(static_cast<unsigned>(reader.number(2, 1, 31)));
  const std::chrono::year_month_day date = year / month / day;
  reader.require(date.ok());
  return date;
}

std::chrono::seconds readTime(DateTextReader& reader) {
  const std::chrono::hours hours(reader.number(2, 0, 23));
  reader.require(reader.skip(':'));
  const std::chrono::minutes minutes(reader.number(2, 0, 59));
  reader.require(reader.skip(':'));
  return hours + minutes + std::chrono::seconds(reader.number(2, 0, 59));
}

/// How much further than UTC the clocks of the text's time zone are.
std::chrono::seconds readZone(DateTextReader& reader) {
  if (reader.skip('Z') || reader.skip('z')) return {};
  const bool isBehind = reader.skip('-');
  reader.require(isBehind || reader.skip('+'));
  const std::chrono::hours hours(reader.number(2, 0, 23));
  reader.require(reader.skip(':'));
  const std::chrono::minutes ahead = hours + std::chrono::minutes(reader.number(2, 0, 59));
  return isBehind ? -ahead : ahead;
}

}  // namespace

std::string rfc3339Text(std::chrono::system_clock::time_point moment) {
  const auto sinceEpoch = std::chrono::floor<std::chrono::milliseconds>(moment).time_since_epoch();
  const auto wholeSeconds = std::chrono::floor<std::chrono::seconds>(sinceEpoch);
  const std::time_t seconds = wholeSeconds.count();
  std::tm fields{};
  ::gmtime_r(&seconds, &fields);
  std::array<char, 64> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S.", &fields);
  const std::string milliseconds = std::to_string((sinceEpoch - wholeSeconds).count());
  return std::string(text.data(), length) + std::string(3 - milliseconds.size(), '0') +
         milliseconds + 'Z';
}

std::optional<std::chrono::system_clock::time_point> momentOfRfc3339Text(std::string_view text) {
  DateTextReader reader(text);
  const std::chrono::sys_days date = readDate(reader);
  reader.require(reader.skip('T') || reader.skip('t'));
  const std::chrono::seconds time = readTime(reader);
  const auto fraction = reader.skip('.') ? reader.fraction() : std::chrono::nanoseconds();
  const std::chrono::seconds zone = readZone(reader);
  const auto seconds = date + time - zone;
  if (!reader.isWholeAndRight() || seconds < earliest || seconds >= latest) return std::nullopt;
  return seconds + fraction;
}

}  // namespace lanternfold
