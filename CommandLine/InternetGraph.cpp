#include "CommandLine/InternetGraph.h"

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

std::shared_ptr<UserDefaults> userDefaultsOf(const Machine& machine,
                                             const std::optional<std::string>& appGroupId) {
  UserDefaultsSuites& suites = machine.platform.userDefaults;
  auto suite = appGroupId ? suites.suite(*appGroupId) : nullptr;
  return suite ? suite : suites.standard();
}

/// Who answers for the IPv4 address, and for what is known of it.
PublicInfoResolverConfiguration addressConfiguration(const Machine& machine,
                                                     const MonitorOptions& options,
                                                     const std::shared_ptr<ServiceFaults>& faults) {
  UrlSessions& sessions = machine.platform.urlSessions;
  auto echo = notingFaults(
      std::make_shared<QuernapleIpResolver>(sessions, options.bundle, options.serviceUrls),
      "IPv4 echo", faults);
  if (options.skipGeoip) return {.resolver = std::move(echo), .keys = {ip}};
  auto geolocation = notingFaults(
      std::make_shared<IpApiPublicInfoResolver>(sessions, options.bundle, options.serviceUrls),
      "geolocation", faults);
  return {.resolver = std::make_shared<CachedPublicInfoResolver>(
              std::move(echo), std::move(geolocation), userDefaultsOf(machine, options.appGroupId),
              machine.platform.clock),
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
      {.resolver = std::make_shared<ActiveInterfacePublicInfoResolver>(
           parts.interfaceResolver,
           ActiveInterfacePublicInfoResolver::Environment{.pathMonitors = platform.pathMonitors,
                                                          .mainQueue = mainQueue}),
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
