// How the URL sessions of a program present themselves, and whom they trust.
//
// Made by: the composition. Read by: the sessions and their exchanges.
#pragma once

#include <optional>
#include <string>

#include "PlatformLinux/Url/ProxyRules.h"

namespace lanternfold {

struct CurlUrlSettings {
  /// The product's name and version, "name/version", and nothing about the machine.
  std::string userAgent;
  /// Certificates in PEM to trust instead of the system's store.
  std::optional<std::string> certificateAuthoritiesFile = std::nullopt;
  ProxyEnvironment proxies = {};
};

}  // namespace lanternfold
