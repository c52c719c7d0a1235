#include "NetworkMonitor/PublicInfo/ActiveInterfacePublicInfoResolver.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// None for the types of which the system knows no more than the interface resolver.
std::optional<InterfaceType> interfaceTypeOf(PathInterfaceType type) {
  switch (type) {
    case PathInterfaceType::wifi:
      return InterfaceType::wlan;
    case PathInterfaceType::cellular:
      return InterfaceType::cellular;
    case PathInterfaceType::wiredEthernet:
      return InterfaceType::ethernet;
    case PathInterfaceType::loopback:
    case PathInterfaceType::other:
      break;
  }
  return std::nullopt;
}

}  // namespace

/// On the main queue. Held by the work that ends its wait.
class ActiveInterfacePublicInfoResolver::Request {
 public:
  Request(std::unique_ptr<PathMonitor> monitor, Completion completion)
      : monitor_(std::move(monitor)), completion_(std::move(completion)) {}

  [[nodiscard]] PathMonitor& monitor() { return *monitor_; }
  [[nodiscard]] bool isFinished() const { return monitor_ == nullptr; }

  /// No update comes from now on; to be called before the answer to one is looked up.
  void stopListening() { monitor_->cancel(); }

  void finish(Answer answer) {
    // Both are taken out first: the completion may do anything.
    const auto monitor = std::exchange(monitor_, nullptr);
    auto completion = std::exchange(completion_, nullptr);
    monitor->cancel();
    completion(std::move(answer));
  }

 private:
  std::unique_ptr<PathMonitor> monitor_;  // null when the request is finished
  Completion completion_;
};

ActiveInterfacePublicInfoResolver::ActiveInterfacePublicInfoResolver(
    std::shared_ptr<InterfaceResolver> interfaceResolver, const Environment& environment)
    : interfaceResolver_(std::move(interfaceResolver)), environment_(environment) {
  if (!interfaceResolver_) {
    fatalError("an active-interface resolver was made without an interface resolver");
  }
}

void ActiveInterfacePublicInfoResolver::resolve(Keys keys, Completion completion) {
  if (std::ranges::find(keys, PublicInfoKey::interface) == keys.end()) {
    completion(PublicInfo{});
  } else if (environment_.mainQueue.isCurrent()) {
    begin(std::move(completion));
  } else {
    environment_.mainQueue.async(
        [self = shared_from_this(), completion = std::move(completion)]() mutable {
          self->begin(std::move(completion));
        });
  }
}

void ActiveInterfacePublicInfoResolver::begin(Completion completion) {
  const auto request = std::make_shared<Request>(
      environment_.pathMonitors.makePathMonitor(std::nullopt), std::move(completion));
  request->monitor().setPathUpdateHandler(
      [weak = weak_from_this(), weakRequest = std::weak_ptr(request)](const NetworkPath& path) {
        const auto resolver = weak.lock();
        const auto asked = weakRequest.lock();
        if (!resolver || !asked || asked->isFinished()) return;
        asked->stopListening();
        asked->finish(resolver->activeInterface(path));
      });
  request->monitor().start(environment_.mainQueue);
  environment_.mainQueue.after(longestWait, [request] {
    if (!request->isFinished()) {
      request->finish(std::unexpected(make_error_code(PublicInfoResolverError::timeout)));
    }
  });
}

PublicInfo ActiveInterfacePublicInfoResolver::activeInterface(const NetworkPath& path) const {
  // Without a way out no interface carries the traffic, though some may be up.
  if (path.status != PathStatus::satisfied || path.availableInterfaces.empty()) return {};
  const PathInterface& first = path.availableInterfaces.front();
  auto found = interfaceResolver_->interfaceNamed(first.name);
  if (!found) return {};
  if (const auto type = interfaceTypeOf(first.type)) found->type = *type;
  return {{PublicInfoKey::interface, *std::move(found)}};
}

}  // namespace lanternfold
