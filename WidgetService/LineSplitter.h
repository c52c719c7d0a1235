// Cuts what comes over the service's socket into lines.
//
// Made by: whoever reads the socket. Pure: bytes in, lines out.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace lanternfold {

/// Lines end with "\n"; a "\r" before it is no part of the line. Takes time in proportion to the
/// bytes, however they are cut. Keeps no more than one line that is not finished, and of one that
/// is too long nothing. A last line without an end is never handed on. Belongs to one thread.
class LineSplitter {
 public:
  /// Called within `take`. A handler may neither call `take` nor end the splitter's life.
  struct Handlers {
    /// Without its end, any bytes, at most the longest line; valid during the call. Lines of spaces
    /// and tabs alone are none.
    std::function<void(std::string_view)> line;
    /// Once for every line that is too long, as soon as that is known; it is skipped to its end.
    std::function<void()> tooLong;
  };

  /// `longestLine` is the number of bytes before "\n" that a line may have, a "\r" among them.
  LineSplitter(std::size_t longestLine, Handlers handlers);

  /// The next bytes as they come. Handlers are called on the way.
  void take(std::string_view bytes);

 private:
  void finishLine(std::string_view rest);
  void keepUnfinished(std::string_view rest);
  void deliver(std::string_view line) const;

  std::size_t longestLine_;
  Handlers handlers_;
  std::string unfinished_;
  bool isSkipping_ = false;
  bool isTaking_ = false;
};

}  // namespace lanternfold
