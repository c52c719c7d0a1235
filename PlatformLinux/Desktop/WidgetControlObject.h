// The host's verbs on the session bus.
//
// Made by: the composition of the host, before it takes its name on the bus.
#pragma once

#include <memory>

#include "Platform/Dispatch.h"
#include "Platform/WidgetControl.h"

// As GLib declares it.
using GDBusConnection = struct _GDBusConnection;

namespace lanternfold {

/// There from construction to destruction, both on the main thread, which runs GLib's default main
/// context. Whoever may be on the bus, which is its user, may call; what does not fit the interface
/// or is longer than any name is refused before a verb is performed.
class WidgetControlObject {
 public:
  /// `control` outlives the object, and performs each verb as a work of `mainQueue`. On a
  /// connection that is closed nobody ever calls.
  WidgetControlObject(GDBusConnection* connection, WidgetControl& control,
                      DispatchQueue& mainQueue);
  ~WidgetControlObject();
  WidgetControlObject(const WidgetControlObject&) = delete;
  WidgetControlObject& operator=(const WidgetControlObject&) = delete;

 private:
  class Exported;
  std::shared_ptr<Exported> exported_;
};

}  // namespace lanternfold
