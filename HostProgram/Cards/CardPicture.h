// What a card looks like, kept until something of it changes.
//
// Made by: whatever shows a card, one each. Main thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "HostProgram/Cards/CardDrawing.h"
#include "HostProgram/Cards/CardFaces.h"
#include "ViewTree/DrawList.h"

namespace lanternfold {

/// What a card shows beside its view.
struct CardState {
  Size size;  ///< points
  /// When what is shown came.
  std::chrono::system_clock::time_point time;
  /// The intent of the buttons that are pressed at the moment.
  std::optional<std::string> pressedIntent = std::nullopt;
  /// Something newer has been asked for.
  bool isContentInvalidated = false;
};

/// Who rounds a card.
enum class CardCorners : std::uint8_t {
  painted,   ///< the picture, smoothly: what lies below shines through
  ofWindow,  ///< the shape of a window that is opaque: the picture goes to the very edge
};

class CardPicture {
 public:
  /// `drawing` outlives the picture.
  explicit CardPicture(const CardDrawing& drawing) : drawing_(drawing) {}

  /// Whether the picture differs from the one before.
  bool show(const View& view, const CardState& state);
  /// The same with the view that is shown already.
  bool show(const CardState& state);

  /// From the next `show` on; painted at first.
  void setCorners(CardCorners corners) { corners_ = corners; }

  /// What of it can be pressed.
  [[nodiscard]] const std::vector<CardFace>& faces() const { return faces_; }
  /// What a screen reader says of it.
  [[nodiscard]] const std::string& description() const { return description_; }

  /// A unit of `surface` is a point; outside of the card nothing is painted.
  void paint(cairo_t* surface) const;

 private:
  /// Everything that a picture follows from, but for the view.
  struct Style {
    Size size;
    ColourScheme scheme = ColourScheme::light;
    std::string drawingTime;
    std::optional<std::string> pressedIntent;
    bool isContentInvalidated = false;
    CardCorners corners = CardCorners::painted;
    friend bool operator==(const Style&, const Style&) = default;
  };

  [[nodiscard]] Style styleOf(const CardState& state) const;
  void draw(Style style);

  const CardDrawing& drawing_;
  CardCorners corners_ = CardCorners::painted;
  std::optional<View> view_;
  bool tellsTime_ = false;  ///< `view_` does
  Style style_;
  std::vector<CardFace> faces_;
  std::string description_;
  DrawList commands_;
};

}  // namespace lanternfold
