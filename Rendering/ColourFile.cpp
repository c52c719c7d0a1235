#include "Rendering/ColourFile.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

#include "Rendering/AssetFile.h"

namespace lanternfold {
namespace {

using Json = nlohmann::json;

/// More colours than any palette of widgets has.
constexpr std::size_t maximumColours = 256;

/// The opaque colour 0xRRGGBB.
Rgba opaque(std::uint32_t hex) {
  const auto component = [hex](unsigned shift) { return ((hex >> shift) & 0xFFU) / 255.0; };
  return {component(16), component(8), component(0), 1};
}

std::optional<Rgba> colourOf(const Json& value) {
  if (!value.is_string()) return std::nullopt;
  const auto& text = value.get_ref<const std::string&>();
  if (text.size() != 7 || text.front() != '#') return std::nullopt;
  std::uint32_t hex = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data() + 1, end, hex, 16);
  if (error != std::errc() || stop != end) return std::nullopt;
  return opaque(hex);
}

std::optional<ColourPair> pairOf(const Json& value) {
  if (!value.is_object() || value.size() != 2) return std::nullopt;
  const auto light = value.find("light");
  const auto dark = value.find("dark");
  if (light == value.end() || dark == value.end()) return std::nullopt;
  const std::optional<Rgba> lightColour = colourOf(*light);
  const std::optional<Rgba> darkColour = colourOf(*dark);
  if (!lightColour || !darkColour) return std::nullopt;
  return ColourPair{*lightColour, *darkColour};
}

/// What `palette` lacks of the stand-ins comes from them; the names of those.
std::string complete(ColourPalette& palette) {
  std::string lacking;
  for (auto& [name, pair] : standInColours()) {
    if (palette.emplace(name, pair).second) lacking += lacking.empty() ? name : ", " + name;
  }
  return lacking;
}

}  // namespace

std::expected<ColourPalette, std::string> coloursOf(std::string_view json) {
  const Json file = Json::parse(json, nullptr, false);
  if (!file.is_object()) return std::unexpected("it is no JSON object");
  if (file.size() > maximumColours) return std::unexpected("it has too many colours");
  ColourPalette palette;
  for (const auto& [name, value] : file.items()) {
    const std::optional<ColourPair> pair = pairOf(value);
    if (!pair) {
      return std::unexpected(name + R"( is not {"light": "#RRGGBB", "dark": "#RRGGBB"})");
    }
    palette.emplace(name, *pair);
  }
  return palette;
}

ColourPalette standInColours() {
  return {
      {"BackgroundGradientStart", {opaque(0x5A5A5A), opaque(0x3A3A3A)}},
      {"BackgroundGradientEnd", {opaque(0x444444), opaque(0x262626)}},
      {"AccentColor", {opaque(0x505050), opaque(0x303030)}},
      {"Foreground", {opaque(0xFFFFFF), opaque(0xF4F4F4)}},
      {"LabelForeground", {opaque(0x101010), opaque(0x080808)}},
      {"ReceivedTraffic", {opaque(0xF4F4F4), opaque(0xE8E8E8)}},
      {"SentTraffic", {opaque(0xC0C0C0), opaque(0xA8A8A8)}},
  };
}

ColourPalette readColours(const std::filesystem::path& folder,
                          const std::function<void(std::string_view)>& report) {
  const std::filesystem::path path = folder / colourFileName;
  const auto tell = [&](std::string_view reason) {
    if (report) report("greys stand in for colours: " + path.string() + ": " + std::string(reason));
  };
  const std::optional<std::string> json = readAssetFile(path);
  if (!json) {
    tell("there is no such file, or it is too large");
    return standInColours();
  }
  std::expected<ColourPalette, std::string> colours = coloursOf(*json);
  if (!colours) {
    tell(colours.error());
    return standInColours();
  }
  if (const std::string lacking = complete(*colours); !lacking.empty()) tell("it lacks " + lacking);
  return *std::move(colours);
}

}  // namespace lanternfold
