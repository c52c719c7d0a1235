// Asks the geolocation service only when its last answer is old or of another address.
//
// Made by: the composition. Read by: the internet info resolver.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "NetworkMonitor/PublicInfo/PublicInfoResolver.h"
#include "Platform/Clock.h"
#include "Platform/UserDefaults.h"

namespace lanternfold {

/// Held by `std::shared_ptr`; any thread. Keeps the last answer for three days of the wall clock,
/// as long as the public IPv4 address stays the same; it is asked for each time. A request keeps
/// its resolver until it has completed; one that a later request has overtaken asks no further and
/// completes with `UrlErrorCode::cancelled`, unless it finds the stored answer.
class CachedPublicInfoResolver final
    : public PublicInfoResolver,
      public std::enable_shared_from_this<CachedPublicInfoResolver> {
 public:
  /// A dictionary from a key's raw value to a text.
  static constexpr std::string_view storageKey = "CachedPublicInfoStorage";
  /// When that was stored.
  static constexpr std::string_view dateKey = "CachedPublicInfoDate";
  static constexpr std::chrono::seconds lifetime{259'200};

  /// `ipResolver` yields `ip`; the answers of `resolver` are kept. None may be null; `clock`
  /// outlives the resolver.
  CachedPublicInfoResolver(std::shared_ptr<PublicInfoResolver> ipResolver,
                           std::shared_ptr<PublicInfoResolver> resolver,
                           std::shared_ptr<UserDefaults> userDefaults, const Clock& clock);

  [[nodiscard]] Keys supportedKeys() const override;
  /// A stored answer is given whole; a look-up of the address that fails counts as another address.
  void resolve(Keys keys, Completion completion) override;

 private:
  void resolveAt(const Answer& address, std::uint64_t request, Keys keys, Completion completion);
  [[nodiscard]] std::optional<PublicInfo> storedAnswer(const Answer& address) const;
  [[nodiscard]] std::optional<PublicInfo> storedValues() const;
  [[nodiscard]] bool isStoredRecently() const;
  void store(const PublicInfo& answer);

  const std::shared_ptr<PublicInfoResolver> ipResolver_;
  const std::shared_ptr<PublicInfoResolver> resolver_;
  const std::shared_ptr<UserDefaults> userDefaults_;
  const Clock& clock_;
  std::atomic<std::uint64_t> lastRequest_ = 0;  // counted from 1
};

}  // namespace lanternfold
