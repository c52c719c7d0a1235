// Any text as the file of the desktop's widgets: what is understood keeps to the bounds, and is
// understood in the same way when it is written and read again.
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "Support/FatalError.h"
#include "WidgetHost/Store/WidgetStoreText.h"

namespace {

using lanternfold::fatalError;
using lanternfold::StoredWidget;
using lanternfold::StoredWidgets;

void checkBounds(const StoredWidgets& stored) {
  std::set<std::string> ids;
  for (const StoredWidget& widget : stored.widgets) {
    if (!widget.placed) continue;
    if (!ids.insert(widget.placed->id).second) fatalError("two widgets have one id");
    if (widget.placed->id.empty() || widget.placed->kind.empty()) fatalError("a name is empty");
    for (const int coordinate : {widget.placed->position.x, widget.placed->position.y}) {
      if (coordinate > lanternfold::furthestPosition ||
          coordinate < -lanternfold::furthestPosition) {
        fatalError("a position is out of bounds");
      }
    }
  }
  if (ids.size() > lanternfold::mostPlacedWidgets) fatalError("too many widgets are shown");
  lanternfold::WidgetIds known = stored.ids;
  if (ids.contains(known.give())) fatalError("a free id is taken");
}

/// What is written of some of them: all that is known of those, and all that is not understood.
void checkReading(const StoredWidgets& stored) {
  const auto again = lanternfold::readWidgetStore(lanternfold::widgetStoreText(stored));
  if (!again) fatalError("what was written cannot be read: " + again.error());
  if (again->widgets.size() != stored.widgets.size()) fatalError("a widget was lost");
  for (std::size_t at = 0; at < stored.widgets.size(); ++at) {
    if (again->widgets[at].placed != stored.widgets[at].placed) fatalError("a widget has changed");
  }
  if (again->otherMembers != stored.otherMembers) fatalError("other members have changed");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  auto stored = lanternfold::readWidgetStore(text);
  if (!stored) {
    if (stored.error().empty()) fatalError("a refusal has no reason");
    return 0;
  }
  checkBounds(*stored);
  if (stored->isOfLaterVersion) return 0;  // never written
  checkReading(*stored);
  for (StoredWidget& widget : stored->widgets) {
    if (widget.placed) widget.placed->position.x = 17;
  }
  checkReading(*stored);
  return 0;
}
