#include "CommandLine/Gallery/GallerySheet.h"

#include <utility>

#include "CommandLine/Gallery/CardGrid.h"
#include "CommandLine/Gallery/GalleryStyle.h"
#include "NetworkWidgetVexExtension/Views/WidgetFamilyTitle.h"
#include "Support/FatalError.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

using Measures = GalleryMeasures;

constexpr Font headingFont{.size = 30, .weight = FontWeight::bold};
constexpr Font productFont{.size = 14};
constexpr Font nameFont{.size = 12, .weight = FontWeight::bold};
constexpr Font familyFont{.size = 12};

/// Where the cells of a column or a row begin, from the beginning of the grid.
constexpr double begin(std::size_t index, double gap) {
  return static_cast<double>(index) * (Measures::cell + gap);
}

constexpr double gridWidth = begin(Measures::columns, Measures::columnGap) - Measures::columnGap;
constexpr double halfWidth = gridWidth + 2 * Measures::margin;

CardSpan spanOf(WidgetFamily family) {
  switch (family) {
    case WidgetFamily::small:
      return {.columns = 1, .rows = 1};
    case WidgetFamily::medium:
      return {.columns = 2, .rows = 1};
    case WidgetFamily::large:
      return {.columns = 2, .rows = 2};
  }
  fatalError("a widget family takes no cells");
}

/// A line that begins at the leading edge and one that ends at the trailing edge, which keeps its
/// room; their feet stand on one line.
View splitLine(View leading, View trailing, double width, double height) {
  FrameNode stretched;
  stretched.width.maximum = unlimited;
  stretched.alignment = {HorizontalAlignment::leading, VerticalAlignment::bottom};
  std::vector<View> sides;
  sides.push_back(std::move(leading).frame(stretched));
  sides.push_back(std::move(trailing).layoutPriority(1));
  return hstack(VerticalAlignment::bottom, 8, std::move(sides))
      .frame(width, height, {HorizontalAlignment::leading, VerticalAlignment::bottom});
}

/// A soft shadow of layers, each a little larger than the one upon it.
View shadow(Size card, const GalleryColours& colours) {
  std::vector<View> rectangles;
  for (int layer = Measures::shadowLayers; layer > 0; --layer) {
    const double more = layer * Measures::shadowLayerGrowth;
    rectangles.push_back(
        roundedRectangle(widgetCornerRadius + more, {colours.shadow, colours.shadowLayerOpacity})
            .frame(card.width + 2 * more, card.height + 2 * more));
  }
  return zstack(centred, std::move(rectangles)).offset(0, Measures::shadowDrop);
}

View caption(const GalleryCard& card, double width, const GalleryColours& colours,
             const StringTable& strings) {
  return splitLine(text(card.displayName, {.font = nameFont}).foreground({colours.text}),
                   text(widgetFamilyTitle(card.family, strings), {.font = familyFont})
                       .foreground({colours.secondaryText}),
                   width, nameFont.size * 1.25);
}

View cardWithCaption(const GalleryCard& card, const GalleryColours& colours,
                     const StringTable& strings) {
  const Size size = widgetSize(card.family);
  std::vector<View> parts;
  parts.push_back(View(card.view)
                      .frame(size.width, size.height)
                      .clipped(widgetCornerRadius)
                      .colourScheme(colours.scheme)
                      .background(shadow(size, colours)));
  parts.push_back(caption(card, size.width, colours, strings));
  return vstack(HorizontalAlignment::leading, Measures::captionGap, std::move(parts));
}

View placed(View content, double leading, double top) {
  return std::move(content).padding({.top = top, .leading = leading});
}

View heading(const GalleryColours& colours, const StringTable& strings) {
  const bool isLight = colours.scheme == ColourScheme::light;
  const std::string name = isLight ? strings.localized("Light") : strings.localized("Dark");
  return splitLine(
      text(name, {.font = headingFont}).foreground({colours.text}),
      text(gallerySheetTitle, {.font = productFont}).foreground({colours.secondaryText}), gridWidth,
      headingFont.size * 1.25);
}

View half(const std::vector<GalleryCard>& cards, const CardGrid& grid, double height,
          const GalleryColours& colours, const StringTable& strings) {
  std::vector<View> pieces;
  pieces.push_back(placed(heading(colours, strings), Measures::margin, Measures::headingTop));
  for (std::size_t index = 0; index < cards.size(); ++index) {
    const CardPlace& place = grid.places[index];
    pieces.push_back(placed(cardWithCaption(cards[index], colours, strings),
                            Measures::margin + begin(place.column, Measures::columnGap),
                            Measures::gridTop + begin(place.row, Measures::rowGap)));
  }
  return zstack(topLeading, std::move(pieces))
      .frame(halfWidth, height, topLeading)
      .background(linearGradient({colours.wallpaperTop}, {colours.wallpaperBottom}));
}

}  // namespace

GallerySheet makeGallerySheet(const std::vector<GalleryCard>& cards, const StringTable& strings) {
  std::vector<CardSpan> spans;
  for (const GalleryCard& card : cards) spans.push_back(spanOf(card.family));
  const CardGrid grid = placeCards(spans, Measures::columns);
  const double height =
      Measures::gridTop + begin(grid.rows, Measures::rowGap) + Measures::bottomMargin;
  std::vector<View> halves;
  for (const GalleryColours* colours : {&lightGalleryColours(), &darkGalleryColours()}) {
    halves.push_back(half(cards, grid, height, *colours, strings));
  }
  return {.view = hstack(VerticalAlignment::top, 0, std::move(halves)),
          .sizePoints = {2 * halfWidth, height}};
}

}  // namespace lanternfold
