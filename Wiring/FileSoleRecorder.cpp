#include "Wiring/FileSoleRecorder.h"

#include <utility>

#include "PlatformLinux/System/FileClaim.h"

namespace lanternfold {
namespace {

class ClaimedFile final : public SoleRecorder::Claim {
 public:
  explicit ClaimedFile(FileClaim claim) : claim_(std::move(claim)) {}

 private:
  FileClaim claim_;
};

}  // namespace

std::expected<std::unique_ptr<SoleRecorder::Claim>, std::error_code> FileSoleRecorder::claim(
    const std::filesystem::path& folder) {
  auto claim = FileClaim::claim(folder / soleRecorderFile);
  if (!claim) return std::unexpected(claim.error());
  if (!*claim) return nullptr;
  return std::make_unique<ClaimedFile>(**std::move(claim));
}

}  // namespace lanternfold
