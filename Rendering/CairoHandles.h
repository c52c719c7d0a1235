// Owners of the drawing libraries' objects. Only this room's .cpp files include it, and none of it
// shows the libraries' own headers.
#pragma once

#include <memory>

using cairo_t = struct _cairo;
using cairo_pattern_t = struct _cairo_pattern;
using cairo_surface_t = struct _cairo_surface;
using PangoFont = struct _PangoFont;
using PangoLayout = struct _PangoLayout;
using RsvgHandle = struct _RsvgHandle;

namespace lanternfold {

struct CairoRelease {
  void operator()(cairo_t* context) const;
  void operator()(cairo_pattern_t* pattern) const;
  void operator()(cairo_surface_t* surface) const;
};

/// Drops a reference to a GObject.
struct ObjectRelease {
  void operator()(void* object) const;
};

using CairoContext = std::unique_ptr<cairo_t, CairoRelease>;
using CairoPattern = std::unique_ptr<cairo_pattern_t, CairoRelease>;
using CairoSurface = std::unique_ptr<cairo_surface_t, CairoRelease>;
using FontHandle = std::unique_ptr<PangoFont, ObjectRelease>;
using PangoLayoutHandle = std::unique_ptr<PangoLayout, ObjectRelease>;
using SvgHandle = std::unique_ptr<RsvgHandle, ObjectRelease>;

}  // namespace lanternfold
