#include "HostProgram/Display/WorkAreaNews.h"

#include <gdk/gdkx.h>
#include <utility>

namespace lanternfold {

WorkAreaNews::WorkAreaNews(std::function<void()> changed) : changed_(std::move(changed)) {
  if (!GDK_IS_X11_DISPLAY(gdk_display_get_default())) return;
  root_ = gdk_get_default_root_window();
  const auto events =
      static_cast<unsigned>(gdk_window_get_events(root_)) | GDK_PROPERTY_CHANGE_MASK;
  gdk_window_set_events(root_, static_cast<GdkEventMask>(events));
  gdk_window_add_filter(root_, &WorkAreaNews::filter, this);
}

WorkAreaNews::~WorkAreaNews() {
  if (root_ != nullptr) gdk_window_remove_filter(root_, &WorkAreaNews::filter, this);
}

GdkFilterReturn WorkAreaNews::filter(GdkXEvent* event, GdkEvent*, gpointer self) {
  const auto* const change = static_cast<const XEvent*>(event);
  if (change->type == PropertyNotify &&
      change->xproperty.atom == gdk_x11_get_xatom_by_name("_NET_WORKAREA")) {
    static_cast<WorkAreaNews*>(self)->changed_();
  }
  return GDK_FILTER_CONTINUE;
}

}  // namespace lanternfold
