#include "HostProgram/HostApplication.h"

#include <glibmm/main.h>
#include <utility>

#include "HostProgram/Links/LinkStart.h"

namespace lanternfold {
HostApplication::HostApplication(Gtk::Application& application, WindowKind kind,
                                 const HostServices& services, const EndRequests& requests,
                                 std::function<void()> shown)
    : application_(application), kind_(kind), services_(services), shown_(std::move(shown)) {
  connections_.push_back(application_.signal_activate().connect([this] { activate(); }));
  connections_.push_back(
      application_.signal_open().connect([this](const Gio::Application::type_vec_files& files,
                                                const Glib::ustring&) { open(files); }));
  connections_.push_back(Glib::signal_io().connect(
      [this](Glib::IOCondition) {
        application_.quit();
        return false;
      },
      requests.descriptor(), Glib::IO_IN));
}

HostApplication::~HostApplication() {
  for (sigc::connection& connection : connections_) connection.disconnect();
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
