#include "HostProgram/Links/LinkOpener.h"

#include <filesystem>
#include <gdkmm/applaunchcontext.h>
#include <gdkmm/display.h>
#include <giomm/appinfo.h>
#include <giomm/init.h>
#include <glibmm/miscutils.h>

#include "WidgetHost/Links/LinkPolicy.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

/// With every link followed; empty for what is not there.
std::filesystem::path programAt(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::canonical(path, error);
}

/// Whether a program that is not this one has the product's own scheme.
bool areOwnLinksHandledElsewhere() {
  const auto application = Gio::AppInfo::get_default_for_uri_scheme(std::string(deepLinkScheme));
  if (!application) return false;
  const LinkHandler handler{
      .desktopFile = application->get_id(),
      .program = programAt(Glib::find_program_in_path(application->get_executable()))};
  return !isThisProgram(handler, programAt("/proc/self/exe"));
}

}  // namespace

void LinkOpener::open(const std::string& url) {
  follow(linkTarget(url, areOwnLinksHandledElsewhere()), url);
}

void LinkOpener::openFromOutside(const std::string& url) {
  follow(linkTargetFromOutside(url), url);
}

void LinkOpener::follow(LinkTarget target, const std::string& url) {
  switch (target) {
    case LinkTarget::nothing:
      log_.line("a link was not opened, which leads nowhere that the widgets may open: " +
                inQuotes(url));
      break;
    case LinkTarget::system:
      handToSystem(url);
      break;
    case LinkTarget::ownBandwidthMonitor:
      openBandwidthMonitor_(url);
      break;
  }
}

void LinkOpener::handToSystem(const std::string& url) {
  const auto context = Gdk::Display::get_default()->get_app_launch_context();
  for (const GivenVariable& given : givenVariables_) {
    if (given.value) {
      context->setenv(given.name, *given.value);
    } else {
      context->unsetenv(given.name);
    }
  }
  Gio::AppInfo::launch_default_for_uri_async(
      url, context,
      [this, url](const Glib::RefPtr<Gio::AsyncResult>& result) {
        try {
          Gio::AppInfo::launch_default_for_uri_finish(result);
        } catch (const Glib::Error& error) {
          log_.line(inQuotes(url) + " could not be opened: " + std::string(error.what()));
        }
      },
      Glib::RefPtr<Gio::Cancellable>());
}

}  // namespace lanternfold
