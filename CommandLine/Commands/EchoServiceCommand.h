// `lanternfold-widgets echo-service`: tells whoever asks over HTTP his own address.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "EchoService/EchoLimits.h"
#include "EchoService/IpNetwork.h"
#include "EchoService/ListenAddress.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

/// What `--listen` takes.
inline constexpr const char* listenValues =
    "an address and a port, as in 192.0.2.1:8080 or [2001:db8::1]:8080";
/// What `--connections` takes.
inline constexpr const char* connectionsValues = "a whole number from 1 to 10000";

/// As they stand on the command line, not yet checked.
struct EchoServiceOptions {
  std::vector<std::string> listen;
  std::optional<std::filesystem::path> geolocationTable;
  std::vector<std::string> trust;
  std::optional<std::string> connections;  ///< the limits' own when not given
};

struct EchoServicePlan {
  std::vector<ListenAddress> listen;
  std::optional<std::filesystem::path> geolocationTable;
  std::vector<IpNetwork> trustedPeers;
  EchoLimits limits;
};

/// The failure names the option that is wrong and what may stand there.
[[nodiscard]] std::expected<EchoServicePlan, CommandFailure> planEchoService(
    const EchoServiceOptions& options);

/// Says in one line where it listens, and serves until the program is asked to end.
[[nodiscard]] std::expected<void, CommandFailure> runEchoService(const EchoServicePlan& plan,
                                                                 const Machine& machine,
                                                                 const Console& console);

}  // namespace lanternfold
