// All addresses of a host, looked up without anybody waiting on a thread for longer than wanted:
// the C library's look-up cannot be called off, so it runs on a thread that nobody waits for,
// one for each host that is looked up by name at a time, and until the library has its answer.
//
// Made by: `SocketConnection`, one for each start.
#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <vector>

#include <asio/ip/address.hpp>

namespace lanternfold {

class AddressLookup : public std::enable_shared_from_this<AddressLookup> {
 public:
  using Addresses = std::vector<asio::ip::address>;
  using Result = std::expected<Addresses, std::error_code>;
  using Completion = std::move_only_function<void(Result)>;

  /// Once. Calls `completion` once, on any thread, perhaps inside this call or inside `cancel`, and
  /// under a lock: it must neither block nor call back. Errors: asio's host_not_found,
  /// host_not_found_try_again, no_recovery, and the system's.
  void start(const std::string& host, Completion completion);

  /// Calls the completion with operation_canceled unless it was called; that of a later start, at
  /// once. No thread calls it after the return. Any thread.
  void cancel();

 private:
  void finish(Result result);
  void tell(Result result);  // under the lock

  std::mutex mutex_;  // guards the rest, also while the completion is called
  Completion completion_;
  bool isCancelled_ = false;
};

}  // namespace lanternfold
