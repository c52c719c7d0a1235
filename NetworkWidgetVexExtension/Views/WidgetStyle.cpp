#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"

#include <utility>

#include "NetworkWidgetVexExtension/Views/RefreshButton.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// Values of a small widget are set smaller, so that an address fits beside its label.
double valueSize(WidgetFamily family) {
  switch (family) {
    case WidgetFamily::small:
      return 11;
    case WidgetFamily::medium:
      return 12;
    case WidgetFamily::large:
      return 13;
  }
  fatalError("a widget family has no size of text");
}

/// What surrounds a widget's content.
EdgeInsets contentPadding(const WidgetEnvironment& environment) {
  const double side = environment.widgetFamily == WidgetFamily::small ? 12 : 16;
  const double bottomLine = refreshButtonInset + refreshButtonSide + 1;
  return {side, side, environment.keepsBottomFree ? bottomLine : side, side};
}

}  // namespace

NetworkWidgetDefaultStyle::NetworkWidgetDefaultStyle(const WidgetEnvironment& environment)
    : padding(contentPadding(environment)),
      valueFont{valueSize(environment.widgetFamily), FontWeight::regular},
      firstValueFont{valueSize(environment.widgetFamily), FontWeight::bold} {}

double NetworkWidgetDefaultStyle::rowHeight() const {
  constexpr double lineHeight = 1.25;
  return valueFont.size * lineHeight;
}

View NetworkWidgetDefaultStyle::body(View content) const {
  return std::move(content).padding(padding).foreground(Colour::named(foregroundColour));
}

}  // namespace lanternfold
