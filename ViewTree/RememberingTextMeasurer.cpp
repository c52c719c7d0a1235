#include "ViewTree/RememberingTextMeasurer.h"

namespace lanternfold {
namespace {

// What it costs to ask for a text, in questions that views ask each other.
constexpr std::size_t stepsOfText = 4;
constexpr std::size_t bytesOfStep = 8;

}  // namespace

std::size_t RememberingTextMeasurer::Hash::operator()(const KeyView& key) const {
  constexpr std::size_t spread = 0x9E3779B97F4A7C15U;
  const std::size_t text = std::hash<std::string_view>()(key.text);
  const std::size_t size = std::hash<double>()(key.font.size);
  const auto kind =
      static_cast<std::size_t>(key.font.weight) * 2 + static_cast<std::size_t>(key.font.leading);
  return text ^ (size + kind) * spread;
}

Size RememberingTextMeasurer::measure(std::string_view text, const Font& font) const {
  const KeyView key(text, font);
  if (const auto known = known_.find(key); known != known_.end()) return known->second;
  if (steps_.haveRunOut()) return {text.empty() ? 0 : unlimited, 0};
  steps_.take(stepsOfText + text.size() / bytesOfStep);
  const Size size = measurer_.measure(text, font);
  known_.emplace(Key{std::string(text), font}, size);
  return size;
}

}  // namespace lanternfold
