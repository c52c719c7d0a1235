// Answers what a widget service asks, whoever brought the question.
//
// Made by: the extension's composition for a socket, a one-shot command for itself. Pure but for
// the widgets behind it.
#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "WidgetService/AppIntent.h"
#include "WidgetService/ServiceMessage.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

using WidgetList = std::vector<WidgetDescription>;

/// An intent was performed.
struct PerformedIntent {
  friend bool operator==(const PerformedIntent&, const PerformedIntent&) = default;
};

using ServiceResult = std::variant<WidgetList, ViewEntry, Timeline<ViewEntry>, PerformedIntent>;

/// As JSON.
[[nodiscard]] std::string serviceResultJson(const ServiceResult& result);

/// Main queue.
class WidgetResponder {
 public:
  using Answer = std::expected<ServiceResult, ServiceError>;
  /// Called at most once: not at all for a timeline that never becomes complete.
  using Reply = std::function<void(Answer)>;

  using Intents = std::vector<std::shared_ptr<const AppIntent>>;

  /// `widgets` are offered in their order; their kinds differ. `intents` are those of their
  /// buttons.
  WidgetResponder(std::vector<Widget> widgets, Intents intents);

  /// An unknown kind or intent and a family that the widget lacks are errors. May reply before it
  /// returns.
  void respond(const ServiceCall& call, Reply reply) const;

 private:
  void respondTo(const ListCall& call, Reply reply) const;
  void respondTo(const EntryCall& call, Reply reply) const;
  void respondTo(const PerformIntentCall& call, Reply reply) const;

  [[nodiscard]] std::expected<const Widget*, ServiceError> widgetFor(const EntryCall& call) const;

  std::vector<Widget> widgets_;
  Intents intents_;
};

}  // namespace lanternfold
