#include "HostProgram/Cards/FaceButton.h"

#include <cmath>
#include <gdkmm/cursor.h>
#include <gdkmm/display.h>
#include <gtk/gtk.h>

namespace lanternfold {
namespace {

int wholePoints(double length) { return static_cast<int>(std::ceil(length)); }

}  // namespace

FaceButton::FaceButton(const Glib::RefPtr<Gtk::CssProvider>& style) {
  get_style_context()->add_provider(style, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  set_focus_on_click(false);
}

void FaceButton::setFace(const CardFace& face) {
  const bool isLink = std::holds_alternative<LinkNode>(face.action);
  face_ = face;
  set_size_request(wholePoints(face.frame.size.width), wholePoints(face.frame.size.height));
  const Glib::RefPtr<Atk::Object> accessible = get_accessible();
  accessible->set_role(isLink ? Atk::ROLE_LINK : Atk::ROLE_PUSH_BUTTON);
  accessible->set_name(face.name);
  showCursor();
}

bool FaceButton::on_draw(const Cairo::RefPtr<Cairo::Context>&) { return true; }

void FaceButton::on_realize() {
  Gtk::Button::on_realize();
  showCursor();
}

void FaceButton::showCursor() {
  GdkWindow* const events = gtk_button_get_event_window(gobj());
  if (events == nullptr) return;
  const bool isLink = std::holds_alternative<LinkNode>(face_.action);
  const Glib::RefPtr<Gdk::Cursor> hand =
      isLink ? Gdk::Cursor::create(get_display(), "pointer") : Glib::RefPtr<Gdk::Cursor>();
  gdk_window_set_cursor(events, hand ? hand->gobj() : nullptr);
}

}  // namespace lanternfold
