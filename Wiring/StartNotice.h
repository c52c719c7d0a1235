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
  /// Whether a descriptor that somebody else has chosen is the writing end of a pipe: a number that
  /// is not open now would be another file's later, into which the notice would be written.
  [[nodiscard]] static bool canBeToldTo(int descriptor);

  /// `descriptor` can be told to, and is closed by this; none when nobody waits.
  explicit StartNotice(std::optional<int> descriptor);
  ~StartNotice();
  StartNotice(const StartNotice&) = delete;
  StartNotice& operator=(const StartNotice&) = delete;

  /// Whoever has waited goes on. The terminal is somebody else's again: from now on standard output
  /// is nobody's, and standard error goes to the descriptor `messages`, or to nobody. Of no effect
  /// when nobody waits, and the second time.
  void tell(std::optional<int> messages);

 private:
  std::optional<int> descriptor_;
};

}  // namespace lanternfold
