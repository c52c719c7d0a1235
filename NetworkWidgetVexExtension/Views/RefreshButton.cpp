#include "NetworkWidgetVexExtension/Views/RefreshButton.h"

#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Intents/RefreshAppIntent.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/Elements.h"

namespace lanternfold {

View RefreshButton::face(State state) const {
  return symbol("arrow.triangle.2.circlepath", refreshSymbolSize)
      .padding(refreshSymbolPadding)
      .background(roundedRectangle(5, Colour::white(0.1)))
      .foreground(Colour::white(state == State::pressed ? 0.5 : 1));
}

View refreshButtonInCorner(const WidgetEnvironment& environment) {
  if (!environment.supportsButtons) return emptyView();
  std::vector<View> choices;
  choices.push_back(button(RefreshAppIntent::intentName,
                           RefreshButton{}.face(RefreshButton::State::resting),
                           RefreshButton{}.face(RefreshButton::State::pressed))
                        .accessible(environment.strings.localized("Refresh"))
                        .padding({0, refreshButtonInset, refreshButtonInset, 0}));
  choices.push_back(emptyView());
  FrameNode corner;
  corner.width.maximum = unlimited;
  corner.height.maximum = unlimited;
  corner.alignment = bottomLeading;
  return firstThatFits(FitAxes::both, std::move(choices)).frame(corner);
}

}  // namespace lanternfold
