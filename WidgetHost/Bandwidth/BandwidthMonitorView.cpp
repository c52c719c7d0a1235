#include "WidgetHost/Bandwidth/BandwidthMonitorView.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "Support/TextPlaceholders.h"
#include "ViewTree/Elements.h"
#include "WidgetHost/Bandwidth/BandwidthGraph.h"
#include "WidgetHost/Bandwidth/BandwidthScale.h"
#include "WidgetHost/Bandwidth/BandwidthTexts.h"

namespace lanternfold {
namespace {

constexpr const char* unknownFigure = "\u2013";
/// How far a figure may shrink in a narrow window.
constexpr double smallestFigureScale = 0.6;

/// What a card of a size has room for, in points.
struct CardMeasures {
  double padding = 12;
  double spacing = 8;
  double labelSize = 11;
  double numberSize = 18;
  double captionSize = 9;
  bool showsDetails = false;   ///< bits and totals
  bool showsCaptions = false;  ///< of the graph

  explicit CardMeasures(Size size) : showsCaptions(size.height >= 112) {
    if (size.height < 190) return;
    padding = 16;
    spacing = 12;
    numberSize = 24;
    captionSize = 10;
    showsDetails = true;
  }

  // Heights of lines, which do not depend on what the texts say.
  [[nodiscard]] double labelHeight() const { return labelSize * 1.3; }
  [[nodiscard]] double numberHeight() const { return numberSize * 1.25; }
  [[nodiscard]] double captionHeight() const { return captionSize * 1.4; }
  [[nodiscard]] double figuresHeight() const {
    return numberHeight() + (showsDetails ? 3 : 1) * labelHeight();
  }
  [[nodiscard]] double graphHeight(double cardHeight) const {
    const double captions = showsCaptions ? 2 * captionHeight() : 0;
    return std::max(0.0, cardHeight - 2 * padding - figuresHeight() - spacing - captions);
  }
};

/// One of the two directions.
struct Direction {
  std::string label;
  const char* colour;
  std::optional<double> rate;          ///< bytes per second
  std::optional<std::uint64_t> total;  ///< bytes
};

View lineOf(View content, double height, Alignment alignment) {
  FrameNode frame;
  frame.width.maximum = unlimited;
  frame.height.fixed = height;
  frame.alignment = alignment;
  return std::move(content).frame(frame);
}

constexpr Alignment leading{HorizontalAlignment::leading, VerticalAlignment::centre};
constexpr Alignment trailing{HorizontalAlignment::trailing, VerticalAlignment::centre};

View label(std::string_view content, double size) {
  return text(content, {.font = {size, FontWeight::regular}, .minimumScale = smallestFigureScale});
}

class Card {
 public:
  Card(const BandwidthMonitorState& state, const StringTable& strings, Size size)
      : state_(state), strings_(strings), size_(size), measures_(size) {}

  [[nodiscard]] View body() const {
    const double width = std::max(0.0, size_.width - 2 * measures_.padding);
    std::vector<View> parts;
    parts.push_back(figures());
    parts.push_back(graph({width, measures_.graphHeight(size_.height)}));
    FrameNode whole;
    whole.width.fixed = width;
    return vstack(HorizontalAlignment::leading, measures_.spacing, std::move(parts))
        .frame(whole)
        .padding(measures_.padding)
        .foreground(Colour::named(foregroundColour))
        .accessible(bandwidthSummary(state_, strings_));
  }

 private:
  [[nodiscard]] View figures() const {
    const auto& now = state_.traffic.now();
    const auto& totals = state_.traffic.totals;
    std::vector<View> columns;
    columns.push_back(column({.label = "\u2193 " + strings_.localized("Received"),
                              .colour = receivedColour,
                              .rate = now ? std::optional(now->received) : std::nullopt,
                              .total = totals ? std::optional(totals->recvBytes) : std::nullopt}));
    columns.push_back(column({.label = "\u2191 " + strings_.localized("Sent"),
                              .colour = sentColour,
                              .rate = now ? std::optional(now->sent) : std::nullopt,
                              .total = totals ? std::optional(totals->sentBytes) : std::nullopt}));
    return hstack(VerticalAlignment::top, measures_.spacing, std::move(columns));
  }

  /// Beside a bar in the direction's colour, which is the graph's legend.
  [[nodiscard]] View column(const Direction& direction) const {
    constexpr double barWidth = 4;
    constexpr double besideBar = 9;
    std::vector<View> lines;
    lines.push_back(
        lineOf(label(direction.label, measures_.labelSize), measures_.labelHeight(), leading));
    lines.push_back(lineOf(number(direction.rate), measures_.numberHeight(), leading));
    if (measures_.showsDetails) addDetails(lines, direction);
    FrameNode bar;
    bar.width.fixed = barWidth;
    bar.height.maximum = unlimited;
    return vstack(HorizontalAlignment::leading, 0, std::move(lines))
        .padding({0, besideBar, 0, 0})
        .background(roundedRectangle(barWidth / 2, Colour::named(direction.colour)).frame(bar),
                    leading);
  }

  /// The number ends where its unit begins, in the room of the widest one: neither moves when the
  /// other changes.
  [[nodiscard]] View number(const std::optional<double>& rate) const {
    const RateFigure figure =
        rate ? byteRateFigure(*rate, strings_) : RateFigure{.number = unknownFigure, .unit = ""};
    const std::string widest = widestRateNumber(strings_);
    const TextStyle style{.font = {measures_.numberSize, FontWeight::bold},
                          .minimumScale = smallestFigureScale,
                          .sizedWith = widest};
    std::vector<View> layers;
    layers.push_back(text(widest, style).opacity(0, 0));
    layers.push_back(text(figure.number, style));
    std::vector<View> parts;
    parts.push_back(zstack(rate ? trailing : leading, std::move(layers)));
    parts.push_back(label(figure.unit, measures_.labelSize));
    return hstack(VerticalAlignment::firstTextBaseline, 4, std::move(parts));
  }

  void addDetails(std::vector<View>& lines, const Direction& direction) const {
    const auto add = [&](const std::string& content) {
      lines.push_back(
          lineOf(label(content, measures_.labelSize), measures_.labelHeight(), leading));
    };
    add(direction.rate ? bitRateFigure(*direction.rate, strings_).text() : "");
    add(direction.total ? fillPlaceholders(strings_.localized("Total %@"),
                                           {totalText(*direction.total, strings_)})
                        : "");
  }

  [[nodiscard]] View graph(Size size) const {
    const View plot = bandwidthGraph(state_.traffic.minute, size);
    if (!measures_.showsCaptions) return plot;
    std::vector<View> rows;
    const BandwidthScale scale = bandwidthScale(state_.traffic.minute);
    rows.push_back(
        captions(roundRateText(scale.labelledMaximum(), strings_), statusText(state_, strings_)));
    rows.push_back(plot);
    rows.push_back(captions(strings_.localized("1 minute ago"), strings_.localized("Now")));
    return vstack(HorizontalAlignment::leading, 0, std::move(rows));
  }

  [[nodiscard]] View captions(std::string_view before, std::string_view after) const {
    std::vector<View> ends;
    ends.push_back(
        lineOf(label(before, measures_.captionSize), measures_.captionHeight(), leading));
    ends.push_back(
        lineOf(label(after, measures_.captionSize), measures_.captionHeight(), trailing));
    return hstack(VerticalAlignment::centre, measures_.spacing, std::move(ends));
  }

  const BandwidthMonitorState& state_;
  const StringTable& strings_;
  Size size_;
  CardMeasures measures_;
};

}  // namespace

View BandwidthMonitorView::body(Size size) const { return Card(state, strings, size).body(); }

}  // namespace lanternfold
