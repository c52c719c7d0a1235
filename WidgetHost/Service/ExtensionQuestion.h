// A question to the extension from the asking until its completion is called.
//
// Made by: `ExtensionClient`, one for each question.
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <utility>

#include "ViewTree/ArchiveValue.h"
#include "WidgetHost/Service/WidgetExtension.h"
#include "WidgetService/ServiceMessage.h"

namespace lanternfold {

class ExtensionQuestion {
 public:
  explicit ExtensionQuestion(ServiceCall call) : call_(std::move(call)) {}
  virtual ~ExtensionQuestion() = default;
  ExtensionQuestion(const ExtensionQuestion&) = delete;
  ExtensionQuestion& operator=(const ExtensionQuestion&) = delete;

  [[nodiscard]] const ServiceCall& call() const { return call_; }
  [[nodiscard]] bool isTimeline() const {
    const auto* const entry = std::get_if<EntryCall>(&call_);
    return entry != nullptr && entry->entry == EntryCall::Kind::timeline;
  }

  /// Keeps the answer for `complete`, or that the question is refused: then the result is none of
  /// its kind, and the return value says why.
  [[nodiscard]] virtual std::optional<std::string> answer(const ArchiveValue& result) = 0;
  /// Keeps the failure in place of what was kept before.
  virtual void fail(ExtensionFailure failure) = 0;
  /// Calls the completion with what was kept. Once.
  virtual void complete() = 0;

 private:
  ServiceCall call_;
};

template <typename Answer>
class TypedQuestion final : public ExtensionQuestion {
 public:
  using Completion = WidgetExtension::Completion<Answer>;
  using Reader = std::expected<Answer, std::string> (*)(const ArchiveValue&);

  TypedQuestion(ServiceCall call, Reader read, Completion completion)
      : ExtensionQuestion(std::move(call)), read_(read), completion_(std::move(completion)) {}

  [[nodiscard]] std::optional<std::string> answer(const ArchiveValue& result) override {
    auto answer = read_(result);
    if (!answer) {
      fail(ExtensionFailure::refused);
      return std::move(answer.error());
    }
    if constexpr (!std::is_void_v<Answer>) {
      outcome_ = *std::move(answer);
    } else {
      outcome_ = {};
    }
    return std::nullopt;
  }
  void fail(ExtensionFailure failure) override { outcome_ = std::unexpected(failure); }
  void complete() override { completion_(std::move(outcome_)); }

 private:
  Reader read_;
  Completion completion_;
  std::expected<Answer, ExtensionFailure> outcome_ = std::unexpected(ExtensionFailure::gone);
};

}  // namespace lanternfold
