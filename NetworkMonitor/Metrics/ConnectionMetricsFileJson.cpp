#include "NetworkMonitor/Metrics/ConnectionMetricsFileJson.h"

#include <cstdint>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

#include "NetworkMonitor/Metrics/ConnectionMetricsJsonText.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsRecordReader.h"

namespace lanternfold {
namespace {

using Json = nlohmann::json;
using Error = ConnectionMetricsJsonError;
using Fault = Error::Fault;

constexpr std::size_t usualRecordBytes = 256;
constexpr std::size_t longestNameInError = 64;

/// Takes the parser's events; every one of them returns whether to go on.
class FileReader {
 public:
  [[nodiscard]] std::expected<ConnectionMetricsData, Error> take(bool isWhole) {
    if (error_) return std::unexpected(*std::move(error_));
    if (!isWhole) return std::unexpected(Error{.fault = Fault::notJson, .key = where()});
    return std::move(data_);
  }

  bool null() { return scalar({}, {}); }
  bool boolean(bool) { return scalar({}, {}); }
  bool number_integer(std::int64_t value) { return scalar({}, value); }
  bool number_unsigned(std::uint64_t value) {
    return scalar(value, std::in_range<std::int64_t>(value) ? std::optional(std::int64_t(value))
                                                            : std::nullopt);
  }
  bool number_float(double, const std::string&) { return scalar({}, {}); }
  bool string(const std::string&) { return scalar({}, {}); }
  bool binary(const Json::binary_t&) { return scalar({}, {}); }

  bool start_array(std::size_t) {
    if (record_.isInside()) return judge(record_.open());
    if (level_ != Level::document) return refuseValue();
    level_ = Level::pairs;
    return true;
  }
  bool end_array() {
    if (record_.isInside()) return judge(record_.close());
    return type_ ? fail(Fault::missingRecords) : true;
  }
  bool start_object(std::size_t) {
    if (record_.isInside()) return judge(record_.open());
    if (level_ == Level::names) {
      record_.begin(*current_);
      return true;
    }
    if (level_ != Level::pairs || !type_) return refuseValue();
    level_ = Level::names;
    return true;
  }
  bool key(const std::string& key) {
    return record_.isInside() ? judge(record_.key(key)) : beginName(key);
  }
  bool end_object() {
    if (record_.isInside()) return judge(record_.close());
    level_ = Level::pairs;
    type_.reset();
    current_ = nullptr;
    name_.clear();
    ++place_;
    return true;
  }
  template <typename Exception>
  bool parse_error(std::size_t, const std::string&, const Exception&) {
    return false;
  }

 private:
  enum class Level { document, pairs, names };

  bool scalar(std::optional<std::uint64_t> number, std::optional<std::int64_t> integer) {
    if (record_.isInside()) return judge(record_.scalar(number));
    if (level_ != Level::pairs || type_) return refuseValue();
    return beginType(integer);
  }

  bool beginType(std::optional<std::int64_t> rawValue) {
    if (rawValue) type_ = connectionMetricsType(*rawValue);
    if (!type_) return fail(Fault::unknownCase);
    const auto [records, isNew] = data_.try_emplace(*type_);
    if (!isNew) return fail(Fault::duplicateKey);
    records_ = &records->second;
    ++place_;
    return true;
  }

  bool beginName(const std::string& name) {
    name_ = name;
    const std::size_t before = records_->size();
    // Our own files have the names in order: each goes to the end.
    current_ = &records_->try_emplace(records_->end(), name)->second;
    return records_->size() > before ? true : fail(Fault::duplicateKey);
  }

  /// A value that does not belong where it stands.
  bool refuseValue() {
    if (level_ == Level::document) return fail(Fault::notAnArray);
    return fail(level_ == Level::pairs && !type_ ? Fault::unknownCase : Fault::notAnObject);
  }

  bool judge(ConnectionMetricsRecordReader::Verdict fault) {
    if (fault) return fail(*fault);
    if (!record_.isInside()) current_ = nullptr;
    return true;
  }

  bool fail(Fault fault) {
    error_ = Error{.fault = fault, .key = where()};
    return false;
  }

  [[nodiscard]] std::string where() const {
    if (level_ == Level::document) return "";
    if (!type_) return "[" + std::to_string(place_) + "]";
    std::string path = std::to_string(std::to_underlying(*type_));
    if (current_ == nullptr) return path;
    const std::string quoted = Json(name_.substr(0, longestNameInError))
                                   .dump(-1, ' ', true, Json::error_handler_t::replace);
    path += '/' + quoted.substr(1, quoted.size() - 2);
    const std::string_view field = record_.field();
    return field.empty() ? path : path.append("/").append(field);
  }

  Level level_ = Level::document;
  std::size_t place_ = 0;  // in the outer array
  std::optional<ConnectionMetricsType> type_;
  ConnectionMetricsByName* records_ = nullptr;  // of `type_`
  std::string name_;
  ConnectionMetrics* current_ = nullptr;  // of `name_`, until its record ended
  ConnectionMetricsRecordReader record_;
  ConnectionMetricsData data_;
  std::optional<Error> error_;
};

}  // namespace

std::expected<EncodedConnectionMetricsFile, Error> encodeConnectionMetricsFile(
    const ConnectionMetricsData& data, std::size_t maximumBytes) {
  EncodedConnectionMetricsFile file;
  std::string& text = file.text;
  for (const auto& [type, records] : data) {
    text += text.empty() ? '[' : ',';
    text += std::to_string(std::to_underlying(type)) + ",{";
    text.reserve(text.size() + records.size() * usualRecordBytes);
    bool isFirst = true;
    for (const auto& [name, metrics] : records) {
      const std::size_t before = text.size();
      if (!isFirst) text += ',';
      if (!appendJsonString(text, name)) {
        text.resize(before);
        ++file.recordsLeftOut;
        continue;
      }
      text += ':';
      appendConnectionMetricsJson(text, metrics);
      isFirst = false;
    }
    text += '}';
  }
  text += text.empty() ? "[]" : "]";
  if (text.size() > maximumBytes) return std::unexpected(Error{.fault = Fault::tooLong, .key = ""});
  return file;
}

std::expected<ConnectionMetricsData, Error> decodeConnectionMetricsFile(std::string_view text) {
  if (text.size() > longestConnectionMetricsFileBytes) {
    return std::unexpected(Error{.fault = Fault::tooLong, .key = ""});
  }
  FileReader reader;
  const bool isParsed = Json::sax_parse(text.begin(), text.end(), &reader);
  // The parser takes a zero byte for the end of the text and would not look at what stands behind.
  return reader.take(isParsed && !text.contains('\0'));
}

}  // namespace lanternfold
