#include "EchoService/GeolocationTableJson.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

namespace lanternfold {
namespace {

using Json = nlohmann::json;

struct Member {
  std::string_view name;
  std::string GeolocationEntry::* text;
};

constexpr std::array members{Member{"isp", &GeolocationEntry::isp},
                             Member{"countryCode", &GeolocationEntry::countryCode},
                             Member{"as", &GeolocationEntry::as}};

/// As the file has it, but no longer than a line of a terminal.
std::string inQuotes(std::string_view name) {
  constexpr std::size_t longestShown = 60;
  if (name.size() <= longestShown) return '"' + std::string(name) + '"';
  return '"' + std::string(name.substr(0, longestShown)) + "…\"";
}

bool isCountryCode(std::string_view text) {
  return text.size() == 2 &&
         std::ranges::all_of(text, [](char letter) { return letter >= 'A' && letter <= 'Z'; });
}

bool holdsControlCharacter(std::string_view text) {
  return std::ranges::any_of(text, [](char character) {
    return (character >= 0 && character < ' ') || character == 0x7F;
  });
}

/// What is wrong with a member's text; empty when nothing is.
std::string_view faultOf(const Member& member, std::string_view text) {
  if (text.size() > longestGeolocationTextBytes) return "is longer than 200 bytes";
  if (holdsControlCharacter(text)) return "holds a control character";
  if (member.name == "isp" && text.empty()) return "is empty";
  if (member.name == "countryCode" && !isCountryCode(text)) return "is not two upper-case letters";
  return {};
}

/// Fills a table from the parser's events; false, with the fault, at the first thing that is wrong.
/// Nothing but the table is ever held, whatever the text nests.
class TableReader final : public nlohmann::json_sax<Json> {
 public:
  bool null() override { return refuseValue(); }
  bool boolean(bool) override { return refuseValue(); }
  bool number_integer(number_integer_t) override { return refuseValue(); }
  bool number_unsigned(number_unsigned_t) override { return refuseValue(); }
  bool number_float(number_float_t, const string_t&) override { return refuseValue(); }
  bool binary(binary_t&) override { return refuseValue(); }
  bool start_array(std::size_t) override { return refuseValue(); }
  bool end_array() override { return refuseValue(); }

  bool start_object(std::size_t) override {
    if (depth_ == 2) return refuseValue();
    ++depth_;
    if (depth_ == 2) beginEntry();
    return true;
  }

  bool end_object() override {
    --depth_;
    return depth_ == 0 || endEntry();
  }

  bool key(string_t& text) override {
    if (depth_ == 2) return beginMember(text);
    name_ = text;
    if (table_.size() == mostGeolocationNetworks) {
      return fail("the table holds more than 250000 networks");
    }
    auto network = parseIpNetwork(text);
    if (!network) return fail(inQuotes(name_) + " " + network.error());
    network_ = *network;
    return true;
  }

  bool string(string_t& text) override {
    if (depth_ < 2) return refuseValue();
    const std::string_view fault = faultOf(*member_, text);
    if (!fault.empty()) return fail(memberName() + " " + std::string(fault));
    entry_.*(member_->text) = std::move(text);
    return true;
  }

  bool parse_error(std::size_t position, const std::string&, const Json::exception&) override {
    return fail("the text is not JSON from byte " + std::to_string(position) + " on" +
                (name_.empty() ? "" : ", behind " + inQuotes(name_)));
  }

  [[nodiscard]] const std::optional<std::string>& fault() const { return fault_; }
  [[nodiscard]] GeolocationTable takeTable() { return std::move(table_); }

 private:
  void beginEntry() {
    entry_ = {};
    seen_ = {};
  }

  bool beginMember(std::string_view name) {
    member_ = std::ranges::find(members, name, &Member::name);
    if (member_ == members.end()) {
      return fail(inQuotes(name_) + " has a member " + inQuotes(name) +
                  ", which is none of \"isp\", \"countryCode\" and \"as\"");
    }
    bool& seen = seen_[static_cast<std::size_t>(member_ - members.begin())];
    if (seen) return fail(memberName() + " stands twice");
    seen = true;
    return true;
  }

  bool endEntry() {
    const auto missing = std::ranges::find(seen_, false);
    if (missing != seen_.end()) {
      member_ = members.begin() + (missing - seen_.begin());
      return fail(memberName() + " is missing");
    }
    if (!table_.insert(network_, entry_)) {
      return fail("the network " + inQuotes(name_) + " stands twice");
    }
    return true;
  }

  bool refuseValue() {
    if (depth_ == 0) return fail("the table is not a JSON object");
    if (depth_ == 1) return fail(inQuotes(name_) + " is not an object");
    return fail(memberName() + " is not a text");
  }

  [[nodiscard]] std::string memberName() const {
    return inQuotes(member_->name) + " of " + inQuotes(name_);
  }

  /// The first fault stays.
  bool fail(std::string fault) {
    if (!fault_) fault_ = std::move(fault);
    return false;
  }

  GeolocationTable table_;
  std::optional<std::string> fault_;
  int depth_ = 0;  // 1 within the table, 2 within an entry
  std::string name_;
  IpNetwork network_{};
  GeolocationEntry entry_;
  std::array<bool, members.size()> seen_{};
  decltype(members)::const_iterator member_ = members.begin();
};

}  // namespace

std::expected<GeolocationTable, std::string> parseGeolocationTable(std::string_view json) {
  if (json.size() > longestGeolocationTableBytes) {
    return std::unexpected("the table is longer than 32 MiB");
  }
  // The parser takes a zero byte for the end of the text and would not look at what stands behind.
  if (json.contains('\0')) return std::unexpected("the text is not JSON: it holds a zero byte");
  TableReader reader;
  const bool parsed = Json::sax_parse(json.begin(), json.end(), &reader);
  if (reader.fault()) return std::unexpected(*reader.fault());
  if (!parsed) return std::unexpected("the text is not JSON");
  return reader.takeTable();
}

}  // namespace lanternfold
