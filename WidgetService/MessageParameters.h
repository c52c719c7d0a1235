// Takes a request's parameters out of a host's message, each of its kind.
//
// Made by: `parseHostMessage`, one for a message.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "WidgetService/MessageDocument.h"
#include "WidgetService/ServiceMessage.h"

namespace lanternfold {

/// Parameters are named by their path in the message: "params.kind". An optional one that is null
/// is one that is not there. What is wrong comes back as a parameter's default, and the first of
/// such faults is kept: look at it when all have been taken.
class MessageParameters {
 public:
  /// `message` outlives this.
  explicit MessageParameters(const MessageDocument& message) : message_(message) {}

  /// Whether there is an object of that path; nothing else may stand there.
  bool hasObject(std::string_view path);

  std::string text(std::string_view path, std::size_t longest);
  std::optional<std::string> optionalText(std::string_view path, std::size_t longest);
  std::optional<bool> optionalFlag(std::string_view path);
  std::int64_t number(std::string_view path, std::int64_t smallest, std::int64_t largest);
  RequestIdentifier identifier(std::string_view path);
  WidgetFamily family(std::string_view path);

  /// A clause that names the parameter; empty when all were right.
  [[nodiscard]] const std::string& fault() const { return fault_; }

 private:
  const MessageValue* find(std::string_view path);
  void fail(std::string_view path, std::string_view clause);

  const MessageDocument& message_;
  std::string fault_;
};

}  // namespace lanternfold
