// A desktop whose user changes their mind about light and dark.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "Platform/DesktopAppearance.h"
#include "Platform/Dispatch.h"

namespace lanternfold {

class FakeDesktopAppearance final : public DesktopAppearance {
 public:
  explicit FakeDesktopAppearance(DispatchQueue& mainQueue) : mainQueue_(mainQueue) {}

  void start(std::function<void(PreferredColourScheme)> changed) override {
    *changed_ = std::move(changed);
    isStarted_ = true;
    tell();
  }

  void prefer(PreferredColourScheme scheme) {
    if (std::exchange(scheme_, scheme) != scheme && isStarted_) tell();
  }

 private:
  void tell() {
    mainQueue_.async([weak = std::weak_ptr(changed_), scheme = scheme_] {
      const auto changed = weak.lock();
      if (changed && *changed) (*changed)(scheme);
    });
  }

  DispatchQueue& mainQueue_;
  /// Held weakly by what waits on the queue, so that nothing is told after the destruction.
  const std::shared_ptr<std::function<void(PreferredColourScheme)>> changed_ =
      std::make_shared<std::function<void(PreferredColourScheme)>>();
  bool isStarted_ = false;
  PreferredColourScheme scheme_ = PreferredColourScheme::noPreference;
};

}  // namespace lanternfold
