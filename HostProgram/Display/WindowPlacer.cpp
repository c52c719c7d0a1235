#include "HostProgram/Display/WindowPlacer.h"

#include "HostProgram/Display/LayerWindowPlacer.h"
#include "HostProgram/Display/PlainWindowPlacer.h"
#include "HostProgram/Display/X11WindowPlacer.h"

namespace lanternfold {

std::unique_ptr<WindowPlacer> makeWindowPlacer(WindowKind kind) {
  switch (kind) {
    case WindowKind::x11:
      return std::make_unique<X11WindowPlacer>();
    case WindowKind::waylandLayer:
      return std::make_unique<LayerWindowPlacer>();
    case WindowKind::waylandPlain:
      break;
  }
  return std::make_unique<PlainWindowPlacer>();
}

}  // namespace lanternfold
