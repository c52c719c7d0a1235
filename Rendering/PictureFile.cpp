#include "Rendering/PictureFile.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <map>
#include <string_view>
#include <utility>

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include "Rendering/PngImage.h"

namespace lanternfold {
namespace {

cairo_status_t append(void* bytes, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

CairoSurface makeSurface(PictureFormat format, Size pixels, std::string& bytes) {
  if (format == PictureFormat::svg) {
    CairoSurface surface(
        cairo_svg_surface_create_for_stream(append, &bytes, pixels.width, pixels.height));
    cairo_svg_surface_set_document_unit(surface.get(), CAIRO_SVG_UNIT_PX);
    return surface;
  }
  if (format == PictureFormat::pdf) {
    CairoSurface surface(
        cairo_pdf_surface_create_for_stream(append, &bytes, pixels.width, pixels.height));
    // Without a date the same picture is the same bytes.
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "");
    return surface;
  }
  return CairoSurface(cairo_image_surface_create(
      CAIRO_FORMAT_ARGB32, static_cast<int>(pixels.width), static_cast<int>(pixels.height)));
}

/// An SVG with its surfaces numbered from 0: cairo goes on counting from the last picture. Numbers
/// stand behind the quotation mark or the hash that begins a name.
std::string renumbered(const std::string& svg) {
  constexpr std::string_view prefix = "surface";
  std::string result;
  std::map<std::string, std::size_t, std::less<>> numbers;
  std::size_t copied = 0;
  for (std::size_t at = svg.find(prefix); at != std::string::npos; at = svg.find(prefix, at + 1)) {
    const std::size_t digits = at + prefix.size();
    const std::size_t end = std::min(svg.find_first_not_of("0123456789", digits), svg.size());
    const bool isName = at > 0 && (svg[at - 1] == '"' || svg[at - 1] == '#') && end > digits;
    if (!isName) continue;
    const auto number = numbers.emplace(svg.substr(digits, end - digits), numbers.size()).first;
    result.append(svg, copied, digits - copied).append(std::to_string(number->second));
    copied = end;
  }
  return result.append(svg, copied);
}

}  // namespace

std::expected<Size, std::string> pictureSize(Size points, double scale) {
  if (!(scale > 0) || !std::isfinite(scale)) {
    return std::unexpected("the scale of a picture must be a number above 0");
  }
  const Size pixels{std::ceil(points.width * scale), std::ceil(points.height * scale)};
  if (!(pixels.width >= 1) || !(pixels.height >= 1)) {
    return std::unexpected("the picture would be empty: its size must be above 0");
  }
  if (pixels.width > maximumPictureSidePixels || pixels.height > maximumPictureSidePixels ||
      pixels.width * pixels.height > maximumPicturePixels) {
    return std::unexpected("the picture would be too large: choose a smaller scale");
  }
  return pixels;
}

PictureFile::PictureFile(PictureFormat format, Size pixels, const std::string& title)
    : format_(format), surface_(makeSurface(format, pixels, *bytes_)) {
  if (format == PictureFormat::pdf && !title.empty()) {
    cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_TITLE, title.c_str());
  }
}

std::expected<std::string, std::string> PictureFile::finish() {
  if (format_ != PictureFormat::png) cairo_surface_finish(surface_.get());
  const cairo_status_t status = cairo_surface_status(surface_.get());
  if (status != CAIRO_STATUS_SUCCESS) {
    return std::unexpected(std::string("the picture cannot be drawn: ") +
                           cairo_status_to_string(status));
  }
  switch (format_) {
    case PictureFormat::svg:
      return renumbered(*bytes_);
    case PictureFormat::pdf:
      return std::move(*bytes_);
    case PictureFormat::png:
      break;
  }
  std::expected<std::string, std::string> png = pngOf(surface_.get());
  if (!png) return std::unexpected("the picture cannot be written: " + png.error());
  return png;
}

}  // namespace lanternfold
