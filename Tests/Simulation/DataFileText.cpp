#include "Tests/Simulation/DataFileText.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"

namespace lanternfold::simulation {
namespace {

/// Walks the text; the first thing that is not as expected is kept, and ends everything.
class TextReader {
 public:
  explicit TextReader(std::string_view text) : rest_(text), length_(text.size()) {}

  [[nodiscard]] const std::optional<std::string>& fault() const { return fault_; }

  bool fail(std::string_view expected) {
    if (!fault_) {
      fault_ = "expected " + std::string(expected) + " at byte " +
               std::to_string(length_ - rest_.size());
    }
    return false;
  }
  bool take(char c) {
    if (fault_ || rest_.empty() || rest_.front() != c) {
      return fail("\"" + std::string(1, c) + "\"");
    }
    rest_.remove_prefix(1);
    return true;
  }
  [[nodiscard]] bool isNext(char c) const {
    return !fault_ && !rest_.empty() && rest_.front() == c;
  }
  [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }

  std::uint64_t number() {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
    if (fault_ || error != std::errc()) {
      fail("an unsigned number");
      return 0;
    }
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return value;
  }

  /// A text whose only escapes are those of the quotation mark and the backslash.
  std::string text() {
    std::string result;
    if (!take('"')) return result;
    while (!rest_.empty() && rest_.front() != '"') {
      if (rest_.front() == '\\') rest_.remove_prefix(1);
      if (rest_.empty()) break;
      result += rest_.front();
      rest_.remove_prefix(1);
    }
    take('"');
    return result;
  }

  /// Runs `member` for each member of an object, behind its key and colon.
  template <typename Member>
  void object(Member member) {
    if (!take('{')) return;
    bool isFirst = true;
    while (!fault_ && !isNext('}')) {
      if (!isFirst && !take(',')) return;
      isFirst = false;
      const std::string key = text();
      if (take(':')) member(key);
    }
    take('}');
  }

 private:
  std::string_view rest_;
  std::size_t length_;
  std::optional<std::string> fault_;
};

ConnectionMetrics readRecord(TextReader& reader) {
  ConnectionMetrics metrics;
  unsigned found = 0;  // a bit a field
  reader.object([&](const std::string& key) {
    const auto field =
        std::ranges::find(connectionMetricsFields, key, &ConnectionMetricsField::key);
    const auto bit = 1U << static_cast<unsigned>(field - connectionMetricsFields.begin());
    if (field == connectionMetricsFields.end() || (found & bit) != 0) {
      reader.fail("another key than \"" + key + "\"");
      return;
    }
    found |= bit;
    metrics.*(field->member) = reader.number();
  });
  if (found + 1 != 1U << connectionMetricsFields.size()) reader.fail("eight keys");
  return metrics;
}

using Records = std::map<std::string, ConnectionMetrics>;

void readRecordsOfOneType(TextReader& reader, std::map<std::uint64_t, Records>& records) {
  const std::uint64_t type = reader.number();
  if (type > 1) reader.fail("a type of 0 or 1");
  reader.take(',');
  const auto [place, isNew] = records.try_emplace(type);
  if (!isNew) reader.fail("each type once");
  reader.object([&, &ofType = place->second](const std::string& name) {
    if (!ofType.emplace(name, readRecord(reader)).second) reader.fail("each name once");
  });
}

}  // namespace

std::expected<RememberedInterfaces, std::string> readDataFileText(std::string_view text) {
  TextReader reader(text);
  std::map<std::uint64_t, Records> records;
  reader.take('[');
  while (!reader.fault() && !reader.isNext(']')) {
    if (!records.empty() && !reader.take(',')) break;
    readRecordsOfOneType(reader, records);
  }
  reader.take(']');
  if (!reader.isAtEnd()) reader.fail("the end");
  if (reader.fault()) return std::unexpected(*reader.fault());

  RememberedInterfaces result;
  for (const auto& [name, original] : records[0]) result[name].original = original;
  for (const auto& [name, adjusted] : records[1]) {
    if (!records[0].contains(name)) return std::unexpected(name + " has no original record");
    result[name].adjusted = adjusted;
  }
  if (records[0].size() != records[1].size())
    return std::unexpected("an adjusted record is missing");
  return result;
}

std::expected<ConnectionMetrics, std::string> readRecordText(std::string_view text) {
  TextReader reader(text);
  const ConnectionMetrics metrics = readRecord(reader);
  if (!reader.isAtEnd()) reader.fail("the end");
  if (reader.fault()) return std::unexpected(*reader.fault());
  return metrics;
}

}  // namespace lanternfold::simulation
