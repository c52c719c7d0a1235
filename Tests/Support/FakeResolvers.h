// Resolvers for the network state monitor, each holding the part of the machine that it answers
// from.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "NetworkMonitor/Monitor/Resolvers.h"

namespace lanternfold {

class FakeInterfaceResolver final : public InterfaceResolver {
 public:
  std::vector<BasicInterface> machine;     ///< the interfaces that the machine has
  std::vector<std::string> askedPrefixes;  ///< one per call of `interfacesPrefixed`

  [[nodiscard]] std::vector<BasicInterface> interfaces() override { return machine; }
  [[nodiscard]] std::vector<BasicInterface> interfacesExcluding(
      const std::vector<std::string>& names) override;
  [[nodiscard]] std::vector<BasicInterface> interfacesPrefixed(std::string_view prefix) override;
  [[nodiscard]] std::optional<BasicInterface> interfaceNamed(std::string_view name) override;
};

class FakeWlanInterfaceResolver final : public WlanInterfaceResolver {
 public:
  std::expected<std::optional<WlanInterface>, WlanInterfaceResolverError> answer = std::nullopt;

  [[nodiscard]] std::expected<std::optional<WlanInterface>, WlanInterfaceResolverError>
  wlanInterface() override {
    return answer;
  }
};

class FakeCellularProviderResolver final : public CellularProviderResolver {
 public:
  bool available = true;
  std::optional<CellularProvider> provider;

  [[nodiscard]] bool isCellularAvailable() const override { return available; }
  [[nodiscard]] std::optional<CellularProvider> cellularProvider() override { return provider; }
};

/// Keeps the handlers of the resolutions that are under way; the test answers when it likes, also
/// from a thread of its own.
class FakeInternetInfoResolver final : public InternetInfoResolver {
 public:
  struct Answer {
    InternetInfo info;
    bool complete = true;
    std::error_code error = {};
  };

  /// Given before `resolve` returns; the resolution ends when the last one is complete.
  std::vector<Answer> immediateAnswers;

  void resolve(UpdateHandler updateHandler) override;

  /// How often it was asked so far.
  [[nodiscard]] std::size_t resolutions() const { return handlers_.size(); }

  /// Answers the resolution of this number, counted from 0. A complete answer ends it and lets go
  /// of its handler.
  void answer(std::size_t resolution, const Answer& answer);

  /// Lets go of the handlers that still wait: they hold the monitor, which holds this resolver.
  void abandon();

 private:
  std::vector<UpdateHandler> handlers_;  // empty where the resolution has ended
};

}  // namespace lanternfold
