#include "ViewTree/ArchiveValue.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

#include "ViewTree/DisplayableText.h"

namespace lanternfold {
namespace {

using Json = nlohmann::json;

constexpr std::size_t longestNameInPath = 64;
/// The parser's own number of a number that no double holds.
constexpr int numberOverflow = 406;

/// Takes the parser's events, whose parser needs no stack of its own for nested values; every one
/// of them returns whether to go on.
class ArchiveParser {
 public:
  explicit ArchiveParser(std::size_t levelsAround) : deepest_(deepestArchiveValue + levelsAround) {}

  [[nodiscard]] std::expected<ArchiveValue, ViewArchiveFault> take(bool isWhole) {
    if (!isWhole) {
      if (!fault_) fail("It is not JSON.");
      return std::unexpected(*std::move(fault_));
    }
    return std::move(document_);
  }

  bool null() { return add({}) != nullptr; }
  bool boolean(bool value) { return add({value}) != nullptr; }
  bool number_integer(std::int64_t value) { return add({static_cast<double>(value)}) != nullptr; }
  bool number_unsigned(std::uint64_t value) { return add({static_cast<double>(value)}) != nullptr; }
  bool number_float(double value, const std::string&) { return add({value}) != nullptr; }
  bool string(std::string& value) {
    if (value.size() > longestArchivedText) return fail("The text is too long.");
    return add({std::move(value)}) != nullptr;
  }
  bool binary(const Json::binary_t&) { return fail("It is not JSON."); }

  bool start_array(std::size_t) { return open({ArchiveValue::List{}}); }
  bool start_object(std::size_t) { return open({ArchiveValue::Object{}}); }
  bool end_array() { return close(); }
  bool end_object() { return close(); }

  bool key(std::string& name) {
    auto& members = std::get<ArchiveValue::Object>(open_.back()->value);
    if (name.size() > longestArchivedText) return fail("The name of a member is too long.");
    if (members.size() == mostArchiveMembers) return fail("There are too many members.");
    const bool isTwice = std::ranges::find(members, name, &ArchiveMember::name) != members.end();
    members.push_back({std::move(name), {}});
    return isTwice ? fail("There are two members of this name.") : true;
  }

  template <typename Exception>
  bool parse_error(std::size_t, const std::string&, const Exception& exception) {
    return fail(exception.id == numberOverflow ? "The number is too large." : "It is not JSON.");
  }

 private:
  /// Where the value has its place; null when there is none for it.
  ArchiveValue* add(ArchiveValue value) {
    if (++count_ > mostArchiveValues) {
      fail("There are too many values.");
      return nullptr;
    }
    if (open_.empty()) return &(document_ = std::move(value));
    if (auto* list = std::get_if<ArchiveValue::List>(&open_.back()->value)) {
      return &list->emplace_back(std::move(value));
    }
    ArchiveMember& last = std::get<ArchiveValue::Object>(open_.back()->value).back();
    return &(last.value = std::move(value));
  }

  bool open(ArchiveValue value) {
    if (open_.size() == deepest_) return fail("It is nested too deeply.");
    ArchiveValue* const place = add(std::move(value));
    if (place != nullptr) open_.push_back(place);
    return place != nullptr;
  }

  bool close() {
    open_.pop_back();
    return true;
  }

  bool fail(const char* sentence) {
    fault_ = ViewArchiveFault{path(), sentence};
    return false;
  }

  /// Of the value that comes next.
  [[nodiscard]] std::string path() const {
    std::string path;
    for (const ArchiveValue* value : open_) {
      if (const auto* list = std::get_if<ArchiveValue::List>(&value->value)) {
        const std::size_t index = value == open_.back() ? list->size() : list->size() - 1;
        path += '[' + std::to_string(index) + ']';
        continue;
      }
      const auto& members = std::get<ArchiveValue::Object>(value->value);
      if (members.empty()) break;
      if (!path.empty()) path += '.';
      path += displayableText(members.back().name.substr(0, longestNameInPath));
    }
    return path;
  }

  const std::size_t deepest_;
  ArchiveValue document_;
  std::vector<ArchiveValue*> open_;  // from the document to the innermost that has not ended
  std::size_t count_ = 0;
  std::optional<ViewArchiveFault> fault_;
};

}  // namespace

std::expected<ArchiveValue, ViewArchiveFault> parseArchive(std::string_view json,
                                                           std::size_t levelsAround) {
  if (json.size() > longestViewArchive) {
    return std::unexpected(ViewArchiveFault{"", "It is too long."});
  }
  // The parser takes a zero byte for the end of the text and would not look at what stands behind.
  if (json.contains('\0')) return std::unexpected(ViewArchiveFault{"", "It is not JSON."});
  ArchiveParser parser(levelsAround);
  const bool isWhole = Json::sax_parse(json.begin(), json.end(), &parser);
  return parser.take(isWhole);
}

}  // namespace lanternfold
