#include "HostProgram/Cards/CardWindow.h"

#include <gdk/gdkkeysyms.h>
#include <gdkmm/screen.h>
#include <gtk/gtk.h>
#include <utility>

#include "HostProgram/Cards/CardShape.h"
#include "HostProgram/Display/TranslucentWindow.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

CardWindow::CardWindow(const CardDrawing& drawing, WindowPlacer& placer, Handlers handlers)
    : placer_(placer),
      handlers_(std::move(handlers)),
      canvas_(drawing, {.press = handlers_.press, .openLink = handlers_.openLink}),
      gesture_(Gtk::GestureDrag::create(*this)),
      foreignMoves_(*this, placer_,
                    {.asked = [this] { return askedFrame(); },
                     .moved = [this](Point place) { handlers_.movedElsewhere({place, size_}); },
                     .freed = [this] { placeAgain(); }}) {
  makeTranslucent(*this);  // for the corners
  add(canvas_);
  add_events(Gdk::BUTTON_PRESS_MASK);
  // Before the buttons of the card get to know: a press on one of them becomes a move when the
  // pointer leaves its place.
  gesture_->set_propagation_phase(Gtk::PHASE_CAPTURE);
  gesture_->set_button(GDK_BUTTON_PRIMARY);
  gesture_->signal_drag_begin().connect([this](double, double) { beginDrag(); });
  gesture_->signal_drag_update().connect([this](double, double) { followPointer(); });
  gesture_->signal_drag_end().connect([this](double, double) { endDrag(/*isKept=*/true); });
  gesture_->signal_cancel().connect([this](GdkEventSequence*) { endDrag(/*isKept=*/false); });
  get_screen()->signal_composited_changed().connect(sigc::mem_fun(*this, &CardWindow::applyShape));
  focusRing_ = property_focus_visible().signal_changed().connect([this] { canvas_.queue_draw(); });
  placer_.prepare(*this);
}

/// The toolkit's window goes after the canvas.
CardWindow::~CardWindow() { focusRing_.disconnect(); }

void CardWindow::showCard(const std::string& name, const View& view, const CardState& state) {
  set_title(name);
  const bool isResized = size_ != state.size;
  size_ = state.size;
  frame_.size = size_;
  canvas_.show(name, view, state);
  if (isResized) applyShape();
}

void CardWindow::placeAt(const PlacedMonitor& monitor, Point origin) {
  monitor_ = monitor;
  const Point former = frame_.origin;
  frame_.origin = {monitor.origin.x + origin.x, monitor.origin.y + origin.y};
  const bool isStaying = get_visible() && frame_.origin == former;
  const bool isHeld = isStaying && foreignMoves_.holdsPlacing();
  const bool isDragged = drag_ && drag_->isMoving();
  if (!isHeld && !isDragged) placer_.place(*this, monitor, origin, size_);
}

void CardWindow::placeAgain() {
  if (!monitor_ || !get_visible()) return;
  placeAt(*monitor_, {frame_.origin.x - monitor_->origin.x, frame_.origin.y - monitor_->origin.y});
}

std::optional<Rect> CardWindow::askedFrame() const {
  return drag_ ? std::nullopt : std::optional(frame_);
}

void CardWindow::raiseCard() {
  isRaised_ = true;
  placer_.raise(*this);
}

void CardWindow::raiseCardWithFocus() {
  isRaised_ = true;
  placer_.raiseWithFocus(*this);
  canvas_.grab_focus();
}

void CardWindow::lowerCard() {
  if (!std::exchange(isRaised_, false)) return;
  placer_.lower(*this);
}

void CardWindow::on_realize() {
  Gtk::Window::on_realize();
  applyShape();
}

/// Where nothing composes the windows, what is half transparent of a smooth corner would be half
/// black.
void CardWindow::applyShape() {
  if (!get_realized()) return;
  const auto shape = cardShape(size_, widgetCornerRadius);
  input_shape_combine_region(shape);
  const bool isComposed = get_screen()->is_composited();
  shape_combine_region(isComposed ? Cairo::RefPtr<Cairo::Region>() : shape);
  canvas_.setCorners(isComposed ? CardCorners::painted : CardCorners::ofWindow);
}

/// A user who closes the window is asked whether the widget is to go; the window stays meanwhile.
/// A monitor that is unplugged takes its surfaces along. What the widget is goes on: it is placed
/// anew when the monitors have been counted.
bool CardWindow::on_delete_event(GdkEventAny*) {
  if (placer_.isClosedByUser()) {
    handlers_.removalAsked();
  } else {
    hide();
  }
  return true;
}

std::optional<Point> CardWindow::pointerOnDesktop() const {
  GdkEventSequence* const sequence = gesture_->get_current_sequence();
  const GdkEvent* const event = gtk_gesture_get_last_event(GTK_GESTURE(gesture_->gobj()), sequence);
  Point inWindow;
  if (event == nullptr || !gesture_->get_point(sequence, inWindow.x, inWindow.y)) {
    return std::nullopt;
  }
  return placer_.pointerOnDesktop(*event, inWindow, frame_);
}

void CardWindow::beginDrag() {
  if (const auto pointer = pointerOnDesktop()) drag_.emplace(frame_, *pointer);
}

void CardWindow::followPointer() {
  const auto pointer = pointerOnDesktop();
  if (!drag_ || !pointer) return;
  const bool wasMoving = drag_->isMoving();
  if (!drag_->moveTo(*pointer)) return;
  if (!wasMoving) {
    GdkEventSequence* const sequence = gesture_->get_current_sequence();
    startMove(*gtk_gesture_get_last_event(GTK_GESTURE(gesture_->gobj()), sequence));
  }
  if (!move_) return;
  landing_ = handlers_.landing(*drag_);
  if (!landing_) return;
  const MonitorPosition& position = landing_->position;
  move_->to(landing_->monitor, {static_cast<double>(position.x), static_cast<double>(position.y)});
}

void CardWindow::startMove(const GdkEvent& event) {
  gesture_->set_state(Gtk::EVENT_SEQUENCE_CLAIMED);
  move_ = placer_.beginMove(
      *this, size_,
      [this](const Cairo::RefPtr<Cairo::Context>& context) {
        canvas_.picture().paint(context->cobj());
      },
      event);
  // The display moves it from here on.
  if (!move_) drag_.reset();
}

void CardWindow::endDrag(bool isKept) {
  const bool wasMoving = drag_ && drag_->isMoving();
  const std::optional<Landing> landing = std::exchange(landing_, std::nullopt);
  drag_.reset();
  if (!wasMoving || !landing) {
    move_.reset();
    return;
  }
  if (isKept) {
    const MonitorPosition& position = landing->position;
    placeAt(landing->monitor, {static_cast<double>(position.x), static_cast<double>(position.y)});
    handlers_.moved(position);
  } else {
    placeAgain();
  }
  move_.reset();
}

bool CardWindow::on_button_press_event(GdkEventButton* event) {
  const auto* const any = reinterpret_cast<const GdkEvent*>(event);
  if (gdk_event_triggers_context_menu(any) != FALSE) {
    handlers_.openMenu(*any);
    return true;
  }
  return Gtk::Window::on_button_press_event(event);
}

bool CardWindow::on_key_press_event(GdkEventKey* event) {
  return handleKey(*event) || Gtk::Window::on_key_press_event(event);
}

bool CardWindow::handleKey(const GdkEventKey& event) {
  const guint modifiers = event.state & static_cast<guint>(gtk_accelerator_get_default_mod_mask());
  switch (event.keyval) {
    case GDK_KEY_Left:
    case GDK_KEY_KP_Left:
      handlers_.stepped(-1, 0);
      return true;
    case GDK_KEY_Right:
    case GDK_KEY_KP_Right:
      handlers_.stepped(1, 0);
      return true;
    case GDK_KEY_Up:
    case GDK_KEY_KP_Up:
      handlers_.stepped(0, -1);
      return true;
    case GDK_KEY_Down:
    case GDK_KEY_KP_Down:
      handlers_.stepped(0, 1);
      return true;
    case GDK_KEY_Menu:
      handlers_.openMenu(reinterpret_cast<const GdkEvent&>(event));
      return true;
    case GDK_KEY_F10:
      if (modifiers != GDK_SHIFT_MASK) return false;
      handlers_.openMenu(reinterpret_cast<const GdkEvent&>(event));
      return true;
    case GDK_KEY_Delete:
    case GDK_KEY_KP_Delete:
      handlers_.removalAsked();
      return true;
    case GDK_KEY_F6:
      handlers_.nextCard(modifiers != GDK_SHIFT_MASK);
      return true;
    case GDK_KEY_Escape:
      handlers_.leave();
      return true;
    default:
      return false;
  }
}

}  // namespace lanternfold
