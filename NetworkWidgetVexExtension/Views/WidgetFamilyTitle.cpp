#include "NetworkWidgetVexExtension/Views/WidgetFamilyTitle.h"

#include "Support/FatalError.h"

namespace lanternfold {

std::string widgetFamilyTitle(WidgetFamily family, const StringTable& strings) {
  switch (family) {
    case WidgetFamily::small:
      return strings.localized("Small");
    case WidgetFamily::medium:
      return strings.localized("Medium");
    case WidgetFamily::large:
      return strings.localized("Large");
  }
  fatalError("a widget family has no title");
}

}  // namespace lanternfold
