#include "HostProgram/Display/SchemeWatch.h"

#include <gtkmm/settings.h>
#include <utility>

namespace lanternfold {

SchemeWatch::SchemeWatch(DesktopAppearance& appearance, std::function<void(ColourScheme)> changed)
    : changed_(std::move(changed)) {
  const auto settings = Gtk::Settings::get_default();
  themePrefersDark_ = settings->property_gtk_application_prefer_dark_theme();
  readTheme();
  scheme_ = chosenScheme(preference_, {.name = themeName_, .prefersDark = themePrefersDark_});
  themeChanges_ = settings->property_gtk_theme_name().signal_changed().connect([this] {
    readTheme();
    choose();
  });
  appearance.start([this, alive = std::weak_ptr(isAlive_)](PreferredColourScheme preference) {
    if (alive.expired()) return;
    preference_ = preference;
    choose();
  });
}

SchemeWatch::~SchemeWatch() { themeChanges_.disconnect(); }

void SchemeWatch::readTheme() {
  themeName_ = Gtk::Settings::get_default()->property_gtk_theme_name().get_value();
}

void SchemeWatch::choose() {
  const ColourScheme scheme =
      chosenScheme(preference_, {.name = themeName_, .prefersDark = themePrefersDark_});
  if (std::exchange(scheme_, scheme) == scheme) return;
  Gtk::Settings::get_default()->property_gtk_application_prefer_dark_theme() =
      scheme == ColourScheme::dark;
  changed_(scheme);
}

}  // namespace lanternfold
