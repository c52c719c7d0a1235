#include "Rendering/PictureRenderer.h"

#include <utility>

#include <cairo.h>

#include "Rendering/ColourFile.h"
#include "ViewTree/DrawList.h"
#include "ViewTree/Layout.h"

namespace lanternfold {

PictureRenderer::PictureRenderer(RenderingResources resources)
    : report_(std::move(resources.report)),
      colours_(readColours(resources.assetFolder, report_)),
      painter_(std::move(resources.assetFolder), report_, resources.language),
      measurer_(painter_.texts()) {}

std::expected<std::string, std::string> PictureRenderer::picture(const View& view,
                                                                 const PictureRequest& request) {
  const std::expected<Size, std::string> pixels = pictureSize(request.sizePoints, request.scale);
  if (!pixels) return std::unexpected(pixels.error());
  PictureFile file(request.format, *pixels, request.title);
  if (cairo_surface_status(file.surface()) == CAIRO_STATUS_SUCCESS) {
    const CairoContext context(cairo_create(file.surface()));
    cairo_scale(context.get(), request.scale, request.scale);
    painter_.paint(drawListOf(view, request), context.get());
  }
  return file.finish();
}

DrawList PictureRenderer::drawListOf(const View& view, const PictureRequest& request) const {
  const LaidOutView laidOut =
      layOut(view, request.sizePoints, {measurer_, request.drawingTime, request.direction});
  DrawList list = makeDrawList(laidOut, {colours_, request.scheme, report_});
  list.insert(list.begin(), BeginClip{{{0, 0}, request.sizePoints}, request.cornerRadiusPoints});
  list.emplace_back(EndClip{});
  return list;
}

std::expected<std::string, std::string> renderPicture(const View& view,
                                                      const PictureRequest& request,
                                                      const RenderingResources& resources) {
  return PictureRenderer(resources).picture(view, request);
}

}  // namespace lanternfold
