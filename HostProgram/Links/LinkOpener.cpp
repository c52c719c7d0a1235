#include "HostProgram/Links/LinkOpener.h"

#include <gdkmm/applaunchcontext.h>
#include <gdkmm/display.h>
#include <giomm/appinfo.h>
#include <giomm/init.h>

#include "HostProgram/Links/LinkTarget.h"
#include "WidgetHost/Links/LinkPolicy.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

/// The desktop file of whom the system has for the product's own links; empty for nobody.
std::string deepLinkHandler() {
  const auto handler = Gio::AppInfo::get_default_for_uri_scheme(std::string(deepLinkScheme));
  return handler ? std::string(handler->get_id()) : std::string();
}

}  // namespace

void LinkOpener::open(const std::string& url) {
  switch (linkTarget(url, deepLinkHandler())) {
    case LinkTarget::nothing:
      log_.line(
          "a link of a widget was not opened, which is neither a page over https nor one of "
          "this product's: " +
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
  // It is this program's own (see ToolkitSetup).
  context->unsetenv("GDK_GL");
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
