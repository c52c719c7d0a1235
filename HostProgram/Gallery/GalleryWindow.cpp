#include "HostProgram/Gallery/GalleryWindow.h"

#include <gdk/gdkkeysyms.h>
#include <gtkmm/label.h>
#include <utility>

#include <pangomm/attrlist.h>

namespace lanternfold {
namespace {

constexpr int margin = 24;
constexpr int spacing = 12;
/// Wide enough for a widget of each size.
constexpr int usualWidth = 800;
constexpr int usualHeight = 640;

Gtk::Label* makeLabel(const std::string& text) {
  auto* const label = Gtk::make_managed<Gtk::Label>(text);
  label->set_line_wrap(true);
  label->set_xalign(0);
  return label;
}

Gtk::Label* makeTitle(const std::string& text) {
  auto* const label = makeLabel(text);
  Pango::AttrList attributes;
  auto weight = Pango::Attribute::create_attr_weight(Pango::WEIGHT_BOLD);
  attributes.insert(weight);
  label->set_attributes(attributes);
  label->get_accessible()->set_role(Atk::ROLE_HEADING);
  return label;
}

}  // namespace

GalleryWindow::GalleryWindow(Surroundings surroundings, std::vector<WidgetDescription> catalogue)
    : surroundings_(std::move(surroundings)),
      catalogue_(std::move(catalogue)),
      kinds_(Gtk::ORIENTATION_VERTICAL, margin) {
  set_title(surroundings_.strings.localized("Add widget"));
  set_default_size(usualWidth, usualHeight);
  set_position(Gtk::WIN_POS_CENTER);
  kinds_.set_border_width(margin);
  scrolled_.set_policy(Gtk::POLICY_AUTOMATIC, Gtk::POLICY_AUTOMATIC);
  scrolled_.add(kinds_);
  add(scrolled_);
  build();
}

void GalleryWindow::showCatalogue(std::vector<WidgetDescription> catalogue) {
  if (catalogue_ == catalogue) return;
  catalogue_ = std::move(catalogue);
  askAnew();
}

void GalleryWindow::askAnew() {
  clear();
  build();
}

void GalleryWindow::build() {
  questions_ = std::make_unique<PreviewQuestions>(surroundings_.extension, surroundings_.onDesktop);
  for (const WidgetDescription& description : catalogue_) addKind(description);
  if (catalogue_.empty()) {
    kinds_.pack_start(
        *makeLabel(surroundings_.strings.localized("No widgets are known yet. Try again soon.")),
        Gtk::PACK_SHRINK);
  }
  show_all_children();
}

void GalleryWindow::clear() {
  questions_.reset();
  tiles_.clear();
  for (Gtk::Widget* const kind : kinds_.get_children()) kinds_.remove(*kind);
}

void GalleryWindow::addKind(const WidgetDescription& description) {
  auto* const kind = Gtk::make_managed<Gtk::Box>(Gtk::ORIENTATION_VERTICAL, spacing);
  kind->pack_start(*makeTitle(description.displayName), Gtk::PACK_SHRINK);
  kind->pack_start(*makeLabel(description.description), Gtk::PACK_SHRINK);
  auto* const families = Gtk::make_managed<Gtk::Box>(Gtk::ORIENTATION_HORIZONTAL, margin);
  const PreviewTile::Surroundings surroundings{.questions = *questions_,
                                               .drawing = surroundings_.drawing,
                                               .strings = surroundings_.strings,
                                               .add = surroundings_.add};
  for (const WidgetFamily family : description.supportedFamilies) {
    auto& tile =
        tiles_.emplace_back(std::make_unique<PreviewTile>(surroundings, description, family));
    families->pack_start(*tile, Gtk::PACK_SHRINK);
  }
  kind->pack_start(*families, Gtk::PACK_SHRINK);
  kinds_.pack_start(*kind, Gtk::PACK_SHRINK);
}

void GalleryWindow::refresh() {
  for (const auto& tile : tiles_) tile->refresh();
}

bool GalleryWindow::on_key_press_event(GdkEventKey* event) {
  if (event->keyval == GDK_KEY_Escape) {
    close();
    return true;
  }
  return Gtk::Window::on_key_press_event(event);
}

}  // namespace lanternfold
