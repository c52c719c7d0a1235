// What a card looks like, kept until something of it changes.
//
// Made by: whatever shows a card, one each. Main thread.
#pragma once

#include <optional>
#include <string>

#include "HostProgram/Cards/CardDrawing.h"
#include "ViewTree/DrawList.h"
#include "ViewTree/Layout.h"

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

class CardPicture {
 public:
  /// `drawing` outlives the picture.
  explicit CardPicture(const CardDrawing& drawing) : drawing_(drawing) {}

  /// Whether the picture differs from the one before.
  bool show(const View& view, const CardState& state);

  [[nodiscard]] const LaidOutView& layout() const { return layout_; }

  /// A unit of `surface` is a point; outside of the rounded corners nothing is painted.
  void paint(cairo_t* surface) const;

 private:
  /// Everything that a picture follows from, but for the view.
  struct Style {
    Size size;
    ColourScheme scheme = ColourScheme::light;
    std::string drawingTime;
    std::optional<std::string> pressedIntent;
    bool isContentInvalidated = false;
    friend bool operator==(const Style&, const Style&) = default;
  };

  void draw();

  const CardDrawing& drawing_;
  std::optional<View> view_;
  Style style_;
  LaidOutView layout_;
  DrawList commands_;
};

}  // namespace lanternfold
