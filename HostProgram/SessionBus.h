// The message bus of the user's session, where there is one.
//
// Made by: `runHostProgram`, once.
#pragma once

#include <gio/gio.h>
#include <memory>

namespace lanternfold {

/// Main thread. The program outlives the bus: the widgets stay when it goes away.
class SessionBus {
 public:
  SessionBus();

  /// Null without a bus.
  [[nodiscard]] GDBusConnection* connection() const { return connection_.get(); }

 private:
  struct Release {
    void operator()(GDBusConnection* connection) const { g_object_unref(connection); }
  };
  std::unique_ptr<GDBusConnection, Release> connection_;
};

}  // namespace lanternfold
