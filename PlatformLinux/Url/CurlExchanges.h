// The requests of all sessions that are under way, on the event loop.
//
// Made by: `CurlUrlTasks`, one for the sessions of a program.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>

#include "PlatformLinux/Url/CurlExchange.h"

namespace lanternfold {

/// Everything on the loop's thread; the constructor on any.
class CurlExchanges {
 public:
  using Key = std::uint64_t;

  CurlExchanges(asio::io_context& context, CurlUrlSettings settings);
  /// Stops every exchange without a word.
  ~CurlExchanges();
  CurlExchanges(const CurlExchanges&) = delete;
  CurlExchanges& operator=(const CurlExchanges&) = delete;

  /// `key` is no other exchange's. `end` is called once, also before the return.
  void begin(Key key, UrlRequest request, CurlExchange::Limits limits, CurlExchange::End end);
  /// Stops it without calling `end`; does nothing for one that has ended.
  void abandon(Key key);

  /// More at a time wait for their turn; their time limits pass meanwhile.
  static constexpr std::size_t mostSent = 64;
  /// Threads that still look up a name for requests that have gone. With more, a resolver that does
  /// not answer would fill the process with them, and the next request waits as above.
  static constexpr std::size_t mostAbandonedLookups = 256;
  /// How long a lookup is taken to go on: glibc asks each of three servers twice for 5 seconds.
  static constexpr std::chrono::seconds longestLookup{30};

 private:
  struct Entry {
    std::shared_ptr<CurlExchange> exchange;
    bool isSent = false;
  };

  void leave(Key key);
  void sendWaiting();
  [[nodiscard]] bool maySend();

  asio::io_context& context_;
  const CurlUrlSettings settings_;
  std::shared_ptr<CurlMulti> transfers_;  ///< none before the first request
  std::map<Key, Entry> entries_;
  std::deque<Key> waiting_;  ///< of exchanges to send; some may have gone
  std::size_t sent_ = 0;
  std::deque<std::chrono::steady_clock::time_point> abandonedLookups_;  ///< the oldest first
  bool isSending_ = false;
};

}  // namespace lanternfold
