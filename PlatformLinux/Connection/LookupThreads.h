// Threads for what blocks for as long as somebody else likes and cannot be called off, as the C
// library's look-up of a host.
//
// Made by: `SocketConnectionFactory`, one for all its connections. Used by: `AddressLookup`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>

namespace lanternfold {

/// So many at a time; what comes meanwhile waits its turn, in order. A thread ends when nothing
/// waits, and nobody waits for a thread. Any thread.
class LookupThreads : public std::enable_shared_from_this<LookupThreads> {
 public:
  using Work = std::move_only_function<void()>;
  using Ticket = std::uint64_t;
  /// Runs a work on a thread of its own, not inside the call; throws std::system_error when there
  /// is no thread to be had.
  using StartThread = std::function<void(Work)>;

  /// A name server that does not answer holds a thread for half a minute.
  static constexpr std::size_t usualMost = 32;

  explicit LookupThreads(std::size_t most = usualMost, StartThread startThread = startDetached);

  /// Runs `work` once, not inside this call. The system's error when there is no thread to be had,
  /// and none that could take it later.
  [[nodiscard]] std::expected<Ticket, std::error_code> run(Work work);

  /// Lets go of a work that waits; of no effect once it has begun.
  void withdraw(Ticket ticket);

 private:
  static void startDetached(Work work);
  void runWaiting();
  /// None for a thread that is to end.
  [[nodiscard]] std::optional<Work> next();

  const std::size_t most_;
  const StartThread startThread_;

  std::mutex mutex_;  // guards the rest
  std::map<Ticket, Work> waiting_;
  std::size_t running_ = 0;  // threads
  Ticket nextTicket_ = 0;
};

}  // namespace lanternfold
