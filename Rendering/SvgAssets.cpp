#include "Rendering/SvgAssets.h"

#include <cmath>
#include <utility>

#include <cairo.h>
#include <librsvg/rsvg.h>

#include "Rendering/AssetFile.h"
#include "ViewTree/DisplayableText.h"

namespace lanternfold {
namespace {

/// The shapes that show a strength: level1 to level4.
constexpr int levels = 4;

int byteOf(double component) { return static_cast<int>(std::lround(component * 255)); }

const guint8* bytesOf(const std::string& text) {
  return reinterpret_cast<const guint8*>(text.data());
}

}  // namespace

std::string styleSheet(const Rgba& colour, std::optional<double> strength) {
  std::string sheet = "svg{color:rgb(" + std::to_string(byteOf(colour.red)) + ',' +
                      std::to_string(byteOf(colour.green)) + ',' +
                      std::to_string(byteOf(colour.blue)) + ")}";
  // Every level is named each time: a drawing remembers what it was told before.
  for (int level = 1; level <= levels; ++level) {
    const bool isLit = !strength || *strength * levels > level - 1;
    sheet += ".level" + std::to_string(level) + (isLit ? "{opacity:1}" : "{opacity:0.3}");
  }
  return sheet;
}

SvgAssets::SvgAssets(std::filesystem::path folder, std::function<void(std::string_view)> report)
    : folder_(std::move(folder)), report_(std::move(report)) {}

bool SvgAssets::draw(cairo_t* surface, const std::string& name, const Rect& frame,
                     const Rgba& colour, std::optional<double> strength) {
  RsvgHandle* const handle = find(name);
  if (handle == nullptr) return false;
  const std::string sheet = styleSheet(colour, strength);
  const RsvgRectangle viewport{frame.left(), frame.top(), frame.size.width, frame.size.height};
  GError* error = nullptr;
  const bool drawn =
      rsvg_handle_set_stylesheet(handle, bytesOf(sheet), sheet.size(), &error) == TRUE &&
      rsvg_handle_render_document(handle, surface, &viewport, &error) == TRUE;
  if (!drawn) reportOnce(name, error ? error->message : "it cannot be drawn");
  g_clear_error(&error);
  return drawn;
}

bool SvgAssets::has(const std::string& name) { return find(name) != nullptr; }

RsvgHandle* SvgAssets::find(const std::string& name) {
  if (const auto known = handles_.find(name); known != handles_.end()) return known->second.get();
  if (handles_.size() >= maximumAssets) return nullptr;
  return handles_.emplace(name, load(name)).first->second.get();
}

SvgHandle SvgAssets::load(const std::string& name) {
  // Asset names are single file names; anything else could leave the folder.
  const bool isFileName =
      !name.empty() && name.find('/') == std::string::npos && name.find('\0') == std::string::npos;
  const std::optional<std::string> svg =
      isFileName ? readAssetFile(folder_ / (name + ".svg")) : std::nullopt;
  if (!svg) {
    reportOnce(name, "there is no such file, or it is too large");
    return nullptr;
  }
  GError* error = nullptr;
  SvgHandle handle(rsvg_handle_new_from_data(bytesOf(*svg), svg->size(), &error));
  if (!handle) reportOnce(name, error->message);
  g_clear_error(&error);
  return handle;
}

void SvgAssets::reportOnce(const std::string& name, std::string_view reason) {
  if (!reported_.insert(name).second || !report_) return;
  const std::string file = displayableText((folder_ / (name + ".svg")).string());
  report_("cannot draw the picture " + file + ": " + std::string(reason));
}

}  // namespace lanternfold
