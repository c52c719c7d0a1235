#include "NetworkWidgetVexExtension/Views/SimpleLabelView.h"

#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/Elements.h"

namespace lanternfold {

View SimpleLabelView::body() const {
  return text(value, {smallBoldFont})
      .padding(2)
      .foreground(Colour::named(labelColour))
      .background(roundedRectangle(3, Colour::white(0.4)));
}

}  // namespace lanternfold
