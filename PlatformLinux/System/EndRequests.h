// The signals that ask a program to end, as a descriptor that becomes readable.
//
// Linux: sigaction(2), eventfd(2). Made by: the main loops of the programs and `runHostProgram`,
// for the length of a run.
#pragma once

#include <array>
#include <csignal>

namespace lanternfold {

/// One at a time in a process. Made and released on any thread.
class EndRequests final {
 public:
  /// From here on SIGINT, SIGTERM and SIGHUP are caught; SIGHUP not where it is ignored already,
  /// since whoever started the program may have decided that it outlives its terminal (nohup). A
  /// call that waits is interrupted. `std::system_error` where the system has no descriptor left.
  EndRequests();

  /// Once one of them has come, all are ignored for good: some ask twice, as whoever signals a
  /// process and then its group, and what has begun to end goes on with that. Otherwise they do
  /// what they did before.
  ~EndRequests();
  EndRequests(const EndRequests&) = delete;
  EndRequests& operator=(const EndRequests&) = delete;

  /// Readable from the first request on, for good. It is not to be closed.
  [[nodiscard]] int descriptor() const;

 private:
  static constexpr std::array signals_{SIGINT, SIGTERM, SIGHUP};

  std::array<struct sigaction, signals_.size()> before_{};
};

}  // namespace lanternfold
