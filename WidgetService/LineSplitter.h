// Cuts what comes over the service's socket into lines.
//
// Made by: whoever reads the socket. Pure: bytes in, lines out.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace lanternfold {

/// Keeps no more than one line that is not finished, and of one that is too long nothing.
class LineSplitter {
 public:
  struct Handlers {
    /// Without its end; an empty line is none.
    std::function<void(std::string_view)> line;
    /// Once for every line that is too long, when that is known; it is skipped to its end.
    std::function<void()> tooLong;
  };

  LineSplitter(std::size_t longestLine, Handlers handlers);

  /// The next bytes as they come. Handlers are called on the way.
  void take(std::string_view bytes);

 private:
  std::size_t longestLine_;
  Handlers handlers_;
  std::string unfinished_;
  bool isSkipping_ = false;
};

}  // namespace lanternfold
