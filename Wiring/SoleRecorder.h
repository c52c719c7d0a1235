// Keeps a second recorder of the same file out.
//
// Production side: `FileSoleRecorder`. Fake: `FakeSoleRecorder`.
#pragma once

#include <expected>
#include <filesystem>
#include <memory>
#include <system_error>

namespace lanternfold {

/// What a claim is held on, in the folder of the storage.
inline constexpr const char* soleRecorderFile = "connection-metrics-storage_default.recorder";

/// Main thread.
class SoleRecorder {
 public:
  /// The right to record; it ends with its destruction, and with the process however that ends.
  class Claim {
   public:
    virtual ~Claim() = default;
  };

  virtual ~SoleRecorder() = default;

  /// Claims the storage in `folder`; null when another program has the claim. Never waits.
  /// An error is that of opening or locking the file.
  [[nodiscard]] virtual std::expected<std::unique_ptr<Claim>, std::error_code> claim(
      const std::filesystem::path& folder) = 0;
};

}  // namespace lanternfold
