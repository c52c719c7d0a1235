#include "Rendering/PictureFile.h"

#include <cmath>
#include <utility>

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

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
  if (format_ == PictureFormat::png) {
    cairo_surface_write_to_png_stream(surface_.get(), append, bytes_.get());
  }
  cairo_surface_finish(surface_.get());
  const cairo_status_t status = cairo_surface_status(surface_.get());
  if (status != CAIRO_STATUS_SUCCESS) {
    return std::unexpected(std::string("the picture cannot be drawn: ") +
                           cairo_status_to_string(status));
  }
  return std::move(*bytes_);
}

}  // namespace lanternfold
