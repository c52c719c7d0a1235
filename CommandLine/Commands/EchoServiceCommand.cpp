#include "CommandLine/Commands/EchoServiceCommand.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <system_error>
#include <utility>

#include "CommandLine/PlainNumber.h"
#include "EchoService/EchoServer.h"
#include "EchoService/GeolocationTableJson.h"
#include "PlatformLinux/System/EventLoop.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

constexpr std::uint64_t mostConnections = 10'000;

std::unexpected<CommandFailure> badOption(const std::string& sentence) {
  return std::unexpected(badArguments(sentence));
}

std::expected<std::vector<ListenAddress>, CommandFailure> parseListenAddresses(
    std::span<const std::string> texts) {
  std::vector<ListenAddress> addresses;
  for (const std::string& text : texts) {
    const auto address = parseListenAddress(text);
    if (!address) {
      return badOption(std::string("--listen takes ") + listenValues + ", not " + inQuotes(text));
    }
    if (address->port != 0 && std::ranges::find(addresses, *address) != addresses.end()) {
      return badOption("--listen names " + inQuotes(text) + " twice; name it once");
    }
    addresses.push_back(*address);
  }
  return addresses;
}

std::expected<std::vector<IpNetwork>, CommandFailure> parseTrustedPeers(
    std::span<const std::string> texts) {
  std::vector<IpNetwork> networks;
  for (const std::string& text : texts) {
    const auto network = parseIpNetwork(text);
    if (!network) return badOption("--trust " + inQuotes(text) + " " + network.error());
    networks.push_back(*network);
  }
  return networks;
}

std::expected<GeolocationTable, CommandFailure> readTable(const EchoServicePlan& plan,
                                                          const Machine& machine) {
  if (!plan.geolocationTable) return GeolocationTable();
  const std::string file = plan.geolocationTable->string();
  const auto contents =
      machine.platform.fileSystem.readFile(*plan.geolocationTable, longestGeolocationTableBytes);
  if (!contents) {
    return std::unexpected(workFailed("cannot read the geolocation table " + file + ": " +
                                      contents.error().message() +
                                      "; check its name, its size and its permissions"));
  }
  auto table = parseGeolocationTable(contents->bytes);
  if (!table) {
    return std::unexpected(
        workFailed("cannot use the geolocation table " + file + ": " + table.error()));
  }
  return *std::move(table);
}

std::string listenFailure(const EchoListenError& failure) {
  const std::string where = "cannot listen on " + listenAddressText(failure.where) + ": ";
  if (failure.error == std::errc::address_in_use) {
    return where + "another program does already; choose another port, or end that program";
  }
  if (failure.error == std::errc::permission_denied) {
    return where +
           "there is no permission for this port; choose one from 1024 on, or give the program "
           "the capability CAP_NET_BIND_SERVICE";
  }
  if (failure.error == std::errc::address_not_available) {
    return where +
           "this machine does not have that address; \"ip address\" lists those that it has";
  }
  if (failure.error == std::errc::address_family_not_supported) {
    return where + "this machine has no such addresses; listen on those of the other family";
  }
  return where + failure.error.message();
}

std::string listeningLine(std::span<const ListenAddress> addresses) {
  std::string line = "Listening on ";
  for (std::size_t index = 0; index < addresses.size(); ++index) {
    if (index > 0) line += index + 1 == addresses.size() ? " and " : ", ";
    line += listenAddressText(addresses[index]);
  }
  return line + " until interrupted.\n";
}

/// A server on a loop of its own, which ends with it.
class RunningEchoService {
 public:
  RunningEchoService(const EchoServicePlan& plan, GeolocationTable table, const Clock& clock) {
    loop_.runAndWait([&] {
      server_ = std::make_unique<EchoServer>(
          loop_.context(),
          EchoConnectionSettings{.responder = {std::move(table), plan.trustedPeers},
                                 .limits = plan.limits,
                                 .clock = clock});
    });
  }
  ~RunningEchoService() {
    loop_.runAndWait([this] { server_.reset(); });
  }
  RunningEchoService(const RunningEchoService&) = delete;
  RunningEchoService& operator=(const RunningEchoService&) = delete;

  std::expected<std::vector<ListenAddress>, EchoListenError> listen(
      std::span<const ListenAddress> addresses) {
    std::expected<std::vector<ListenAddress>, EchoListenError> listening;
    loop_.runAndWait([&] { listening = server_->listen(addresses); });
    return listening;
  }

 private:
  EventLoop loop_{"echo-service"};
  std::unique_ptr<EchoServer> server_;
};

}  // namespace

std::expected<EchoServicePlan, CommandFailure> planEchoService(const EchoServiceOptions& options) {
  EchoServicePlan plan{.geolocationTable = options.geolocationTable};
  auto listen = parseListenAddresses(options.listen);
  if (!listen) return std::unexpected(listen.error());
  plan.listen = *std::move(listen);
  auto trustedPeers = parseTrustedPeers(options.trust);
  if (!trustedPeers) return std::unexpected(trustedPeers.error());
  plan.trustedPeers = *std::move(trustedPeers);
  if (options.connections) {
    const auto connections = plainWholeNumber(*options.connections);
    if (!connections || *connections < 1 || *connections > mostConnections) {
      return badOption(std::string("--connections takes ") + connectionsValues + ", not " +
                       inQuotes(*options.connections));
    }
    plan.limits.connections = *connections;
  }
  return plan;
}

std::expected<void, CommandFailure> runEchoService(const EchoServicePlan& plan,
                                                   const Machine& machine, const Console& console) {
  auto table = readTable(plan, machine);
  if (!table) return std::unexpected(table.error());
  RunningEchoService service(plan, *std::move(table), machine.platform.clock);
  const auto listening = service.listen(plan.listen);
  if (!listening) return std::unexpected(workFailed(listenFailure(listening.error())));
  // From within the loop: whoever interrupts the program after this line ends it properly.
  machine.platform.dispatch.mainQueue().async([&] {
    console.output << listeningLine(*listening) << std::flush;
    if (!console.output) machine.mainLoop.stop();
  });
  machine.mainLoop.runUntilInterrupted();
  return {};
}

}  // namespace lanternfold
