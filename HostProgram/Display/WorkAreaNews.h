// Hears when panels of an X11 desktop come, go or change in size, of which the toolkit does not
// tell.
#pragma once

#include <functional>
#include <gdk/gdk.h>

namespace lanternfold {

/// On Wayland it hears nothing. Main thread.
class WorkAreaNews final {
 public:
  explicit WorkAreaNews(std::function<void()> changed);
  ~WorkAreaNews();
  WorkAreaNews(const WorkAreaNews&) = delete;
  WorkAreaNews& operator=(const WorkAreaNews&) = delete;

 private:
  static GdkFilterReturn filter(GdkXEvent* event, GdkEvent* translated, gpointer self);

  std::function<void()> changed_;
  GdkWindow* root_ = nullptr;  ///< null on other displays
};

}  // namespace lanternfold
