#include "NetBase/MessageSenderError.h"

#include <string>

namespace lanternfold {
namespace {

class MessageSenderCategory final : public std::error_category {
 public:
  [[nodiscard]] const char* name() const noexcept override { return "message-sender"; }

  [[nodiscard]] std::string message(int value) const override {
    switch (static_cast<MessageSenderError>(value)) {
      case MessageSenderError::noData:
        return "the reply has no data";
      case MessageSenderError::timeout:
        return "the time limit has passed";
      case MessageSenderError::cancelled:
        return "the exchange was cancelled";
      case MessageSenderError::genericFailure:
        break;
    }
    return "the exchange failed";
  }
};

}  // namespace

const std::error_category& messageSenderCategory() {
  static const MessageSenderCategory category;
  return category;
}

std::error_code make_error_code(MessageSenderError error) {
  return {static_cast<int>(error), messageSenderCategory()};
}

}  // namespace lanternfold
