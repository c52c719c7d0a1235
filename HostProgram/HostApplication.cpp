#include "HostProgram/HostApplication.h"

#include <csignal>
#include <glib-unix.h>
#include <utility>

#include "HostProgram/Links/LinkStart.h"

namespace lanternfold {
namespace {

/// A program that was started to outlive its terminal goes on without it.
bool isIgnored(int signal) {
  struct sigaction action{};
  return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

gboolean quit(gpointer application) {
  g_application_quit(static_cast<GApplication*>(application));
  return G_SOURCE_CONTINUE;
}

}  // namespace

HostApplication::HostApplication(Gio::Application& application, WindowKind kind,
                                 const HostServices& services, std::function<void()> shown)
    : application_(application), kind_(kind), services_(services), shown_(std::move(shown)) {
  connections_.push_back(application_.signal_activate().connect([this] { activate(); }));
  connections_.push_back(
      application_.signal_open().connect([this](const Gio::Application::type_vec_files& files,
                                                const Glib::ustring&) { open(files); }));
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) quitOnSignal(signal);
}

HostApplication::~HostApplication() {
  for (sigc::connection& connection : connections_) connection.disconnect();
  for (const unsigned source : signalSources_) g_source_remove(source);
}

void HostApplication::quitOnSignal(int signal) {
  if (isIgnored(signal)) return;
  signalSources_.push_back(g_unix_signal_add(signal, quit, application_.gobj()));
}

void HostApplication::run(const std::optional<std::string>& link) {
  // Also while no window is open, which is so without a monitor.
  application_.hold();
  runFromLink(application_, link);
  application_.release();
}

HostDesktop& HostApplication::desktop() {
  if (!desktop_) {
    desktop_ = std::make_unique<HostDesktop>(
        kind_, services_,
        HostDesktop::Handlers{.quit = [this] { application_.quit(); }, .shown = shown_});
  }
  return *desktop_;
}

void HostApplication::activate() {
  if (desktop_) {
    desktop_->raise();
  } else {
    (void)desktop();
  }
}

void HostApplication::open(const std::vector<Glib::RefPtr<Gio::File>>& files) {
  for (const auto& file : files) desktop().openLink(file->get_uri());
}

}  // namespace lanternfold
