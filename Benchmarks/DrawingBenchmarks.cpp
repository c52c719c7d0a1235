// Laying out and painting widgets at scale 2 against bare pango, which sets and shows the same
// texts in the same fonts at the same places of such an image.
#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <benchmark/benchmark.h>
#include <cairo.h>
#include <pango/pangocairo.h>

#include "Benchmarks/DrawnWidgets.h"
#include "Benchmarks/Groups.h"
#include "Rendering/PictureRenderer.h"
#include "Support/FatalError.h"
#include "ViewTree/Layout.h"

namespace lanternfold {
namespace {

constexpr double scale = 2;
constexpr double aim = 2;
/// More of them than a renderer keeps lines of, so that each is set anew.
constexpr unsigned variants = 128;
constexpr const char* drawingTime = "Today, 10:30";

/// An image of a widget at scale 2, whose unit is a point.
class Canvas {
 public:
  explicit Canvas(WidgetFamily family) {
    const Size size = widgetSize(family);
    image_.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32,
                                            static_cast<int>(size.width * scale),
                                            static_cast<int>(size.height * scale)));
    context_.reset(cairo_create(image_.get()));
    cairo_scale(context_.get(), scale, scale);
  }
  [[nodiscard]] cairo_t* surface() const { return context_.get(); }

 private:
  CairoSurface image_;
  CairoContext context_;
};

PictureRenderer makeRenderer() {
  return PictureRenderer({LANTERNFOLD_SOURCE_DIR "/Assets", [](std::string_view line) {
                            std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()),
                                         line.data());
                          }});
}

DrawList drawListOf(const PictureRenderer& renderer, const DrawnWidget& widget, const View& view) {
  const Size size = widgetSize(widget.family);
  const LaidOutView laidOut = layOut(view, size, {renderer.measurer(), drawingTime});
  DrawList list = makeDrawList(laidOut, {renderer.colours(), ColourScheme::light, {}});
  list.insert(list.begin(), BeginClip{{{}, size}, widgetCornerRadius});
  list.emplace_back(EndClip{});
  return list;
}

template <typename... Kinds>
DrawList only(const DrawList& list) {
  DrawList chosen;
  for (const DrawCommand& each : list) {
    if ((std::holds_alternative<Kinds>(each) || ...)) chosen.push_back(each);
  }
  return chosen;
}

// The baseline

/// As a program draws that knows where its texts stand, and nothing more.
void drawWithPango(const DrawList& texts, PangoContext* pango, cairo_t* surface) {
  for (const DrawCommand& each : texts) {
    const auto& text = std::get<DrawText>(each);
    PangoLayout* const layout = pango_layout_new(pango);
    PangoFontDescription* const font = pango_font_description_from_string(
        text.font.weight == FontWeight::bold ? "Inter bold" : "Inter");
    pango_font_description_set_absolute_size(font, text.font.size * PANGO_SCALE);
    pango_layout_set_font_description(layout, font);
    pango_layout_set_text(layout, text.text.data(), static_cast<int>(text.text.size()));
    cairo_set_source_rgba(surface, text.colour.red, text.colour.green, text.colour.blue,
                          text.colour.alpha);
    cairo_move_to(surface, text.frame.left(), text.frame.top());
    pango_cairo_show_layout(surface, layout);
    pango_font_description_free(font);
    g_object_unref(layout);
  }
}

void measurePango(benchmark::State& state, const DrawnWidget& widget) {
  PictureRenderer renderer = makeRenderer();
  const DrawList texts = only<DrawText>(drawListOf(renderer, widget, widget.view));
  const Canvas canvas(widget.family);
  PangoContext* const pango = pango_cairo_create_context(canvas.surface());
  for (auto iteration : state) drawWithPango(texts, pango, canvas.surface());
  g_object_unref(pango);
}

// The product

void measureAnew(benchmark::State& state, const DrawnWidget& widget) {
  PictureRenderer renderer = makeRenderer();
  const Canvas canvas(widget.family);
  std::vector<View> views;
  for (unsigned number = 0; number < variants; ++number) {
    views.push_back(variant(widget.view, 100 + number));
  }
  std::size_t next = 0;
  for (auto iteration : state) {
    renderer.painter().paint(drawListOf(renderer, widget, views[next]), canvas.surface());
    next = (next + 1) % views.size();
  }
}

void measureAgain(benchmark::State& state, const DrawnWidget& widget) {
  PictureRenderer renderer = makeRenderer();
  const Canvas canvas(widget.family);
  for (auto iteration : state) {
    renderer.painter().paint(drawListOf(renderer, widget, widget.view), canvas.surface());
  }
}

void measureLayout(benchmark::State& state, const DrawnWidget& widget) {
  const PictureRenderer renderer = makeRenderer();
  for (auto iteration : state) {
    benchmark::DoNotOptimize(drawListOf(renderer, widget, widget.view).size());
  }
}

template <typename... Kinds>
void measurePart(benchmark::State& state, const DrawnWidget& widget) {
  PictureRenderer renderer = makeRenderer();
  const Canvas canvas(widget.family);
  const DrawList part = only<Kinds...>(drawListOf(renderer, widget, widget.view));
  for (auto iteration : state) renderer.painter().paint(part, canvas.surface());
}

void measureFile(benchmark::State& state, const DrawnWidget& widget) {
  PictureRenderer renderer = makeRenderer();
  PictureRequest request;
  request.sizePoints = widgetSize(widget.family);
  request.cornerRadiusPoints = widgetCornerRadius;
  request.drawingTime = drawingTime;
  for (auto iteration : state) {
    const auto picture = renderer.picture(widget.view, request);
    if (!picture) fatalError("the widget cannot be drawn");
    benchmark::DoNotOptimize(picture->size());
  }
}

using Measure = void (*)(benchmark::State&, const DrawnWidget&);

/// What is measured of the largest widget by itself, to show where its time goes.
struct Part {
  const char* title;
  const char* name;
  Measure measure;
};

constexpr Part parts[] = {
    {"layout and draw list", "layout", measureLayout},
    {"texts", "texts", measurePart<DrawText>},
    {"symbols and logo", "symbols", measurePart<DrawSymbol, DrawImage>},
    {"gradient, circles, rectangles", "shapes",
     measurePart<FillLinearGradient, StrokeCircle, FillRoundedRectangle>},
    {"all of it, and the PNG", "png", measureFile},
};

std::string benchmarkName(const DrawnWidget& widget, const char* work) {
  std::string name = "drawing-" + widget.name + "-" + work;
  for (char& each : name) {
    if (each == ' ') each = '_';
  }
  return name;
}

}  // namespace

RatioTable::Table measureDrawing(RatioTable& reporter) {
  const std::vector<DrawnWidget> widgets = drawnWidgets();
  RatioTable::Table table{.title = "Widgets laid out and painted at scale 2, beside bare pango",
                          .rows = {}};
  const auto add = [&](const DrawnWidget& widget, const std::string& title, const char* work,
                       Measure measure, double wished) {
    const std::string name = benchmarkName(widget, work);
    table.rows.push_back({title, name, benchmarkName(widget, "pango"), wished});
    addBenchmark(name, [&widget, measure](benchmark::State& state) { measure(state, widget); });
  };
  for (const DrawnWidget& widget : widgets) {
    addBenchmark(benchmarkName(widget, "pango"),
                 [&widget](benchmark::State& state) { measurePango(state, widget); });
    add(widget, widget.name + ", texts new", "new", measureAnew, aim);
    add(widget, widget.name + ", texts known", "known", measureAgain, aim);
    if (widget.family != WidgetFamily::large) continue;
    for (const Part& part : parts) {
      add(widget, widget.name + ": " + part.title, part.name, part.measure, 0);
    }
  }
  runBenchmarks(reporter);
  return table;
}

}  // namespace lanternfold
