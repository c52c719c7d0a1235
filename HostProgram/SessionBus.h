// The message bus of the user's session, where there is one.
//
// Made by: `runHostProgram`, once.
#pragma once

#include <chrono>
#include <gio/gio.h>
#include <memory>
#include <string>

namespace lanternfold {

/// Main thread. The program outlives the bus: the widgets stay when it goes away.
class SessionBus {
 public:
  /// Before any thread of ours that reads the environment. A bus that takes a connection and says
  /// nothing on it is given up after `limit`, and is none from then on for every library of this
  /// process: each would wait for it anew.
  explicit SessionBus(std::chrono::milliseconds limit = std::chrono::seconds(3));

  /// Whether it was given up.
  [[nodiscard]] bool isSilent() const { return isSilent_; }

  /// Null without a bus.
  [[nodiscard]] GDBusConnection* connection() const { return connection_.get(); }

  /// Whether somebody has this name on it; nobody without a bus, or when it does not say so within
  /// three seconds, after which it is not asked again.
  [[nodiscard]] bool hasOwner(const std::string& name);

 private:
  struct Release {
    void operator()(GDBusConnection* connection) const { g_object_unref(connection); }
  };
  std::unique_ptr<GDBusConnection, Release> connection_;
  bool isSilent_ = false;
  bool hasFallenSilent_ = false;  ///< after the connection
};

}  // namespace lanternfold
