// The window of one widget on the desktop.
//
// Made by: `DesktopWindows`, one for each card. Main thread.
#pragma once

#include <functional>
#include <gtkmm/gesturedrag.h>
#include <gtkmm/window.h>
#include <memory>
#include <optional>
#include <string>

#include "HostProgram/Cards/CardCanvas.h"
#include "HostProgram/Cards/ForeignMoveWatch.h"
#include "HostProgram/Display/WindowPlacer.h"

namespace lanternfold {

class CardWindow final : public Gtk::Window {
 public:
  /// Where a card lands that is let go.
  struct Landing {
    PlacedMonitor monitor;
    MonitorPosition position;
  };
  /// What the user does to a card.
  struct Handlers {
    std::function<void(const std::string& intent)> press;
    std::function<void(const std::string& url)> openLink;
    /// `event` is what has led to it: of a button or a key.
    std::function<void(const GdkEvent& event)> openMenu;
    /// Where the card is to be shown while it is moved, and in the end.
    std::function<std::optional<Landing>(const CardDrag&)> landing;
    std::function<void(const MonitorPosition&)> moved;
    /// The user has moved it by the window manager's own means: it stands at `frame` of the whole
    /// desktop.
    std::function<void(const Rect& frame)> movedElsewhere;
    /// A step of the grid, -1, 0 or 1 in each direction.
    std::function<void(int right, int down)> stepped;
    std::function<void()> removalAsked;
    /// The keyboard leaves for another card.
    std::function<void(bool isForward)> nextCard;
    /// It is above the other windows, and need not be any more.
    std::function<void()> leave;
  };

  /// `drawing` and `placer` outlive the window.
  CardWindow(const CardDrawing& drawing, WindowPlacer& placer, Handlers handlers);
  ~CardWindow() override;
  CardWindow(const CardWindow&) = delete;
  CardWindow& operator=(const CardWindow&) = delete;

  /// `name` is the widget's.
  void showCard(const std::string& name, const View& view, const CardState& state);
  /// On `monitor`, from its left top corner. A card that the user moves just now stays with the
  /// pointer.
  void placeAt(const PlacedMonitor& monitor, Point origin);
  [[nodiscard]] CardCanvas& canvas() { return canvas_; }

  /// Above the other windows, with or without the keyboard's focus, until it is lowered.
  void raiseCard();
  void raiseCardWithFocus();
  void lowerCard();

 protected:
  bool on_key_press_event(GdkEventKey* event) override;
  bool on_button_press_event(GdkEventButton* event) override;
  bool on_delete_event(GdkEventAny* event) override;
  void on_realize() override;

 private:
  /// Where it is to stand already.
  void placeAgain();
  void applyShape();
  void beginDrag();
  void followPointer();
  void startMove(const GdkEvent& event);
  void endDrag(bool isKept);
  [[nodiscard]] std::optional<Point> pointerOnDesktop() const;
  [[nodiscard]] std::optional<Rect> askedFrame() const;
  [[nodiscard]] bool handleKey(const GdkEventKey& event);

  WindowPlacer& placer_;
  Handlers handlers_;
  CardCanvas canvas_;
  Glib::RefPtr<Gtk::GestureDrag> gesture_;
  Size size_;
  Rect frame_;  ///< on the whole desktop, when it is not being moved
  std::optional<PlacedMonitor> monitor_;
  std::optional<CardDrag> drag_;
  std::unique_ptr<WindowPlacer::Move> move_;
  std::optional<Landing> landing_;
  bool isRaised_ = false;
  sigc::connection focusRing_;
  ForeignMoveWatch foreignMoves_;
};

}  // namespace lanternfold
