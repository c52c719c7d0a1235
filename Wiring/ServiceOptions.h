// Which public services the commands ask, and whom they trust: options that every command takes.
//
// Made by: the command line's parser. Read by: the wiring of the monitor and of the URL sessions.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

#include "NetworkMonitor/PublicInfo/ServiceUrls.h"
#include "Wiring/Console.h"

namespace CLI {
class App;
}

namespace lanternfold {

/// As they stand on the command line, not yet checked.
struct ServiceOptions {
  bool skipGeoIP = false;
  std::optional<std::string> ipv4Echo;
  std::optional<std::string> ipv6Echo;
  std::optional<std::string> geolocation;
  std::optional<std::string> sentinel;
  /// Certificates in PEM to trust instead of the system's.
  std::optional<std::filesystem::path> certificateAuthoritiesFile;
};

/// `options` outlives the parsing.
void addServiceOptions(CLI::App& command, ServiceOptions& options);

/// The services to ask, the defaults where none is named. The failure names the option that is
/// wrong and what may stand there.
[[nodiscard]] std::expected<ServiceUrls, CommandFailure> chosenServiceUrls(
    const ServiceOptions& options);

/// Reads the file, if one is given: without it no answer could be trusted, and every service would
/// look as if it were at fault.
[[nodiscard]] std::expected<void, CommandFailure> requireCertificateAuthorities(
    const std::optional<std::filesystem::path>& file);

}  // namespace lanternfold
