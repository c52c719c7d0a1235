#include "HostProgram/Links/LinkOpener.h"

#include <filesystem>
#include <gdkmm/applaunchcontext.h>
#include <gdkmm/display.h>
#include <gio/gdesktopappinfo.h>
#include <giomm/appinfo.h>
#include <glibmm/miscutils.h>
#include <glibmm/uriutils.h>
#include <optional>

#include "PlatformLinux/Bus/ErrorPointer.h"
#include "WidgetHost/Links/LinkPolicy.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

/// With every link followed; empty for what is not there.
std::filesystem::path programAt(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::canonical(path, error);
}

bool isThisProgram(const Gio::AppInfo& application) {
  const LinkHandler handler{
      .desktopFile = application.get_id(),
      .program = programAt(Glib::find_program_in_path(application.get_executable()))};
  return isThisProgram(handler, programAt("/proc/self/exe"));
}

/// The system's default unless that is this program, which is the default also by chance: without
/// a choice of the user it is any of those that are installed. Null for none.
Glib::RefPtr<Gio::AppInfo> handlerOf(const Glib::ustring& scheme) {
  if (const auto first = Gio::AppInfo::get_default_for_uri_scheme(scheme)) {
    if (!isThisProgram(*first.operator->())) return first;
  }
  for (const auto& each :
       Gio::AppInfo::get_all_for_type("x-scheme-handler/" + scheme.lowercase())) {
    if (!isThisProgram(*each.operator->())) return each;
  }
  return {};
}

/// Without streams: what it says is nothing of the host's, and would fill the file of its messages.
/// The error is a sentence without its full stop.
std::optional<std::string> startProgramFor(std::string url, Gio::AppLaunchContext& context) {
  const auto program = handlerOf(Glib::uri_parse_scheme(url));
  if (!program || !G_IS_DESKTOP_APP_INFO(program->gobj())) {
    return "no program is there for it; install one, or choose one in the desktop's settings";
  }
  constexpr auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                                  G_SPAWN_STDERR_TO_DEV_NULL);
  GList urls{.data = url.data(), .next = nullptr, .prev = nullptr};
  GError* failure = nullptr;
  constexpr int none = -1;
  (void)g_desktop_app_info_launch_uris_as_manager_with_fds(
      G_DESKTOP_APP_INFO(program->gobj()), &urls, context.gobj(), flags, nullptr, nullptr, nullptr,
      nullptr, none, none, none, &failure);
  if (failure == nullptr) return std::nullopt;
  const ErrorPointer error(failure);
  return error->message;
}

}  // namespace

void LinkOpener::open(const std::string& url) {
  const bool isHandledElsewhere = static_cast<bool>(handlerOf(std::string(deepLinkScheme)));
  follow(linkTarget(url, isHandledElsewhere), url);
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
  if (const auto fault = startProgramFor(url, *context.operator->())) {
    log_.line(inQuotes(url) + " could not be opened: " + *fault);
  }
}

}  // namespace lanternfold
