#include "HostProgram/Display/SchemeWatch.h"

#include <glibmm/main.h>
#include <gtkmm/settings.h>
#include <utility>

namespace lanternfold {
namespace {

/// A portal that runs answers within milliseconds; one that is only being started takes seconds.
constexpr unsigned patienceMilliseconds = 250;

}  // namespace

SchemeWatch::SchemeWatch(DesktopAppearance& appearance, std::optional<std::string> forcedTheme,
                         Handlers handlers)
    : handlers_(std::move(handlers)), forcedTheme_(std::move(forcedTheme)) {
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
    settle();
  });
  patience_ = Glib::signal_timeout().connect(
      [this] {
        settle();
        return false;
      },
      patienceMilliseconds);
}

SchemeWatch::~SchemeWatch() {
  themeChanges_.disconnect();
  patience_.disconnect();
}

void SchemeWatch::settle() {
  patience_.disconnect();
  if (const auto settled = std::exchange(handlers_.settled, nullptr)) settled();
}

void SchemeWatch::readTheme() {
  themeName_ = forcedTheme_
                   ? *forcedTheme_
                   : Gtk::Settings::get_default()->property_gtk_theme_name().get_value().raw();
}

void SchemeWatch::choose() {
  const ColourScheme scheme =
      chosenScheme(preference_, {.name = themeName_, .prefersDark = themePrefersDark_});
  if (std::exchange(scheme_, scheme) == scheme) return;
  Gtk::Settings::get_default()->property_gtk_application_prefer_dark_theme() =
      scheme == ColourScheme::dark;
  handlers_.changed(scheme);
}

}  // namespace lanternfold
