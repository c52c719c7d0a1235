#include "CommandLine/Commands/NetCommand.h"

#include <string>
#include <utility>

#include <nlohmann/json.hpp>

#include "NetBase/AddressTypeGuesser.h"
#include "NetBase/HostnameResolver.h"
#include "NetBase/HostnameValidator.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

using Json = nlohmann::ordered_json;

std::expected<std::string, CommandFailure> textOf(const NetTextOptions& options,
                                                  const Machine& machine, const Console& console) {
  return readInputLine(options.text, machine.platform.fileSystem, console);
}

void write(const Console& console, bool json, const Json& object, std::string_view text) {
  if (json) {
    console.output << object.dump() << '\n';
  } else if (!text.empty()) {
    console.output << text << '\n';
  }
}

std::string resolutionFailure(const std::string& host, std::optional<IPVersion> version) {
  std::string kind = "an address";
  if (version) kind = *version == IPVersion::ipv4 ? "an IPv4 address" : "an IPv6 address";
  return "cannot find " + kind + " of " + inQuotes(host) +
         "; check the name, and that the machine reaches its DNS servers";
}

}  // namespace

std::expected<void, CommandFailure> runNetGuess(const NetTextOptions& options,
                                                const Machine& machine, const Console& console) {
  const auto text = textOf(options, machine, console);
  if (!text) return std::unexpected(text.error());
  const std::optional<AddressType> type = StandardAddressTypeGuesser().type(*text);
  if (!type) {
    write(console, options.json, nullptr, {});
    return std::unexpected(
        workFailed(inQuotes(*text) +
                   " is no address, and no name of a host, which has no space and none of "
                   "/ : & % ?; give the address or the name alone"));
  }
  write(console, options.json, Json{{"type", rawValue(*type)}}, rawValue(*type));
  return {};
}

std::expected<void, CommandFailure> runNetValidate(const NetTextOptions& options,
                                                   const Machine& machine, const Console& console) {
  const auto text = textOf(options, machine, console);
  if (!text) return std::unexpected(text.error());
  const bool isValid = HostnameValidator().validate(*text);
  write(console, options.json, Json{{"valid", isValid}}, isValid ? "valid" : "");
  if (isValid) return {};
  return std::unexpected(
      workFailed(inQuotes(*text) +
                 " cannot be the name of a host; use ASCII letters, digits and hyphens between "
                 "full stops, with no hyphen behind a full stop or at the beginning"));
}

std::expected<void, CommandFailure> runNetResolve(const NetTextOptions& options,
                                                  std::optional<IPVersion> version,
                                                  const Machine& machine, const Console& console) {
  const auto host = textOf(options, machine, console);
  if (!host) return std::unexpected(host.error());
  const auto resolved = BsdHostnameResolver(machine.platform.hostLookup).resolve(*host, version);
  if (!resolved) return std::unexpected(workFailed(resolutionFailure(*host, version)));
  write(console, options.json, Json{{"ip", resolved->ip}, {"v", std::to_underlying(resolved->v)}},
        resolved->ip);
  return {};
}

}  // namespace lanternfold
