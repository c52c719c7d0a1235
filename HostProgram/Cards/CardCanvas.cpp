#include "HostProgram/Cards/CardCanvas.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "HostProgram/Cards/FocusRing.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

namespace {

/// A button's ring stands around what it shows, which may be as small as a letter.
constexpr double buttonRingMargin = 5;
constexpr double buttonRingRadius = 9;

Rect around(const Rect& frame) {
  return {{frame.left() - buttonRingMargin, frame.top() - buttonRingMargin},
          {frame.size.width + 2 * buttonRingMargin, frame.size.height + 2 * buttonRingMargin}};
}

}  // namespace

CardCanvas::CardCanvas(const CardDrawing& drawing, Handlers handlers)
    : handlers_(std::move(handlers)), picture_(drawing) {
  bareButtons_->load_from_data("button { all: unset; }");
  set_can_focus(true);
  get_accessible()->set_role(Atk::ROLE_PANEL);
  Gtk::Fixed::show();
}

/// Buttons that go lose the focus and what else they are, of which they still tell.
CardCanvas::~CardCanvas() {
  for (sigc::connection& connection : connections_) connection.disconnect();
}

void CardCanvas::show(const std::string& name, const View& view, const CardState& state) {
  state_ = state;
  set_size_request(static_cast<int>(state.size.width), static_cast<int>(state.size.height));
  get_accessible()->set_name(name);
  if (picture_.show(view, state_)) showPicture();
}

void CardCanvas::refresh() {
  if (picture_.show(state_)) showPicture();
}

void CardCanvas::setCorners(CardCorners corners) {
  picture_.setCorners(corners);
  refresh();
}

void CardCanvas::showPicture() {
  get_accessible()->set_description(picture_.description());
  layFaces();
  queue_draw();
}

void CardCanvas::layFaces() {
  const std::vector<CardFace>& faces = picture_.faces();
  while (buttons_.size() < faces.size()) addButton();
  // A button keeps its place among the others, and with it the keyboard's focus. What is too many
  // is kept hidden, since it may be just this one's signal that has led here.
  for (std::size_t index = 0; index < buttons_.size(); ++index) {
    const bool isUsed = index < faces.size();
    if (isUsed) lay(*buttons_[index], faces[index]);
    buttons_[index]->set_visible(isUsed);
  }
}

void CardCanvas::addButton() {
  FaceButton& button = *buttons_.emplace_back(std::make_unique<FaceButton>(bareButtons_));
  connections_.push_back(button.signal_clicked().connect([this, &button] { activate(button); }));
  connections_.push_back(button.signal_state_flags_changed().connect(
      [this, &button](Gtk::StateFlags) { showPressed(button); }));
  connections_.push_back(
      button.property_has_focus().signal_changed().connect([this] { queue_draw(); }));
  put(button, 0, 0);
}

void CardCanvas::lay(FaceButton& button, const CardFace& face) {
  if (button.face() == face) return;
  button.setFace(face);
  move(button, static_cast<int>(std::floor(face.frame.left())),
       static_cast<int>(std::floor(face.frame.top())));
}

void CardCanvas::activate(const FaceButton& button) {
  // What is called may bring another view, and with it another face.
  const auto action = button.face().action;
  if (const auto* pressed = std::get_if<ButtonNode>(&action)) handlers_.press(pressed->intent);
  if (const auto* link = std::get_if<LinkNode>(&action)) handlers_.openLink(link->url);
}

void CardCanvas::showPressed(const FaceButton& button) {
  const auto* pressed = std::get_if<ButtonNode>(&button.face().action);
  if (pressed == nullptr) return;
  const bool isDown = (button.get_state_flags() & Gtk::STATE_FLAG_ACTIVE) != 0;
  if (!isDown && state_.pressedIntent != pressed->intent) return;
  state_.pressedIntent = isDown ? std::optional(pressed->intent) : std::nullopt;
  refresh();
}

std::vector<Gtk::Widget*> CardCanvas::focusOrder() {
  std::vector<Gtk::Widget*> order{this};
  for (const auto& button : buttons_) {
    if (button->get_visible()) order.push_back(button.get());
  }
  return order;
}

/// The toolkit's own containers are focused either as a whole or in their parts.
bool CardCanvas::on_focus(Gtk::DirectionType direction) {
  if (direction != Gtk::DIR_TAB_FORWARD && direction != Gtk::DIR_TAB_BACKWARD) return false;
  std::vector<Gtk::Widget*> order = focusOrder();
  if (direction == Gtk::DIR_TAB_BACKWARD) std::ranges::reverse(order);
  const auto current =
      std::ranges::find_if(order, [](const Gtk::Widget* widget) { return widget->has_focus(); });
  const auto next = current == order.end() ? order.begin() : current + 1;
  if (next == order.end()) return false;
  (*next)->grab_focus();
  return true;
}

bool CardCanvas::on_draw(const Cairo::RefPtr<Cairo::Context>& context) {
  picture_.paint(context->cobj());
  drawFocus(context);
  return Gtk::Fixed::on_draw(context);
}

void CardCanvas::drawFocus(const Cairo::RefPtr<Cairo::Context>& context) const {
  if (has_visible_focus()) drawFocusRing(context, {{0, 0}, state_.size}, widgetCornerRadius);
  for (const auto& button : buttons_) {
    if (button->has_visible_focus()) {
      drawFocusRing(context, around(button->face().frame), buttonRingRadius);
    }
  }
}

}  // namespace lanternfold
