// The claim to be the only recorder, as a lock of the kernel on a file beside the storage's.
#pragma once

#include "Wiring/SoleRecorder.h"

namespace lanternfold {

class FileSoleRecorder final : public SoleRecorder {
 public:
  [[nodiscard]] std::expected<std::unique_ptr<Claim>, std::error_code> claim(
      const std::filesystem::path& folder) override;
};

}  // namespace lanternfold
