#include "Wiring/CommonOptions.h"

#include <system_error>
#include <utility>

namespace lanternfold {
namespace {

/// In one word with its value, which may begin with a hyphen.
void add(std::vector<std::string>& arguments, const char* option,
         const std::optional<std::string>& value) {
  if (value) arguments.push_back(std::string(option) + "=" + *value);
}

void add(std::vector<std::string>& arguments, const char* option,
         const std::optional<std::filesystem::path>& value) {
  if (!value) return;
  std::error_code error;
  const auto absolute = std::filesystem::absolute(*value, error);
  add(arguments, option, std::optional((error ? *value : absolute).string()));
}

}  // namespace

void addCommonOptions(CLI::App& command, CommonOptions& options) {
  addServiceOptions(command, options.services);
  addDataOptions(command, options.data);
}

std::expected<CommonChoice, CommandFailure> checkCommonOptions(const CommonOptions& options) {
  if (auto checked = checkDataOptions(options.data); !checked) {
    return std::unexpected(checked.error());
  }
  auto urls = chosenServiceUrls(options.services);
  if (!urls) return std::unexpected(urls.error());
  const auto& authorities = options.services.certificateAuthoritiesFile;
  if (authorities && authorities->empty()) {
    return std::unexpected(badArguments("--ca-file needs a file's name, not \"\""));
  }
  return CommonChoice{.monitor = {.appGroupId = options.data.chosenAppGroupId(),
                                  .skipGeoIP = options.services.skipGeoIP,
                                  .serviceUrls = *std::move(urls)},
                      .dataFolder = options.data.dataFolder,
                      .certificateAuthoritiesFile = authorities};
}

std::vector<std::string> argumentsOf(const CommonOptions& options) {
  const auto& [data, services] = options;
  std::vector<std::string> arguments;
  if (services.skipGeoIP) arguments.emplace_back("--skip-geoip");
  add(arguments, "--ipv4-echo", services.ipv4Echo);
  add(arguments, "--ipv6-echo", services.ipv6Echo);
  add(arguments, "--geolocation", services.geolocation);
  add(arguments, "--sentinel", services.sentinel);
  add(arguments, "--ca-file", services.certificateAuthoritiesFile);
  add(arguments, "--data-dir", data.dataFolder);
  add(arguments, "--app-group", data.appGroupId);
  if (data.withoutAppGroup) arguments.emplace_back("--no-app-group");
  return arguments;
}

}  // namespace lanternfold
