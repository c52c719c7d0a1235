// Feeds any text to the decoder of web services' answers: what it accepts are the texts it was
// asked for, within their bounds, and what it refuses comes with a reason.
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <string_view>

#include "NetworkMonitor/PublicInfo/AnswerTexts.h"

namespace {

void decode(std::string_view data, std::initializer_list<std::string_view> members) {
  const auto texts = lanternfold::decodeAnswerTexts(data, members);
  if (!texts) {
    if (!texts.error() || texts.error().message().starts_with("error ")) std::abort();
    return;
  }
  if (texts->size() != members.size()) std::abort();
  for (const std::string_view member : members) {
    const std::string& text = texts->at(member);
    if (text.size() > lanternfold::longestAnswerTextBytes) std::abort();
    // What counts as an address or a country holds nothing that a terminal would obey.
    const bool isPlain = lanternfold::isIPv4Literal(text) || lanternfold::isIPv6Literal(text) ||
                         lanternfold::isCountryCode(text);
    if (isPlain && text.find_first_not_of("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                          "abcdefghijklmnopqrstuvwxyz.:") != std::string::npos) {
      std::abort();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  decode(text, {"ip"});
  decode(text, {"isp", "countryCode", "as", "query"});
  return 0;
}
