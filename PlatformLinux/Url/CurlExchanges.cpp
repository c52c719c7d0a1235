#include "PlatformLinux/Url/CurlExchanges.h"

#include <utility>

namespace lanternfold {

CurlExchanges::CurlExchanges(asio::io_context& context, CurlUrlSettings settings)
    : context_(context), settings_(std::move(settings)) {}

CurlExchanges::~CurlExchanges() = default;

void CurlExchanges::begin(Key key, UrlRequest request, CurlExchange::Limits limits,
                          CurlExchange::End end) {
  // Most programs never ask anybody, and libcurl's start costs milliseconds.
  if (!transfers_) transfers_ = std::make_shared<CurlMulti>(context_);
  const auto exchange = std::make_shared<CurlExchange>(
      CurlExchange::Surroundings{context_, *transfers_, settings_}, std::move(request), limits,
      [this, key, whoAsked = std::move(end)](UrlAnswer answer) mutable {
        leave(key);
        whoAsked(std::move(answer));
      });
  entries_.emplace(key, Entry{.exchange = exchange});
  waiting_.push_back(key);
  exchange->startClocks();
  sendWaiting();
}

void CurlExchanges::abandon(Key key) { leave(key); }

void CurlExchanges::leave(Key key) {
  const auto entry = entries_.find(key);
  if (entry == entries_.end()) return;
  if (entry->second.isSent) --sent_;
  if (entry->second.exchange->looksNameUp()) {
    abandonedLookups_.push_back(std::chrono::steady_clock::now());
  }
  entries_.erase(entry);
  sendWaiting();
}

/// What fails as soon as it is sent leaves within this loop, not within itself.
void CurlExchanges::sendWaiting() {
  if (std::exchange(isSending_, true)) return;
  while (!waiting_.empty() && maySend()) {
    const auto entry = entries_.find(waiting_.front());
    waiting_.pop_front();
    if (entry == entries_.end()) continue;
    entry->second.isSent = true;
    ++sent_;
    const auto exchange = entry->second.exchange;
    exchange->send();
  }
  isSending_ = false;
}

bool CurlExchanges::maySend() {
  const auto now = std::chrono::steady_clock::now();
  while (!abandonedLookups_.empty() && now - abandonedLookups_.front() > longestLookup) {
    abandonedLookups_.pop_front();
  }
  return sent_ < mostSent && abandonedLookups_.size() < mostAbandonedLookups;
}

}  // namespace lanternfold
