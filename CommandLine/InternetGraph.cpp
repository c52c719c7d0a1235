#include "CommandLine/InternetGraph.h"

#include <atomic>
#include <functional>
#include <utility>
#include <vector>

#include "CommandLine/ServiceFaults.h"
#include "NetBase/NetUtils.h"
#include "NetworkMonitor/PublicInfo/ActiveInterfacePublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/CachedPublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/IpApiPublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/LatestInternetInfoResolver.h"
#include "NetworkMonitor/PublicInfo/QuernapleIp6Resolver.h"
#include "NetworkMonitor/PublicInfo/QuernapleIpResolver.h"
#include "NetworkMonitor/PublicInfo/StandardInternetInfoResolver.h"

namespace lanternfold {
namespace {

using enum PublicInfoKey;

class BuiltOnDemand final : public InternetInfoResolver {
 public:
  using Build = std::function<std::shared_ptr<InternetInfoResolver>()>;

  explicit BuiltOnDemand(Build build) : build_(std::move(build)) {}

  void resolve(UpdateHandler updateHandler) override {
    if (!resolver_) resolver_ = build_();
    resolver_->resolve(std::move(updateHandler));
  }

 private:
  const Build build_;
  std::shared_ptr<InternetInfoResolver> resolver_;
};

/// Says once what was not brought to the disk: otherwise a service would be asked again and again
/// for what cannot be kept, and nobody would know why.
class TellingUserDefaults final : public UserDefaults {
 public:
  TellingUserDefaults(std::shared_ptr<UserDefaults> suite, DiagnosticLog& diagnostics)
      : suite_(std::move(suite)), diagnostics_(diagnostics) {}

  [[nodiscard]] Look object(std::string_view key) const override { return suite_->object(key); }
  void set(std::string_view key, PropertyListValue value) override {
    suite_->set(key, std::move(value));
  }
  void remove(std::string_view key) override { suite_->remove(key); }
  [[nodiscard]] std::expected<void, UserDefaultsError> synchronize() override {
    auto synchronized = suite_->synchronize();
    if (!synchronized && !isTold_.exchange(true)) diagnostics_.line(synchronized.error().sentence);
    return synchronized;
  }

 private:
  const std::shared_ptr<UserDefaults> suite_;
  DiagnosticLog& diagnostics_;
  std::atomic<bool> isTold_ = false;
};

std::shared_ptr<UserDefaults> userDefaultsOf(const Platform& platform,
                                             const std::optional<std::string>& appGroupId) {
  UserDefaultsSuites& suites = platform.userDefaults;
  auto suite = appGroupId ? suites.suite(*appGroupId) : suites.standard();
  // That a group's suite cannot be opened has been said, and the standard one may well have the
  // same fault.
  if (!suite) return suites.standard();
  return std::make_shared<TellingUserDefaults>(std::move(suite), platform.diagnostics);
}

/// Who answers for the IPv4 address, and for what is known of it.
PublicInfoResolverConfiguration addressConfiguration(const Machine& machine,
                                                     const MonitorOptions& options,
                                                     const std::shared_ptr<ServiceFaults>& faults) {
  UrlSessions& sessions = machine.platform.urlSessions;
  auto echo = notingFaults(
      std::make_shared<QuernapleIpResolver>(sessions, options.bundle, options.serviceUrls),
      "IPv4 echo", faults);
  if (options.skipGeoIP) return {.resolver = std::move(echo), .keys = {ip}};
  auto geolocation = notingFaults(
      std::make_shared<IpApiPublicInfoResolver>(sessions, options.bundle, options.serviceUrls),
      "geolocation", faults);
  return {.resolver = std::make_shared<CachedPublicInfoResolver>(
              std::move(echo), std::move(geolocation),
              userDefaultsOf(machine.platform, options.appGroupId), machine.platform.clock),
          .keys = {isp, country, ip}};
}

std::shared_ptr<InternetInfoResolver> build(const Machine& machine, const MonitorOptions& options,
                                            const InternetParts& parts) {
  const Platform& platform = machine.platform;
  DispatchQueue& mainQueue = platform.dispatch.mainQueue();
  const auto faults = std::make_shared<ServiceFaults>(platform.diagnostics);
  std::vector<PublicInfoResolverConfiguration> resolvers{
      addressConfiguration(machine, options, faults),
      {.resolver = notingFaults(std::make_shared<QuernapleIp6Resolver>(
                                    platform.urlSessions, options.bundle, options.serviceUrls),
                                "IPv6 echo", faults),
       .keys = {ip6, supportsIp6}},
      {.resolver =
           notingFaults(std::make_shared<ActiveInterfacePublicInfoResolver>(
                            parts.interfaceResolver,
                            ActiveInterfacePublicInfoResolver::Environment{
                                .pathMonitors = platform.pathMonitors, .mainQueue = mainQueue}),
                        "active interface", faults),
       .keys = {interface}}};
  auto resolver = std::make_shared<StandardInternetInfoResolver>(
      std::move(resolvers), parts.metricsReader,
      StandardInternetInfoResolver::Environment{
          .mainQueue = mainQueue,
          .naming = platform.interfaceNaming,
          .netUtils = NetUtils(SNUtils(platform.kernel, platform.resolverConfiguration,
                                       platform.interfaceNaming, platform.diagnostics))});
  return tellingFaults(std::make_shared<LatestInternetInfoResolver>(std::move(resolver)), faults);
}

}  // namespace

std::shared_ptr<InternetInfoResolver> makeInternetInfoResolver(const Machine& machine,
                                                               const MonitorOptions& options,
                                                               InternetParts parts) {
  return std::make_shared<BuiltOnDemand>(
      [&machine, options, parts = std::move(parts)] { return build(machine, options, parts); });
}

}  // namespace lanternfold
