// The host as the desktop knows it: one application on the session's bus, and what reaches it from
// outside.
//
// Made by: `runHostProgram`. Main thread, which runs the toolkit's main loop.
#pragma once

#include <functional>
#include <gtkmm/application.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "HostProgram/HostDesktop.h"
#include "PlatformLinux/Desktop/WidgetControlNames.h"
#include "PlatformLinux/System/EndRequests.h"

namespace lanternfold {

inline constexpr const char* hostApplicationId = widgetHostBusName;

class HostApplication {
 public:
  /// `application` is registered, and the first of its kind. It quits on one of `requests`. `shown`
  /// is called once, as of `HostDesktop`. Everything outlives this.
  HostApplication(Gtk::Application& application, WindowKind kind, const HostServices& services,
                  const EndRequests& requests, std::function<void()> shown);
  ~HostApplication();
  HostApplication(const HostApplication&) = delete;
  HostApplication& operator=(const HostApplication&) = delete;

  /// Until somebody quits it, or the system asks it to end. `link` is opened first.
  void run(const std::optional<std::string>& link);

 private:
  [[nodiscard]] HostDesktop& desktop();
  void activate();
  void open(const std::vector<Glib::RefPtr<Gio::File>>& files);

  Gtk::Application& application_;
  WindowKind kind_;
  HostServices services_;
  std::function<void()> shown_;
  std::unique_ptr<HostDesktop> desktop_;  ///< from the first activation on
  std::vector<sigc::connection> connections_;
};

}  // namespace lanternfold
