#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"

#include <utility>

namespace lanternfold {

View networkWidgetDefaultStyle(View content) {
  return std::move(content).padding(contentPadding).foreground(Colour::named(foregroundColour));
}

}  // namespace lanternfold
