// How a program that was started in the background tells whoever waits for it that it has started.
//
// Made by: the host, from its option. Read by: `show --detach`, at the other end of the pipe.
#pragma once

#include <optional>

namespace lanternfold {

/// The option of the program that is started, before the number of its end of the pipe.
inline constexpr const char* startNoticeOption = "--started-fd";

/// A program that ends without having told has failed. Main thread.
class StartNotice {
 public:
  /// `descriptor` is the end of a pipe that this closes; none when nobody waits.
  explicit StartNotice(std::optional<int> descriptor);
  ~StartNotice();
  StartNotice(const StartNotice&) = delete;
  StartNotice& operator=(const StartNotice&) = delete;

  /// Whoever has waited goes on, and whatever is written to standard output and standard error from
  /// now on is written to nobody: the terminal is somebody else's again. Of no effect when nobody
  /// waits, and the second time.
  void tell();

 private:
  std::optional<int> descriptor_;
};

}  // namespace lanternfold
