#include "HostProgram/Gallery/PreviewTile.h"

#include "NetworkWidgetVexExtension/Views/WidgetFamilyTitle.h"

namespace lanternfold {
namespace {

/// Small enough for two beside each other in a small window, large enough to be read.
constexpr double previewScale = 0.75;
constexpr int spacing = 6;

int scaled(double points) { return static_cast<int>(points * previewScale); }

}  // namespace

PreviewTile::PreviewTile(const Surroundings& surroundings, const WidgetDescription& description,
                         WidgetFamily family)
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL, spacing),
      surroundings_(surroundings),
      kind_(description.kind),
      family_(family),
      state_{.size = widgetSize(family)},
      picture_(surroundings_.drawing) {
  const StringTable& strings = surroundings_.strings;
  const std::string title = widgetFamilyTitle(family, strings);
  buildPreview(description.displayName + ", " + title);
  size_.set_text(title);
  button_.set_label(strings.localized("Add"));
  button_.get_accessible()->set_name(strings.localized("Add") + ": " + description.displayName +
                                     ", " + title);
  button_.set_halign(Gtk::ALIGN_CENTER);
  button_.signal_clicked().connect([this] { add(); });
  pack_start(pointer_, Gtk::PACK_SHRINK);
  pack_start(size_, Gtk::PACK_SHRINK);
  pack_start(button_, Gtk::PACK_SHRINK);
  set_valign(Gtk::ALIGN_START);
  surroundings.questions.ask(kind_, family_, [this](const ViewEntry& entry) { showEntry(entry); });
}

void PreviewTile::buildPreview(const std::string& displayName) {
  const Size size = widgetSize(family_);
  preview_.set_size_request(scaled(size.width), scaled(size.height));
  preview_.signal_draw().connect(sigc::mem_fun(*this, &PreviewTile::paint));
  preview_.get_accessible()->set_role(Atk::ROLE_IMAGE);
  preview_.get_accessible()->set_name(displayName);
  pointer_.set_halign(Gtk::ALIGN_CENTER);
  pointer_.add(preview_);
  pointer_.signal_button_press_event().connect([this](const GdkEventButton* event) {
    const bool isDoubleClick =
        event->type == GDK_2BUTTON_PRESS && event->button == GDK_BUTTON_PRIMARY;
    if (isDoubleClick) add();
    return isDoubleClick;
  });
}

void PreviewTile::showEntry(const ViewEntry& entry) {
  state_.time = entry.date;
  if (picture_.show(entry.view, state_)) showPicture();
}

void PreviewTile::refresh() {
  if (picture_.show(state_)) showPicture();
}

void PreviewTile::showPicture() {
  preview_.get_accessible()->set_description(picture_.description());
  preview_.queue_draw();
}

bool PreviewTile::paint(const Cairo::RefPtr<Cairo::Context>& context) {
  context->scale(previewScale, previewScale);
  picture_.paint(context->cobj());
  return true;
}

}  // namespace lanternfold
