#include "Rendering/MissingGlyphs.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <glib.h>
#include <utility>

#include <pango/pango.h>

namespace lanternfold {
namespace {

bool isCommon(GUnicodeScript script) {
  return script == G_UNICODE_SCRIPT_COMMON || script == G_UNICODE_SCRIPT_INHERITED;
}

bool isMeaningless(char32_t character) {
  const GUnicodeType type = g_unichar_type(character);
  return type == G_UNICODE_PRIVATE_USE || type == G_UNICODE_UNASSIGNED ||
         type == G_UNICODE_SURROGATE;
}

/// Pictographs stand in these blocks, beside a few signs that the same typefaces have.
bool isEmoji(char32_t character) {
  return (character >= 0x2600 && character <= 0x27BF) ||
         (character >= 0x1F000 && character <= 0x1FAFF);
}

bool isEastAsian(GUnicodeScript script) {
  constexpr std::array scripts{G_UNICODE_SCRIPT_HAN, G_UNICODE_SCRIPT_HIRAGANA,
                               G_UNICODE_SCRIPT_KATAKANA, G_UNICODE_SCRIPT_HANGUL,
                               G_UNICODE_SCRIPT_BOPOMOFO};
  return std::ranges::find(scripts, script) != scripts.end();
}

std::string scriptName(GUnicodeScript script) {
  // Both libraries number the scripts alike; only one of them has their names.
  auto* const names = static_cast<GEnumClass*>(g_type_class_ref(PANGO_TYPE_SCRIPT));
  const GEnumValue* const value = g_enum_get_value(names, static_cast<int>(script));
  std::string name = value ? value->value_nick : "unknown";
  g_type_class_unref(names);
  std::ranges::replace(name, '-', ' ');
  return name;
}

std::string codePoint(char32_t character) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "U+%04X", static_cast<unsigned>(character));
  return text.data();
}

}  // namespace

std::string characterGroup(char32_t character) {
  const GUnicodeScript script = g_unichar_get_script(character);
  if (isMeaningless(character)) return "characters without a meaning of their own";
  if (isEmoji(character)) return "emoji";
  if (isCommon(script)) return "signs";
  return "letters of the script " + scriptName(script);
}

std::string_view packageWithCharacter(char32_t character) {
  if (isMeaningless(character)) return {};
  if (isEmoji(character)) return "fonts-noto-color-emoji";
  if (isEastAsian(g_unichar_get_script(character))) return "fonts-noto-cjk";
  return "fonts-noto-core";
}

MissingGlyphs::MissingGlyphs(std::function<void(std::string_view)> report)
    : report_(std::move(report)) {}

void MissingGlyphs::missCharacter(char32_t character) {
  const std::string group = characterGroup(character);
  if (!told_.insert(group).second || !report_) return;
  const std::string_view package = packageWithCharacter(character);
  std::string line = "no typeface has the " + group + " such as " + codePoint(character) +
                     ": boxes stand in for them";
  if (!package.empty()) line.append("; install the package ").append(package);
  report_(line);
}

void MissingGlyphs::missEverything() {
  if (!told_.insert("everything").second || !report_) return;
  report_(
      "no typeface is installed: bars stand in for texts; install a package such as fonts-inter");
}

}  // namespace lanternfold
