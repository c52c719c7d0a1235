// A system configuration that a test fills: adapters with kinds and human names, and the types that
// scoped addresses resolve to.
#pragma once

#include <arpa/inet.h>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/NetworkConfiguration.h"

namespace lanternfold {

class FakeNetworkConfiguration final : public NetworkConfiguration {
 public:
  void addInterface(std::string bsdName, std::optional<ConfiguredInterfaceType> type,
                    std::optional<std::string> localizedDisplayName) {
    interfaces_.push_back({std::move(bsdName), type, std::move(localizedDisplayName)});
  }
  void removeInterfaces() { interfaces_.clear(); }

  /// What the scoped addresses of this interface resolve to; the others resolve to nothing.
  void setScopedType(std::string interfaceName, PathInterfaceType type) {
    scopedTypes_[std::move(interfaceName)] = type;
  }

  [[nodiscard]] std::vector<ConfiguredInterface> allInterfaces() const override {
    ++listCount_;
    return interfaces_;
  }

  [[nodiscard]] std::optional<PathInterfaceType> scopedInterfaceType(
      std::string_view scopedAddress) const override {
    scopedQuestions_.emplace_back(scopedAddress);
    const std::size_t separator = scopedAddress.find('%');
    if (separator == std::string_view::npos) return std::nullopt;
    const std::string address(scopedAddress.substr(0, separator));
    in_addr parsed{};
    if (inet_pton(AF_INET, address.c_str(), &parsed) != 1) return std::nullopt;
    const auto type = scopedTypes_.find(scopedAddress.substr(separator + 1));
    return type == scopedTypes_.end() ? std::nullopt : std::optional(type->second);
  }

  /// How often the whole list was asked for.
  [[nodiscard]] std::size_t listCount() const { return listCount_; }
  /// The scoped addresses asked for, in the order of the questions.
  [[nodiscard]] const std::vector<std::string>& scopedQuestions() const { return scopedQuestions_; }

 private:
  std::vector<ConfiguredInterface> interfaces_;
  std::map<std::string, PathInterfaceType, std::less<>> scopedTypes_;
  mutable std::size_t listCount_ = 0;
  mutable std::vector<std::string> scopedQuestions_;
};

}  // namespace lanternfold
