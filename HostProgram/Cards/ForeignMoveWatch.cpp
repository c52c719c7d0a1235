#include "HostProgram/Cards/ForeignMoveWatch.h"

#include <gdkmm/display.h>
#include <glibmm/main.h>
#include <utility>

namespace lanternfold {
namespace {

/// Some window managers tell of each step of a move, others of its end.
constexpr unsigned settlingMilliseconds = 300;
/// They may let the pointer go before they tell where the card stands.
constexpr unsigned freeMilliseconds = 1000;

bool isButtonDown(Gtk::Window& window) {
  if (!window.get_mapped()) return false;
  GdkDevice* const pointer =
      gdk_seat_get_pointer(gdk_display_get_default_seat(window.get_display()->gobj()));
  GdkModifierType state{};
  gdk_window_get_device_position(window.get_window()->gobj(), pointer, nullptr, nullptr, &state);
  constexpr unsigned buttons = GDK_BUTTON1_MASK | GDK_BUTTON2_MASK | GDK_BUTTON3_MASK;
  return (static_cast<unsigned>(state) & buttons) != 0;
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
        waitForFreePointer();
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
}

/// A menu of the program's own takes it, too, and then moves nothing.
void ForeignMoveWatch::pointerLeft(const GdkEventCrossing& event) {
  const auto place = placer_.placeOf(window_);
  const auto asked = handlers_.asked();
  const bool isTaken = event.detail == GDK_NOTIFY_ANCESTOR || event.mode == GDK_CROSSING_GRAB;
  if (!place || !asked || !isTaken) return;
  move_.pointerLeft({event.x, event.y}, asked->size, *place);
  waitForFreePointer();
}

void ForeignMoveWatch::waitForFreePointer() {
  if (!move_.isPossible()) return;
  freeing_.disconnect();
  freeing_ = Glib::signal_timeout().connect(
      [this] {
        if (isButtonDown(window_)) return true;
        if (!settling_.connected()) move_.pointerIsFree();
        return false;
      },
      freeMilliseconds);
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
  if (isButtonDown(window_)) return true;
  const auto place = isMoved() ? placer_.placeOf(window_) : std::nullopt;
  move_.pointerIsFree();
  if (place) handlers_.moved(*place);
  return false;
}

}  // namespace lanternfold
