#include "Wiring/CommonOptions.h"

#include <utility>

namespace lanternfold {

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

}  // namespace lanternfold
