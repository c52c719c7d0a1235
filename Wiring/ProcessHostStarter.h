// The host as a program in the same folder as this one.
#pragma once

#include <chrono>
#include <filesystem>

#include "Wiring/HostStarter.h"

namespace lanternfold {

class ProcessHostStarter final : public HostStarter {
 public:
  /// `folder` holds the host's program; one that has said nothing within `limit` is ended.
  explicit ProcessHostStarter(const std::filesystem::path& folder,
                              std::chrono::milliseconds limit = std::chrono::seconds(60));

  [[nodiscard]] CommandFailure become(const std::vector<std::string>& arguments) override;
  [[nodiscard]] std::expected<void, CommandFailure> startDetached(
      const std::vector<std::string>& arguments) override;

 private:
  [[nodiscard]] CommandFailure cannotStart(int error) const;

  const std::filesystem::path program_;
  const std::chrono::milliseconds limit_;
};

}  // namespace lanternfold
