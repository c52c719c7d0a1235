// A public-info resolver that holds the answer a test gives it, and remembers what it was asked.
#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "NetworkMonitor/PublicInfo/PublicInfoResolver.h"
#include "Support/FatalError.h"

namespace lanternfold {

/// One thread. With an answer it completes before `resolve` returns; without one the test completes
/// each request when it likes.
class FakePublicInfoResolver final : public PublicInfoResolver {
 public:
  explicit FakePublicInfoResolver(std::optional<Answer> answer = std::nullopt)
      : answer_(std::move(answer)) {}

  void setAnswer(std::optional<Answer> answer) { answer_ = std::move(answer); }

  /// Of every request so far, in order.
  [[nodiscard]] const std::vector<Keys>& askedKeys() const { return askedKeys_; }

  /// Completes the request of this number, counted from 0.
  void complete(std::size_t request, Answer answer) {
    Completion completion = std::exchange(completions_.at(request), nullptr);
    if (!completion) fatalError("a request was completed after its end");
    completion(std::move(answer));
  }
  /// The completion of a request, for a test that breaks the rule of one call.
  [[nodiscard]] Completion& completion(std::size_t request) { return completions_.at(request); }

  [[nodiscard]] Keys supportedKeys() const override {
    return Keys(publicInfoKeys.begin(), publicInfoKeys.end());
  }
  void resolve(Keys keys, Completion completion) override {
    askedKeys_.push_back(std::move(keys));
    completions_.push_back(std::move(completion));
    if (answer_) complete(completions_.size() - 1, *answer_);
  }

 private:
  std::optional<Answer> answer_;
  std::vector<Keys> askedKeys_;
  std::vector<Completion> completions_;  // empty where the request has ended
};

}  // namespace lanternfold
