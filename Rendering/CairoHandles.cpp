#include "Rendering/CairoHandles.h"

#include <glib-object.h>

#include <cairo.h>

namespace lanternfold {

void CairoRelease::operator()(cairo_t* context) const { cairo_destroy(context); }
void CairoRelease::operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
void CairoRelease::operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
void ObjectRelease::operator()(void* object) const { g_object_unref(object); }

}  // namespace lanternfold
