// What has come of one answer, never more than a session takes.
//
// Filled by: the exchange, as the bytes arrive. Pure.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/UrlSession.h"

namespace lanternfold {

/// Of the lines before and behind the body, interim answers included.
inline constexpr std::size_t longestUrlHeaderBytes = 32 * 1024;

class BoundedAnswer {
 public:
  /// Whether it was taken. After a refusal nothing more is.
  [[nodiscard]] bool takeHeader(std::size_t byteCount) {
    headerBytes_ += byteCount;
    isRefused_ = isRefused_ || headerBytes_ > longestUrlHeaderBytes;
    return !isRefused_;
  }
  /// As it is after decompression.
  [[nodiscard]] bool takeBody(std::string_view bytes) {
    isRefused_ = isRefused_ || bytes.size() > longestUrlAnswerBytes - body_.size();
    if (!isRefused_) body_ += bytes;
    return !isRefused_;
  }
  /// Counts the bytes of the body as they come over the wire: a compressed one may go on for ever
  /// and decompress to nothing. It may be a little longer than what it holds.
  [[nodiscard]] bool acceptsSentBody(std::size_t bytesSoFar) {
    isRefused_ = isRefused_ || bytesSoFar > longestSentBodyBytes;
    return !isRefused_;
  }

  [[nodiscard]] bool isRefused() const { return isRefused_; }
  [[nodiscard]] std::string releaseBody() { return std::exchange(body_, {}); }

  static constexpr std::size_t longestSentBodyBytes = longestUrlAnswerBytes + 1024;

 private:
  std::size_t headerBytes_ = 0;
  std::string body_;
  bool isRefused_ = false;
};

}  // namespace lanternfold
