#include "ViewTree/ArchiveMembers.h"

#include <algorithm>
#include <cmath>
#include <variant>

#include "ViewTree/DisplayableText.h"
#include "ViewTree/LinkUrl.h"

namespace lanternfold {

std::optional<ArchiveMembers> ArchiveMembers::of(const ArchiveValue& value, ArchivePlace& place,
                                                 std::string_view name) {
  const auto* const object = std::get_if<ArchiveValue::Object>(&value.value);
  if (object != nullptr) return ArchiveMembers(*object, place);
  place.fail(name, "It is not an object.");
  return std::nullopt;
}

const ArchiveValue* ArchiveMembers::find(std::string_view name) const {
  const auto found = std::ranges::find(object_, name, &ArchiveMember::name);
  return found == object_.end() ? nullptr : &found->value;
}

const ArchiveValue* ArchiveMembers::required(std::string_view name) const {
  const ArchiveValue* const value = find(name);
  if (value == nullptr) place_.fail(name, "It is missing.");
  return value;
}

const std::string* ArchiveMembers::requiredText(std::string_view name) const {
  const ArchiveValue* const value = required(name);
  if (value == nullptr) return nullptr;
  const auto* const text = std::get_if<std::string>(&value->value);
  if (text == nullptr) place_.fail(name, "It is not a text.");
  return text;
}

void ArchiveMembers::text(std::string_view name, std::string& text) const {
  if (const std::string* const found = requiredText(name)) text = displayableText(*found);
}

void ArchiveMembers::optionalText(std::string_view name, std::string& text) const {
  if (find(name) != nullptr) this->text(name, text);
}

void ArchiveMembers::url(std::string_view name, std::string& url) const {
  const std::string* const found = requiredText(name);
  if (found == nullptr) return;
  if (!isLinkUrl(*found)) return place_.fail(name, "It is not a URL.");
  url = *found;
}

void ArchiveMembers::number(std::string_view name, double& number, const NumberRule& rule) const {
  const ArchiveValue* const value = rule.standard ? find(name) : required(name);
  if (value != nullptr) {
    number = numberOf(*value, name, rule);
  } else if (rule.standard) {
    number = *rule.standard;
  }
}

void ArchiveMembers::optionalNumber(std::string_view name, std::optional<double>& number,
                                    const NumberRule& rule) const {
  if (const ArchiveValue* const value = find(name)) number = numberOf(*value, name, rule);
}

void ArchiveMembers::count(std::string_view name, std::size_t& count, const CountRule& rule) const {
  const ArchiveValue* const value = find(name);
  count = rule.standard;
  if (value == nullptr) return;
  const double number = numberOf(*value, name, {1, static_cast<double>(rule.most)});
  if (place_.fault()) return;
  if (number != std::floor(number)) return place_.fail(name, "It is not a whole number.");
  count = static_cast<std::size_t>(number);
}

void ArchiveMembers::numbers(std::string_view name, std::vector<double>& numbers,
                             const NumberRule& rule) const {
  const ArchiveValue* const value = required(name);
  if (value == nullptr) return;
  const auto* const list = std::get_if<ArchiveValue::List>(&value->value);
  if (list == nullptr) return place_.fail(name, "It is not a list.");
  if (list->empty()) return place_.fail(name, "It is empty.");
  if (list->size() > mostRowSpacings) return place_.fail(name, "There are too many of them.");
  for (std::size_t index = 0; index < list->size(); ++index) {
    const std::string one = std::string(name) + '[' + std::to_string(index) + ']';
    numbers.push_back(numberOf((*list)[index], one, rule));
  }
}

void ArchiveMembers::alignment(std::string_view name, Alignment& alignment) const {
  const std::size_t index = indexOf(name, alignmentNames, indexOfCentre);
  alignment = {static_cast<HorizontalAlignment>(index % 3),
               static_cast<VerticalAlignment>(index / 3)};
}

void ArchiveMembers::colour(std::string_view name, Colour& colour) const {
  const ArchiveValue* const value = required(name);
  const auto members = value != nullptr ? of(*value, place_, name) : std::nullopt;
  if (!members) return;
  const ArchivePlace::Step step(place_, name);
  if (members->find("name") != nullptr) {
    members->text("name", colour.value.emplace<std::string>());
  } else {
    Rgba& fixed = colour.value.emplace<Rgba>();
    members->number("red", fixed.red, fractionRule);
    members->number("green", fixed.green, fractionRule);
    members->number("blue", fixed.blue, fractionRule);
    members->number("alpha", fixed.alpha, fractionRule.unless(1));
  }
  members->number("opacity", colour.opacity, fractionRule.unless(1));
}

std::size_t ArchiveMembers::indexOf(std::string_view name, std::span<const std::string_view> words,
                                    std::size_t standard) const {
  if (find(name) == nullptr) return standard;
  const std::string* const text = requiredText(name);
  if (text == nullptr) return standard;
  const auto found = std::ranges::find(words, *text);
  if (found != words.end()) return static_cast<std::size_t>(found - words.begin());
  place_.fail(name, "It is none of the words that may stand here.");
  return standard;
}

double ArchiveMembers::numberOf(const ArchiveValue& value, std::string_view name,
                                const NumberRule& rule) const {
  const auto* const word = std::get_if<std::string>(&value.value);
  if (rule.mayBeUnlimited && word != nullptr && *word == "unlimited") return unlimited;
  const auto* const number = std::get_if<double>(&value.value);
  if (number == nullptr) {
    place_.fail(name, "It is not a number.");
  } else if (*number < rule.least) {
    place_.fail(name, "The number is too small.");
  } else if (*number > rule.most) {
    place_.fail(name, "The number is too large.");
  }
  return number != nullptr ? *number : 0;
}

}  // namespace lanternfold
