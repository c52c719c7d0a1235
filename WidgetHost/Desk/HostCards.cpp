#include "WidgetHost/Desk/HostCards.h"

#include <utility>
#include <variant>
#include <vector>

#include "NetworkWidgetVexExtension/Views/BackgroundView.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

constexpr double staleOpacity = 0.45;
/// How far the mark stands from the widget's corner.
constexpr double markInset = 8;

View message(std::string_view sentence, const NetworkWidgetDefaultStyle& style) {
  return text(sentence,
              {.font = style.valueFont, .lineLimit = 4, .alignment = HorizontalAlignment::centre});
}

/// Pressed, it darkens as the refresh button does.
View face(std::string_view title, const Font& font, double opacity) {
  return text(title, {.font = font, .minimumScale = smallestValueScale})
      .padding({4, 12, 4, 12})
      .background(roundedRectangle(7, Colour::white(0.2)))
      .foreground(Colour::white(opacity));
}

/// In the middle of all the room there is, on the widgets' background.
View onBackground(View content, const NetworkWidgetDefaultStyle& style,
                  const StringTable& strings) {
  FrameNode whole;
  whole.width.maximum = unlimited;
  whole.height.maximum = unlimited;
  return style.body(std::move(content).frame(whole)).background(emptyCard(strings));
}

NetworkWidgetDefaultStyle styleOf(const StringTable& strings, WidgetFamily family) {
  return NetworkWidgetDefaultStyle(WidgetEnvironment{.strings = strings, .widgetFamily = family});
}

View cardWithButton(std::string_view sentence, const StringTable& strings, WidgetFamily family) {
  const NetworkWidgetDefaultStyle style = styleOf(strings, family);
  const std::string title = strings.localized("Try again");
  std::vector<View> lines;
  lines.push_back(message(sentence, style));
  lines.push_back(button(tryAgainIntent, face(title, style.firstValueFont, 1),
                         face(title, style.firstValueFont, 0.5)));
  return onBackground(vstack(HorizontalAlignment::centre, 10, std::move(lines)), style, strings);
}

View staleMark(const StringTable& strings) {
  FrameNode corner;
  corner.width.maximum = unlimited;
  corner.height.maximum = unlimited;
  corner.alignment = {HorizontalAlignment::trailing, VerticalAlignment::bottom};
  return text(strings.localized("Outdated"), {.font = smallBoldFont})
      .padding({2, 5, 2, 5})
      .background(roundedRectangle(3, Colour::named(labelColour)))
      .foreground(Colour::white(1))
      .accessible(strings.localized("Not up to date, since the last updates have failed"))
      .padding({0, 0, markInset, markInset})
      .frame(corner);
}

/// The time of drawing is that of a picture, which would be taken for the content's. As deep as the
/// archive of views lets a view be.
void removeDrawingTime(View& view) {
  if (std::holds_alternative<DrawingTimeNode>(view.node)) view = emptyView();
  for (View& child : view.children) removeDrawingTime(child);
}

}  // namespace

View emptyCard(const StringTable& strings) {
  return BackgroundView{}.body(WidgetEnvironment{strings});
}

View unansweredCard(const StringTable& strings, WidgetFamily family) {
  return cardWithButton(strings.localized("No data yet"), strings, family);
}

View quietCard(const StringTable& strings, WidgetFamily family) {
  return cardWithButton(
      strings.localized("This widget has stopped, since it failed several times."), strings,
      family);
}

View staleCard(View content, const StringTable& strings) {
  removeDrawingTime(content);
  std::vector<View> layers;
  // The content's own background would let the desktop through.
  layers.push_back(emptyCard(strings));
  layers.push_back(std::move(content).opacity(staleOpacity, staleOpacity));
  layers.push_back(staleMark(strings));
  return zstack(centred, std::move(layers));
}

}  // namespace lanternfold
