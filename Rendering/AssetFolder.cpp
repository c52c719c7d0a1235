#include "Rendering/AssetFolder.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <utility>

#include <cairo.h>
#include <librsvg/rsvg.h>

namespace lanternfold {
namespace {

/// No symbol or logo needs more; a larger file is refused.
constexpr std::uintmax_t maximumAssetBytes = 256 * 1024;

int byteOf(double component) { return static_cast<int>(std::lround(component * 255)); }

/// Gives what is drawn in the current colour its colour.
std::string colourSheet(const Rgba& colour) {
  return "svg{color:rgb(" + std::to_string(byteOf(colour.red)) + ',' +
         std::to_string(byteOf(colour.green)) + ',' + std::to_string(byteOf(colour.blue)) + ")}";
}

void drawStandIn(cairo_t* surface, const Rect& frame, const Rgba& colour) {
  const double inset = std::min(frame.size.width, frame.size.height) * 0.15;
  const double right = frame.right() - inset;
  const double bottom = frame.bottom() - inset;
  cairo_save(surface);
  cairo_set_source_rgba(surface, colour.red, colour.green, colour.blue, colour.alpha);
  cairo_set_line_width(surface, 1);
  cairo_rectangle(surface, frame.left() + inset, frame.top() + inset, right - frame.left() - inset,
                  bottom - frame.top() - inset);
  cairo_move_to(surface, frame.left() + inset, frame.top() + inset);
  cairo_line_to(surface, right, bottom);
  cairo_stroke(surface);
  cairo_restore(surface);
}

}  // namespace

AssetFolder::AssetFolder(std::filesystem::path folder, std::function<void(std::string_view)> report)
    : folder_(std::move(folder)), report_(std::move(report)) {}

void AssetFolder::drawSymbol(cairo_t* surface, const std::string& name, const Rect& frame,
                             const Rgba& colour) {
  if (!draw(surface, name, frame, colour)) drawStandIn(surface, frame, colour);
}

void AssetFolder::drawImage(cairo_t* surface, const std::string& name, const Rect& frame,
                            double opacity) {
  const Rgba white{1, 1, 1, opacity};
  if (!draw(surface, name, frame, white)) drawStandIn(surface, frame, white);
}

bool AssetFolder::draw(cairo_t* surface, const std::string& name, const Rect& frame,
                       const Rgba& colour) {
  const SvgHandle handle = load(name);
  if (!handle) return false;
  const std::string sheet = colourSheet(colour);
  const auto* bytes = reinterpret_cast<const guint8*>(sheet.data());
  if (!rsvg_handle_set_stylesheet(handle.get(), bytes, sheet.size(), nullptr)) return false;
  const RsvgRectangle viewport{frame.left(), frame.top(), frame.size.width, frame.size.height};
  const bool isTranslucent = colour.alpha < 1;
  if (isTranslucent) cairo_push_group(surface);
  GError* error = nullptr;
  const bool drawn = rsvg_handle_render_document(handle.get(), surface, &viewport, &error) == TRUE;
  if (isTranslucent) {
    cairo_pop_group_to_source(surface);
    cairo_paint_with_alpha(surface, colour.alpha);
  }
  if (!drawn) reportOnce(name, error ? error->message : "it cannot be drawn");
  g_clear_error(&error);
  return drawn;
}

SvgHandle AssetFolder::load(const std::string& name) {
  const std::optional<std::string>& svg = contents(name);
  if (!svg) {
    reportOnce(name, "there is no such file, or it is too large");
    return nullptr;
  }
  GError* error = nullptr;
  SvgHandle handle(
      rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(svg->data()), svg->size(), &error));
  if (!handle) reportOnce(name, error->message);
  g_clear_error(&error);
  return handle;
}

const std::optional<std::string>& AssetFolder::contents(const std::string& name) {
  if (const auto known = contents_.find(name); known != contents_.end()) return known->second;
  std::optional<std::string>& read = contents_[name];
  // Asset names are single file names; anything else could leave the folder.
  if (name.empty() || name.find('/') != std::string::npos) return read;
  const std::filesystem::path path = folder_ / (name + ".svg");
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (error || size > maximumAssetBytes) return read;
  std::ifstream file(path, std::ios::binary);
  if (file) read.emplace(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  return read;
}

void AssetFolder::reportOnce(const std::string& name, std::string_view reason) {
  if (!reported_.emplace(name, true).second || !report_) return;
  report_("cannot draw the picture " + (folder_ / (name + ".svg")).string() + ": " +
          std::string(reason));
}

}  // namespace lanternfold
