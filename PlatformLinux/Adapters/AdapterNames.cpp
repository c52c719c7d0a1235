#include "PlatformLinux/Adapters/AdapterNames.h"

#include <algorithm>
#include <array>
#include <vector>

#include "Support/AsciiCase.h"
#include "Support/Utf8.h"

namespace lanternfold {

namespace {

constexpr std::size_t longestNameBytes = 96;

using Words = std::vector<std::string>;

/// Words of company law and of the trade, in lower case, without commas and full stops at the end.
constexpr std::array<std::string_view, 24> companyWords = {
    "and",          "ag",           "co",          "communications", "company",
    "components",   "corp",         "corporation", "electronics",    "electronic",
    "gmbh",         "group",        "inc",         "incorporated",   "limited",
    "llc",          "ltd",          "s.p.a",       "semiconductor",  "semiconductors",
    "subsidiaries", "technologies", "technology",  "telecom"};

/// What every adapter is; dropped from the end of a model only, since "Ethernet Controller X710"
/// and "Ethernet Connection I219-V" would read oddly without.
constexpr std::array<std::string_view, 7> modelEndings = {
    "adapter", "card", "connection", "controller", "device", "module", "network"};

/// Without the marks that carry no sound, and with every control character a space.
std::string plainText(std::string_view text) {
  static constexpr std::array<std::string_view, 4> marks = {"(R)", "(r)", "(TM)", "(tm)"};
  std::string result(text);
  for (const std::string_view mark : marks) {
    for (auto at = result.find(mark); at != result.npos; at = result.find(mark, at)) {
      result.erase(at, mark.size());
    }
  }
  std::ranges::replace_if(
      result, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
  return result;
}

Words wordsOf(std::string_view text) {
  Words words;
  while (!text.empty()) {
    const std::size_t length = std::min(text.find(' '), text.size());
    if (length > 0) {
      words.emplace_back(text.substr(0, length));
    }
    text.remove_prefix(std::min(text.size(), length + 1));
  }
  return words;
}

std::string joined(const Words& words) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : " ") + word;
  }
  return text;
}

std::string_view withoutPunctuation(std::string_view word) {
  const std::size_t last = word.find_last_not_of(".,");
  return word.substr(0, last == word.npos ? 0 : last + 1);
}

template <std::size_t Count>
bool isAmong(const std::array<std::string_view, Count>& list, std::string_view word) {
  const std::string key = asciiLowercased(withoutPunctuation(word));
  return key.empty() || std::ranges::find(list, key) != list.end();
}

/// "Advanced Devices, Inc. [AD]" → "AD".
std::optional<std::string> shortNameInBrackets(std::string_view vendor) {
  const std::size_t open = vendor.rfind('[');
  if (open == vendor.npos || !vendor.ends_with(']') || vendor.size() - open <= 2)
    return std::nullopt;
  return std::string(vendor.substr(open + 1, vendor.size() - open - 2));
}

/// The first word always stays: it is the name.
Words vendorWords(std::string_view vendor) {
  Words words = wordsOf(shortNameInBrackets(vendor).value_or(std::string(vendor)));
  if (words.empty()) return words;
  words.erase(std::remove_if(words.begin() + 1, words.end(),
                             [](const std::string& word) { return isAmong(companyWords, word); }),
              words.end());
  for (std::string& word : words) {
    while (word.ends_with(',')) {
      word.pop_back();
    }
  }
  return words;
}

/// A model that is nothing but what every adapter is stays as it was.
Words modelWords(std::string_view model) {
  const Words all = wordsOf(model);
  Words words = all;
  while (!words.empty() && isAmong(modelEndings, words.back())) {
    words.pop_back();
  }
  return words.empty() ? all : words;
}

bool beginsWith(const Words& words, const Words& beginning) {
  return words.size() >= beginning.size() &&
         std::equal(beginning.begin(), beginning.end(), words.begin(),
                    [](const std::string& one, const std::string& other) {
                      return asciiLowercased(one) == asciiLowercased(other);
                    });
}

}  // namespace

std::optional<std::string> adapterName(const HardwareNames& names) {
  const Words model = modelWords(plainText(names.model));
  if (model.empty()) return std::nullopt;
  Words words = vendorWords(plainText(names.vendor));
  if (beginsWith(model, words)) {
    words.clear();
  }
  words.insert(words.end(), model.begin(), model.end());
  std::string name = joined(words);
  name.resize(cutBetweenCharacters(name, longestNameBytes).size());
  return name;
}

}  // namespace lanternfold
