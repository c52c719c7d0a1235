// What the network state monitor asks for each part of the state.
//
// Implemented in `Interfaces/`, `Wlan/` and `PublicInfo/`; called by the monitor on its caller's
// thread.
#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "NetworkMonitor/Model/NetworkState.h"

namespace lanternfold {

/// The common mark of all resolvers.
class NetworkStateResolver {
 public:
  virtual ~NetworkStateResolver() = default;
};

/// Synchronous; any thread. What cannot be completed is left out.
class InterfaceResolver : public NetworkStateResolver {
 public:
  [[nodiscard]] virtual std::vector<BasicInterface> interfaces() = 0;
  /// Every interface whose name is not in the list (exact match).
  [[nodiscard]] virtual std::vector<BasicInterface> interfacesExcluding(
      const std::vector<std::string>& names) = 0;
  [[nodiscard]] virtual std::vector<BasicInterface> interfacesPrefixed(std::string_view prefix) = 0;
  /// The interface with exactly this name.
  [[nodiscard]] virtual std::optional<BasicInterface> interfaceNamed(std::string_view name) = 0;
};

/// A look-up that lacked the user's consent; it carries the record built so far, so that the
/// interface can still be shown.
struct WlanInterfaceResolverError {
  enum class Kind { authorizationMissing, authorizationDenied };
  Kind kind = Kind::authorizationMissing;
  WlanInterface wlan;

  friend bool operator==(const WlanInterfaceResolverError&,
                         const WlanInterfaceResolverError&) = default;
};

class WlanInterfaceResolver : public NetworkStateResolver {
 public:
  /// The machine's Wi-Fi interface, none when it has none. Synchronous.
  [[nodiscard]] virtual std::expected<std::optional<WlanInterface>, WlanInterfaceResolverError>
  wlanInterface() = 0;
};

class CellularProviderResolver : public NetworkStateResolver {
 public:
  [[nodiscard]] virtual bool isCellularAvailable() const = 0;
  /// Synchronous; none when there is no provider.
  [[nodiscard]] virtual std::optional<CellularProvider> cellularProvider() = 0;
};

class InternetInfoResolver : public NetworkStateResolver {
 public:
  /// Called one or more times, the last time with `complete` true; `error` is empty when there is
  /// none.
  using UpdateHandler =
      std::function<void(const InternetInfo& info, bool complete, std::error_code error)>;

  /// Begins a resolution; `updateHandler` may be called before this returns or later, on any
  /// thread.
  virtual void resolve(UpdateHandler updateHandler) = 0;
};

}  // namespace lanternfold
