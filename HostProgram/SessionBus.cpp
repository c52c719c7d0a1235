#include "HostProgram/SessionBus.h"

namespace lanternfold {

SessionBus::SessionBus() : connection_(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)) {
  if (connection_) g_dbus_connection_set_exit_on_close(connection_.get(), FALSE);
}

}  // namespace lanternfold
