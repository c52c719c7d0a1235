#include "Rendering/AssetPainter.h"

#include <algorithm>
#include <utility>

#include <cairo.h>

#include "Rendering/CairoColour.h"

namespace lanternfold {
namespace {

/// Larger drawings are made anew each time: 512 by 512 pixels are a megabyte.
constexpr double largestKeptPixels = 512 * 512;
constexpr double largestKeptSide = 4096;
/// Larger drawings are cut down to it, in pixels.
constexpr double largestSide = 16'384;
/// Of these, a generation.
constexpr std::size_t drawingsKept = 16;

void paintStandIn(cairo_t* surface, const Rect& frame, const Rgba& colour) {
  const double inset = std::min(frame.size.width, frame.size.height) * 0.15;
  const double right = frame.right() - inset;
  const double bottom = frame.bottom() - inset;
  cairo_save(surface);
  setColour(surface, colour);
  cairo_set_line_width(surface, 1);
  cairo_rectangle(surface, frame.left() + inset, frame.top() + inset, right - frame.left() - inset,
                  bottom - frame.top() - inset);
  cairo_move_to(surface, frame.left() + inset, frame.top() + inset);
  cairo_line_to(surface, right, bottom);
  cairo_stroke(surface);
  cairo_restore(surface);
}

/// `frame` with sides that librsvg can draw.
Rect bounded(const Rect& frame, const DeviceGrid& grid) {
  const auto side = [&](double length) { return std::min(length, largestSide / grid.scale()); };
  return {frame.origin, {side(frame.size.width), side(frame.size.height)}};
}

bool isKept(const DeviceGrid& grid, const Rect& pixels) {
  const auto [width, height] = pixels.size;
  return grid.hasPixels() && width <= largestKeptSide && height <= largestKeptSide &&
         width * height <= largestKeptPixels;
}

}  // namespace

AssetPainter::AssetPainter(std::filesystem::path folder,
                           std::function<void(std::string_view)> report)
    : assets_(std::move(folder), std::move(report)), drawings_(drawingsKept) {}

std::size_t AssetPainter::KeyHash::operator()(const Key& key) const {
  const std::size_t name = std::hash<std::string>()(key.name);
  const std::size_t strength = std::hash<double>()(key.strength.value_or(-1));
  return name ^ (strength << 1U) ^ (static_cast<std::size_t>(key.width) << 32U) ^
         static_cast<std::size_t>(key.height);
}

void AssetPainter::paint(cairo_t* surface, const DeviceGrid& grid, const DrawSymbol& symbol) {
  const Rect frame = grid.aligned(symbol.frame);
  const Rect pixels = grid.alignedPixels(symbol.frame);
  if (!isKept(grid, pixels)) {
    paintLines(surface, bounded(frame, grid), symbol.name, symbol.colour, symbol.strength);
    return;
  }
  cairo_surface_t* const shape =
      drawing({symbol.name, symbol.strength, static_cast<int>(pixels.size.width),
               static_cast<int>(pixels.size.height)});
  if (shape == nullptr) {
    paintStandIn(surface, frame, symbol.colour);
    return;
  }
  cairo_save(surface);
  grid.usePixels(surface);
  setColour(surface, symbol.colour);
  cairo_mask_surface(surface, shape, pixels.left(), pixels.top());
  cairo_restore(surface);
}

void AssetPainter::paint(cairo_t* surface, const DeviceGrid& grid, const DrawImage& image) {
  const Rect frame = grid.aligned(image.frame);
  const Rect pixels = grid.alignedPixels(image.frame);
  const Rgba white{1, 1, 1, image.opacity};
  if (!isKept(grid, pixels)) {
    paintLines(surface, bounded(frame, grid), image.name, white, std::nullopt);
    return;
  }
  cairo_surface_t* const picture =
      drawing({image.name, std::nullopt, static_cast<int>(pixels.size.width),
               static_cast<int>(pixels.size.height)});
  if (picture == nullptr) {
    paintStandIn(surface, frame, white);
    return;
  }
  cairo_save(surface);
  grid.usePixels(surface);
  cairo_set_source_surface(surface, picture, pixels.left(), pixels.top());
  cairo_paint_with_alpha(surface, image.opacity);
  cairo_restore(surface);
}

cairo_surface_t* AssetPainter::drawing(const Key& key) {
  if (const CairoSurface* const known = drawings_.find(key)) return known->get();
  if (!assets_.has(key.name)) return nullptr;
  CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, key.width, key.height));
  const CairoContext context(cairo_create(surface.get()));
  const Rect frame{{}, {static_cast<double>(key.width), static_cast<double>(key.height)}};
  if (!assets_.draw(context.get(), key.name, frame, {1, 1, 1, 1}, key.strength)) return nullptr;
  return drawings_.keep(key, std::move(surface)).get();
}

void AssetPainter::paintLines(cairo_t* surface, const Rect& frame, const std::string& name,
                              const Rgba& colour, std::optional<double> strength) {
  if (!canDraw(name, frame, colour, strength)) {
    paintStandIn(surface, frame, colour);
    return;
  }
  cairo_save(surface);
  cairo_rectangle(surface, frame.left(), frame.top(), frame.size.width, frame.size.height);
  cairo_clip(surface);
  if (colour.alpha < 1) cairo_push_group(surface);
  const bool drawn = assets_.draw(surface, name, frame, colour, strength);
  if (colour.alpha < 1) {
    cairo_pop_group_to_source(surface);
    cairo_paint_with_alpha(surface, colour.alpha);
  }
  cairo_restore(surface);
  if (!drawn) paintStandIn(surface, frame, colour);
}

bool AssetPainter::canDraw(const std::string& name, const Rect& frame, const Rgba& colour,
                           std::optional<double> strength) {
  const cairo_rectangle_t extents{frame.left(), frame.top(), frame.size.width, frame.size.height};
  const CairoSurface trial(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &extents));
  const CairoContext context(cairo_create(trial.get()));
  return assets_.draw(context.get(), name, frame, colour, strength);
}

}  // namespace lanternfold
