// A reply from the network as a user reads it, and as JSON. Pure.
#pragma once

#include <string>

#include "NetBase/MessageSender.h"

namespace lanternfold {

/// Who sent it and how much in the first line, then its text; or, when it is none, its bytes by
/// rows of sixteen. Safe for a terminal.
[[nodiscard]] std::string replyText(const MessageReply& reply);

/// `{"data","text","from"}`: the bytes as base64, and as text when they are one.
[[nodiscard]] std::string replyJson(const MessageReply& reply);

}  // namespace lanternfold
