#include "HostProgram/Display/DisplayLoss.h"

#include <cstring>
#include <gdk/gdkx.h>
#include <unistd.h>

namespace lanternfold {
namespace {

/// Nothing that needs the display can be destroyed any more, and all that is to outlive the program
/// is on the disk. The library may have been anywhere when it noticed, so that no log can be used.
[[noreturn]] int endProgram(Display*) {
  (void)!::write(STDERR_FILENO, displayGone, std::strlen(displayGone));
  (void)!::write(STDERR_FILENO, "\n", 1);
  ::_exit(1);
}

}  // namespace

void sayWhenX11IsGone() {
  if (GDK_IS_X11_DISPLAY(gdk_display_get_default())) XSetIOErrorHandler(endProgram);
}

}  // namespace lanternfold
