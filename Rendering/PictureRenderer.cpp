#include "Rendering/PictureRenderer.h"

#include <cmath>

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include "Rendering/AssetColours.h"
#include "Rendering/AssetFolder.h"
#include "Rendering/CairoHandles.h"
#include "Rendering/Painter.h"
#include "Rendering/PangoTextMeasurer.h"
#include "ViewTree/DrawList.h"
#include "ViewTree/Layout.h"

namespace lanternfold {
namespace {

cairo_status_t append(void* bytes, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

/// The picture's size in pixels; an error when it is none or too large.
std::expected<Size, std::string> pixelSize(const PictureRequest& request) {
  if (!(request.scale > 0) || !std::isfinite(request.scale)) {
    return std::unexpected("the scale of a picture must be a number above 0");
  }
  const Size pixels{std::ceil(request.sizePoints.width * request.scale),
                    std::ceil(request.sizePoints.height * request.scale)};
  if (!(pixels.width >= 1) || !(pixels.height >= 1)) {
    return std::unexpected("the picture would be empty: its size must be above 0");
  }
  if (pixels.width > maximumPictureSidePixels || pixels.height > maximumPictureSidePixels ||
      pixels.width * pixels.height > maximumPicturePixels) {
    return std::unexpected("the picture would be too large: choose a smaller scale");
  }
  return pixels;
}

/// A surface that appends what its format writes to `bytes` once it is finished; an image that has
/// to be written when it is a PNG.
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

DrawList drawListOf(const View& view, const PictureRequest& request,
                    const RenderingResources& resources) {
  const PangoTextMeasurer measurer;
  const LaidOutView laidOut = layOut(view, request.sizePoints, {measurer, request.drawingTime});
  return makeDrawList(laidOut, {assetColours(), request.scheme, resources.report});
}

void paintPicture(const DrawList& list, const PictureRequest& request, cairo_surface_t* surface,
                  const RenderingResources& resources) {
  const CairoContext context(cairo_create(surface));
  cairo_scale(context.get(), request.scale, request.scale);
  addRoundedRectangle(context.get(), {{0, 0}, request.sizePoints}, request.cornerRadiusPoints);
  cairo_clip(context.get());
  AssetFolder assets(resources.assetFolder, resources.report);
  paint(list, context.get(), assets);
}

}  // namespace

std::expected<std::string, std::string> renderPicture(const View& view,
                                                      const PictureRequest& request,
                                                      const RenderingResources& resources) {
  const std::expected<Size, std::string> pixels = pixelSize(request);
  if (!pixels) return std::unexpected(pixels.error());
  std::string bytes;
  const CairoSurface surface = makeSurface(request.format, *pixels, bytes);
  if (cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS) {
    paintPicture(drawListOf(view, request, resources), request, surface.get(), resources);
  }
  if (request.format == PictureFormat::png) {
    cairo_surface_write_to_png_stream(surface.get(), append, &bytes);
  }
  cairo_surface_finish(surface.get());
  const cairo_status_t status = cairo_surface_status(surface.get());
  if (status != CAIRO_STATUS_SUCCESS) {
    return std::unexpected(std::string("the picture cannot be drawn: ") +
                           cairo_status_to_string(status));
  }
  return bytes;
}

}  // namespace lanternfold
