// Claims to be the only recorder, given unless a test lets another program have them.
#pragma once

#include <set>

#include "Wiring/SoleRecorder.h"

namespace lanternfold {

class FakeSoleRecorder final : public SoleRecorder {
 public:
  void takeByAnother(const std::filesystem::path& folder) { taken_.insert(folder); }
  void failWith(std::errc error) { error_ = std::make_error_code(error); }
  [[nodiscard]] bool isTaken(const std::filesystem::path& folder) const {
    return taken_.contains(folder);
  }

  [[nodiscard]] std::expected<std::unique_ptr<Claim>, std::error_code> claim(
      const std::filesystem::path& folder) override {
    if (error_) return std::unexpected(error_);
    if (!taken_.insert(folder).second) return nullptr;
    return std::make_unique<Held>(taken_, folder);
  }

 private:
  using Taken = std::set<std::filesystem::path>;

  class Held final : public Claim {
   public:
    Held(Taken& taken, std::filesystem::path folder) : taken_(taken), folder_(std::move(folder)) {}
    ~Held() override { taken_.erase(folder_); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

   private:
    Taken& taken_;
    std::filesystem::path folder_;
  };

  Taken taken_;
  std::error_code error_;
};

}  // namespace lanternfold
