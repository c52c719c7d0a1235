// All addresses of a host, looked up without anybody waiting on a thread for longer than wanted:
// the C library's look-up cannot be called off, so it runs on one of a bounded number of threads
// that nobody waits for, until the library has its answer.
//
// Made by: `SocketConnection`, one for each start.
#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <asio/ip/address.hpp>

#include "PlatformLinux/Connection/LookupThreads.h"

namespace lanternfold {

class AddressLookup : public std::enable_shared_from_this<AddressLookup> {
 public:
  using Addresses = std::vector<asio::ip::address>;
  using Result = std::expected<Addresses, std::error_code>;
  using Completion = std::move_only_function<void(Result)>;
  /// Called with what is no address, on a thread that it may block.
  using Question = std::function<Result(const std::string& name)>;

  explicit AddressLookup(std::shared_ptr<LookupThreads> threads, Question question = askSystem);

  /// Once. Calls `completion` once, on any thread, perhaps inside this call or inside `cancel`, and
  /// under a lock: it must neither block nor call back. Errors: asio's host_not_found,
  /// host_not_found_try_again, no_recovery, and the system's.
  void start(const std::string& host, Completion completion);

  /// Calls the completion with operation_canceled unless it was called; that of a later start, at
  /// once. No thread calls it after the return. A look-up that waits for a thread never begins. Any
  /// thread.
  void cancel();

 private:
  /// Asks whatever the system is configured to ask.
  static Result askSystem(const std::string& name);
  void ask(std::string name);  // under the lock
  void finish(Result result);
  void tell(Result result);  // under the lock

  const std::shared_ptr<LookupThreads> threads_;
  const Question question_;

  std::mutex mutex_;  // guards the rest, also while the completion is called
  Completion completion_;
  std::optional<LookupThreads::Ticket> ticket_;
  bool isCancelled_ = false;
};

}  // namespace lanternfold
