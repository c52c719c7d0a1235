#include "HostProgram/BandwidthWindow.h"

#include <algorithm>
#include <gdk/gdkkeysyms.h>
#include <gdkmm/monitor.h>
#include <gtkmm/cellrenderertext.h>
#include <gtkmm/stylecontext.h>
#include <utility>

#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/DrawList.h"
#include "ViewTree/Elements.h"
#include "ViewTree/Layout.h"
#include "WidgetHost/Bandwidth/BandwidthMonitorView.h"
#include "WidgetHost/Bandwidth/BandwidthTexts.h"

namespace lanternfold {
namespace {

constexpr const char* chooserClass = "bandwidth-chooser";
constexpr const char* cardClass = "bandwidth-card";
constexpr int chooserHeight = 28;
/// For the names of adapters; longer ones are cut.
constexpr int widestForNames = 440;
/// The choice's border and its arrow. A text that may be cut asks for no room of its own.
constexpr int besideName = 50;
/// What can be seen on the product's background, whatever the theme is.
constexpr const char* look = R"(
.bandwidth-chooser button {
  min-height: 24px; padding: 1px 8px; border-radius: 6px;
  border: 1px solid alpha(white, 0.45); box-shadow: none;
  background-image: none; background-color: alpha(black, 0.18);
}
.bandwidth-chooser button, .bandwidth-chooser button * {
  color: white; text-shadow: none; -gtk-icon-shadow: none;
}
.bandwidth-chooser button:hover { background-color: alpha(black, 0.3); }
.bandwidth-chooser button:focus { outline-color: white; border-color: white; }
.bandwidth-card { outline: 1px dashed white; outline-offset: 0; }
)";

int chooserMargin(BandwidthWindowMode mode) { return mode == BandwidthWindowMode::mini ? 12 : 16; }

/// As wide and as high as every monitor has room for.
Gdk::Rectangle leastWorkArea(Gdk::Display& display) {
  constexpr int unbounded = 1 << 20;
  Gdk::Rectangle least(0, 0, unbounded, unbounded);
  for (int index = 0; index < display.get_n_monitors(); ++index) {
    Gdk::Rectangle area;
    display.get_monitor(index)->get_workarea(area);
    least.set_width(std::min(least.get_width(), area.get_width()));
    least.set_height(std::min(least.get_height(), area.get_height()));
  }
  return least;
}

Size cardSize(BandwidthWindowMode mode) {
  return mode == BandwidthWindowMode::mini ? bandwidthMonitorMiniSize : bandwidthMonitorSize;
}

}  // namespace

BandwidthWindow::BandwidthWindow(Surroundings surroundings, BandwidthWindowMode mode)
    : surroundings_(std::move(surroundings)) {
  set_title(surroundings_.strings.localized("Bandwidth Monitor"));
  set_role("bandwidth-monitor");
  look_->load_from_data(look);
  Gtk::StyleContext::add_provider_for_screen(get_screen(), look_,
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  buildChooser(mode);
  buildCard();
  box_.signal_draw().connect(sigc::mem_fun(*this, &BandwidthWindow::drawBackground), false);
  add(box_);
  box_.show_all();
  setUsualSize(mode);
  surroundings_.model.setObserver([this] { refresh(); });
}

BandwidthWindow::~BandwidthWindow() {
  surroundings_.model.setObserver({});
  surroundings_.model.setShown(false);
  Gtk::StyleContext::remove_provider_for_screen(get_screen(), look_);
}

void BandwidthWindow::setColourScheme(ColourScheme scheme) {
  scheme_ = scheme;
  queue_draw();
}

void BandwidthWindow::buildChooser(BandwidthWindowMode mode) {
  chooser_.get_style_context()->add_class(chooserClass);
  chooser_.set_margin_start(chooserMargin(mode));
  chooser_.set_margin_end(chooserMargin(mode));
  chooser_.set_margin_top(chooserMargin(mode));
  chooser_.get_accessible()->set_name(surroundings_.strings.localized("Network Adapter"));
  // The names of adapters are long, and the window is to stay as narrow as the user likes.
  auto* const text = dynamic_cast<Gtk::CellRendererText*>(chooser_.get_first_cell());
  if (text != nullptr) {
    text->property_ellipsize() = Pango::ELLIPSIZE_END;
    text->property_width_chars() = 8;
  }
  // Before there are adapters, too: it would not get the focus that a new window gives.
  chooser_.set_button_sensitivity(Gtk::SENSITIVITY_ON);
  chosen_ = chooser_.signal_changed().connect(
      [this] { surroundings_.model.choose(chooser_.get_active_id().raw()); });
  chooser_.property_popup_shown().signal_changed().connect([this] { refreshChooser(); });
  box_.pack_start(chooser_, Gtk::PACK_SHRINK);
}

void BandwidthWindow::buildCard() {
  card_.set_size_request(static_cast<int>(bandwidthMonitorLeastSize.width),
                         static_cast<int>(bandwidthMonitorLeastSize.height));
  card_.get_style_context()->add_class(cardClass);
  // So that a screen reader's user gets to it.
  card_.set_can_focus(true);
  card_.get_accessible()->set_role(Atk::ROLE_IMAGE);
  card_.signal_draw().connect(sigc::mem_fun(*this, &BandwidthWindow::drawCard), false);
  box_.pack_start(card_, Gtk::PACK_EXPAND_WIDGET);
}

void BandwidthWindow::setUsualSize(BandwidthWindowMode mode) {
  const Size card = cardSize(mode);
  const Gdk::Rectangle room = leastWorkArea(*get_display().operator->());
  set_default_size(std::min(static_cast<int>(card.width), room.get_width()),
                   std::min(static_cast<int>(card.height) + chooserHeight + chooserMargin(mode),
                            room.get_height()));
}

/// They become known one after the other. A window that the user has made narrower
/// than usual stays so.
void BandwidthWindow::makeRoomForNames() {
  int widest = 0;
  for (const NetworkAdapter& adapter : offered_) {
    int nameWidth = 0;
    int nameHeight = 0;
    chooser_.create_pango_layout(adapter.display)->get_pixel_size(nameWidth, nameHeight);
    widest = std::max(widest, nameWidth);
  }
  const int natural = widest + besideName + chooser_.get_margin_start() + chooser_.get_margin_end();
  int width = 0;
  int height = 0;
  get_size(width, height);
  int usualWidth = 0;
  int usualHeight = 0;
  get_default_size(usualWidth, usualHeight);
  const int most = std::min(widestForNames, leastWorkArea(*get_display().operator->()).get_width());
  const int wanted = std::min(natural, most);
  if (width >= usualWidth && wanted > width) resize(wanted, height);
}

void BandwidthWindow::on_show() {
  refresh();
  Gtk::Window::on_show();
  follow();
}

void BandwidthWindow::on_hide() {
  Gtk::Window::on_hide();
  follow();
}

bool BandwidthWindow::on_window_state_event(GdkEventWindowState* event) {
  isMinimised_ = (event->new_window_state & GDK_WINDOW_STATE_ICONIFIED) != 0;
  follow();
  return Gtk::Window::on_window_state_event(event);
}

bool BandwidthWindow::on_key_press_event(GdkEventKey* event) {
  if (Gtk::Window::on_key_press_event(event)) return true;
  const bool isCloseShortcut = event->keyval == GDK_KEY_w && (event->state & GDK_CONTROL_MASK) != 0;
  if (event->keyval != GDK_KEY_Escape && !isCloseShortcut) return false;
  close();
  return true;
}

void BandwidthWindow::follow() { surroundings_.model.setShown(get_visible() && !isMinimised_); }

void BandwidthWindow::refresh() {
  refreshChooser();
  describeCard();
  card_.queue_draw();
}

void BandwidthWindow::refreshChooser() {
  const BandwidthMonitorState& state = surroundings_.model.state();
  // A list that is open would close under the user's hand; it comes here when it is closed.
  if (chooser_.property_popup_shown().get_value()) return;
  chosen_.block();
  if (offered_ != state.adapters) {
    chooser_.remove_all();
    for (const NetworkAdapter& adapter : state.adapters) {
      chooser_.append(adapter.identifier.value_or(adapter.display), adapter.display);
    }
    offered_ = state.adapters;
    makeRoomForNames();
  }
  if (chooser_.get_active_id().raw() != state.chosenIdentifier) {
    chooser_.set_active_id(state.chosenIdentifier);
  }
  chosen_.unblock();
}

/// The name stays, so that a screen reader that stands on the card does not read all of it out
/// every second; the figures are its description, for whoever asks.
void BandwidthWindow::describeCard() {
  const auto accessible = card_.get_accessible();
  accessible->set_name(surroundings_.strings.localized("Bandwidth Monitor"));
  accessible->set_description(bandwidthSummary(surroundings_.model.state(), surroundings_.strings));
}

bool BandwidthWindow::drawBackground(const Cairo::RefPtr<Cairo::Context>& context) {
  const Size size{static_cast<double>(box_.get_allocated_width()),
                  static_cast<double>(box_.get_allocated_height())};
  const View gradient =
      linearGradient(Colour::named(gradientStartColour), Colour::named(gradientEndColour));
  const LaidOutView laidOut =
      layOut(gradient, size, {.measurer = surroundings_.measurer, .drawingTime = {}});
  surroundings_.painter.paint(
      makeDrawList(laidOut, {surroundings_.colours, scheme_, surroundings_.report}),
      context->cobj());
  return false;
}

bool BandwidthWindow::drawCard(const Cairo::RefPtr<Cairo::Context>& context) {
  const int width = card_.get_allocated_width();
  const int height = card_.get_allocated_height();
  const Size size{static_cast<double>(width), static_cast<double>(height)};
  const BandwidthMonitorView view{surroundings_.model.state(), surroundings_.strings};
  const LayoutDirection direction = get_direction() == Gtk::TEXT_DIR_RTL
                                        ? LayoutDirection::rightToLeft
                                        : LayoutDirection::leftToRight;
  const LaidOutView laidOut =
      layOut(view.body(size), size,
             {.measurer = surroundings_.measurer, .drawingTime = {}, .direction = direction});
  surroundings_.painter.paint(
      makeDrawList(laidOut, {surroundings_.colours, scheme_, surroundings_.report}),
      context->cobj());
  if (card_.has_visible_focus()) {
    constexpr int inset = 3;
    card_.get_style_context()->render_focus(context, inset, inset, width - 2 * inset,
                                            height - 2 * inset);
  }
  return true;
}

}  // namespace lanternfold
