#include "NetworkMonitor/PublicInfo/AnswerTexts.h"

#include <algorithm>
#include <functional>
#include <set>

#include <nlohmann/json.hpp>

#include "NetBase/AddressText.h"
#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"

namespace lanternfold {
namespace {

using Json = nlohmann::json;
using Error = PublicInfoDecodingError;

/// Watches a text being parsed for what the parsed value no longer shows.
class ParseWatcher {
 public:
  explicit ParseWatcher(std::initializer_list<std::string_view> members) : members_(members) {}

  /// Called by the parser for every event; whether to keep the value.
  bool operator()(int depth, Json::parse_event_t event, const Json& parsed) {
    if (event == Json::parse_event_t::key && depth == 1) {
      noteKey(parsed.get_ref<const std::string&>());
    }
    const bool opens =
        event == Json::parse_event_t::object_start || event == Json::parse_event_t::array_start;
    if (!opens || depth <= deepestAnswer) return true;
    isTooDeep_ = true;
    return false;
  }

  [[nodiscard]] bool isTooDeep() const { return isTooDeep_; }
  /// The first of the members that stood twice; empty when none did.
  [[nodiscard]] std::string_view duplicate() const { return duplicate_; }

 private:
  void noteKey(std::string_view key) {
    const auto* const member = std::ranges::find(members_, key);
    if (member == members_.end()) return;
    if (!seen_.insert(*member).second && duplicate_.empty()) duplicate_ = *member;
  }

  const std::initializer_list<std::string_view> members_;
  std::set<std::string_view> seen_;
  std::string_view duplicate_;
  bool isTooDeep_ = false;
};

std::expected<Json, std::error_code> parsedObject(std::string_view data,
                                                  std::initializer_list<std::string_view> members) {
  if (data.size() > longestAnswerBytes) return std::unexpected(make_error_code(Error::tooLong));
  ParseWatcher watcher(members);
  Json value = Json::parse(data.begin(), data.end(), std::ref(watcher), /*allow_exceptions=*/false);
  // The parser takes a zero byte for the end of the text and would not look at what stands behind.
  const bool endsEarly = data.find('\0') != std::string_view::npos;
  if (value.is_discarded() || endsEarly) return std::unexpected(make_error_code(Error::notJson));
  if (watcher.isTooDeep()) return std::unexpected(make_error_code(Error::tooDeep));
  if (!value.is_object()) return std::unexpected(make_error_code(Error::notAnObject));
  if (!watcher.duplicate().empty()) {
    return std::unexpected(decodingError(Error::duplicateMember, watcher.duplicate()));
  }
  return value;
}

}  // namespace

std::expected<AnswerTexts, std::error_code> decodeAnswerTexts(
    std::string_view data, std::initializer_list<std::string_view> members) {
  const auto object = parsedObject(data, members);
  if (!object) return std::unexpected(object.error());
  AnswerTexts texts;
  for (const std::string_view member : members) {
    const auto found = object->find(member);
    if (found == object->end()) {
      return std::unexpected(decodingError(Error::missingMember, member));
    }
    const auto* const text = found->get_ptr<const std::string*>();
    if (text == nullptr) return std::unexpected(decodingError(Error::notAString, member));
    if (text->size() > longestAnswerTextBytes) {
      return std::unexpected(decodingError(Error::tooLong, member));
    }
    texts.emplace(member, *text);
  }
  return texts;
}

bool isIPv4Literal(std::string_view text) { return ipv4OfText(text).has_value(); }

bool isIPv6Literal(std::string_view text) { return ipv6OfText(text).has_value(); }

bool isCountryCode(std::string_view text) {
  return text.size() == 2 && std::ranges::all_of(text, [](char c) {
           return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
         });
}

}  // namespace lanternfold
