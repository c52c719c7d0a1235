#include "HostProgram/Cards/ForeignMoveWatch.h"

#include <gdk/gdkx.h>
#include <gdkmm/display.h>
#include <glibmm/main.h>
#include <utility>

namespace lanternfold {
namespace {

/// Some window managers tell of each step of a move, others of its end.
constexpr unsigned settlingMilliseconds = 300;
/// They may let the pointer go before they tell where the card stands.
constexpr unsigned freeMilliseconds = 1000;
/// As long a user may think between two steps of the keyboard. Another window that has come under
/// the pointer meanwhile keeps it as silent as a move does.
constexpr unsigned longestThoughtSeconds = 30;

struct PointerState {
  bool isButtonDown = false;
  bool isInside = false;
};

PointerState pointerIn(Gtk::Window& window) {
  if (!window.get_mapped()) return {};
  GdkDevice* const pointer =
      gdk_seat_get_pointer(gdk_display_get_default_seat(window.get_display()->gobj()));
  GdkModifierType state{};
  int x = 0;
  int y = 0;
  gdk_window_get_device_position(window.get_window()->gobj(), pointer, &x, &y, &state);
  constexpr unsigned buttons = GDK_BUTTON1_MASK | GDK_BUTTON2_MASK | GDK_BUTTON3_MASK;
  const bool isInside = x >= 0 && y >= 0 && x < window.get_width() && y < window.get_height();
  return {.isButtonDown = (static_cast<unsigned>(state) & buttons) != 0, .isInside = isInside};
}

/// The toolkit says that a window whose keyboard somebody takes has lost it; the display leaves the
/// focus where it is meanwhile.
bool hasFocusOfDisplay(Gtk::Window& window) {
  GdkDisplay* const display = window.get_display()->gobj();
  if (!window.get_mapped() || !GDK_IS_X11_DISPLAY(display)) return false;
  Window focused = 0;
  int revertsTo = 0;
  XGetInputFocus(gdk_x11_display_get_xdisplay(display), &focused, &revertsTo);
  return gdk_x11_window_lookup_for_display(display, focused) == window.get_window()->gobj();
}

}  // namespace

ForeignMoveWatch::ForeignMoveWatch(Gtk::Window& window, const WindowPlacer& placer,
                                   Handlers handlers)
    : window_(window), placer_(placer), handlers_(std::move(handlers)) {
  window_.add_events(Gdk::ENTER_NOTIFY_MASK | Gdk::LEAVE_NOTIFY_MASK | Gdk::STRUCTURE_MASK);
  connections_.push_back(window_.signal_leave_notify_event().connect(
      [this](const GdkEventCrossing* event) {
        pointerLeft(*event);
        return false;
      },
      false));
  connections_.push_back(window_.signal_enter_notify_event().connect(
      [this](const GdkEventCrossing*) {
        if (!isKeyboardTaken_) comeBack();
        return false;
      },
      false));
  connections_.push_back(window_.signal_focus_out_event().connect(
      [this](const GdkEventFocus*) {
        keyboardLeft();
        return false;
      },
      false));
  connections_.push_back(window_.signal_focus_in_event().connect(
      [this](const GdkEventFocus*) {
        if (std::exchange(isKeyboardTaken_, false)) comeBack();
        return false;
      },
      false));
  connections_.push_back(window_.signal_configure_event().connect(
      [this](const GdkEventConfigure*) {
        configured();
        return false;
      },
      false));
}

ForeignMoveWatch::~ForeignMoveWatch() {
  for (sigc::connection& connection : connections_) connection.disconnect();
  settling_.disconnect();
  freeing_.disconnect();
  thinking_.disconnect();
}

/// A menu of the program's own takes it, too, and then moves nothing.
void ForeignMoveWatch::pointerLeft(const GdkEventCrossing& event) {
  const auto place = placer_.placeOf(window_);
  const auto asked = handlers_.asked();
  const bool isTaken = event.detail == GDK_NOTIFY_ANCESTOR || event.mode == GDK_CROSSING_GRAB;
  if (!place || !asked || !isTaken) return;
  if (!move_.isPossible()) hasPaused_ = false;
  move_.pointerLeft({event.x, event.y}, asked->size, *place);
  waitForMove();
}

/// For another window, or because the window manager wants the keys, wherever the pointer is.
void ForeignMoveWatch::keyboardLeft() {
  const auto place = placer_.placeOf(window_);
  if (!place || !handlers_.asked() || !hasFocusOfDisplay(window_)) return;
  if (!move_.isPossible()) hasPaused_ = false;
  move_.keyboardTaken(*place);
  isKeyboardTaken_ = true;
  waitForMove();
}

void ForeignMoveWatch::waitForMove() {
  hasComeBack_ = false;
  waitForThought();
  waitForFreePointer();
}

void ForeignMoveWatch::comeBack() {
  hasComeBack_ = true;
  waitForFreePointer();
}

/// The pointer was taken, or a step was made, just now.
void ForeignMoveWatch::waitForThought() {
  thinking_.disconnect();
  thinking_ = Glib::signal_timeout().connect_seconds([] { return false; }, longestThoughtSeconds);
}

void ForeignMoveWatch::waitForFreePointer() {
  if (!move_.isPossible()) return;
  freeing_.disconnect();
  freeing_ = Glib::signal_timeout().connect([this] { return freePointer(); }, freeMilliseconds);
}

/// Whether it is too early.
bool ForeignMoveWatch::freePointer() {
  if (settling_.connected() || isTakenStill()) return true;
  isKeyboardTaken_ = false;
  if (move_.pointerIsFree()) handlers_.freed();
  return false;
}

/// A pointer that is let go over the card comes back to it; one that is elsewhere was let go
/// there, unless the arrow keys have moved the card away from below it.
bool ForeignMoveWatch::isTakenStill() {
  const PointerState pointer = pointerIn(window_);
  if (pointer.isButtonDown) return true;
  // Another window may have got the focus in the end.
  isKeyboardTaken_ = isKeyboardTaken_ && hasFocusOfDisplay(window_);
  const bool isElsewhere = !pointer.isInside && !hasPaused_ && !isKeyboardTaken_;
  if (hasComeBack_ || isElsewhere) return false;
  return thinking_.connected();
}

bool ForeignMoveWatch::isMoved() const {
  const auto place = placer_.placeOf(window_);
  const auto asked = handlers_.asked();
  return place && asked && move_.moves(*place, asked->origin);
}

void ForeignMoveWatch::configured() {
  if (!isMoved()) return;
  settling_.disconnect();
  settling_ = Glib::signal_timeout().connect([this] { return finish(); }, settlingMilliseconds);
}

/// Whether it is too early.
bool ForeignMoveWatch::finish() {
  if (pointerIn(window_).isButtonDown) return true;
  const auto place = isMoved() ? placer_.placeOf(window_) : std::nullopt;
  if (hasComeBack_) {
    const bool isPlacingOwed = move_.pointerIsFree();
    if (isPlacingOwed && !place) handlers_.freed();
  } else if (place) {
    move_.paused(*place);
    hasPaused_ = true;
    waitForThought();
  }
  if (place) handlers_.moved(*place);
  return false;
}

}  // namespace lanternfold
