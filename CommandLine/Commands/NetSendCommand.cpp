#include "CommandLine/Commands/NetSendCommand.h"

#include <charconv>
#include <chrono>
#include <cstdint>
#include <exception>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#include <asio/co_spawn.hpp>
#include <asio/detached.hpp>

#include "CommandLine/ExchangeFailure.h"
#include "CommandLine/PlainNumber.h"
#include "CommandLine/ReplyText.h"
#include "NetBase/AddressTypeGuesser.h"
#include "NetBase/NetworkMessageSender.h"
#include "NetBase/QueueExecutor.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

constexpr std::uint64_t largestPort = 65'535;
/// What a cancelled exchange takes to say so, at the very most.
constexpr std::chrono::seconds cancellationPatience{5};

std::unexpected<CommandFailure> badOption(const std::string& sentence) {
  return std::unexpected(badArguments(sentence));
}

std::expected<std::uint16_t, CommandFailure> parsePort(const std::string& text) {
  const auto port = plainWholeNumber(text);
  if (port && *port >= 1 && *port <= largestPort) return static_cast<std::uint16_t>(*port);
  return badOption(std::string("PORT takes ") + portValues + ", not " + inQuotes(text));
}

std::expected<double, CommandFailure> parseTimeout(const std::string& text) {
  const auto seconds = plainNumber(text);
  if (seconds && *seconds > 0) return *seconds;
  return badOption(std::string("--timeout takes ") + timeoutValues + ", not " + inQuotes(text));
}

/// Spaces may stand between the pairs.
std::optional<std::string> bytesOfHex(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    if (text.front() == ' ') {
      text.remove_prefix(1);
      continue;
    }
    const std::string_view pair = text.substr(0, 2);
    std::uint8_t byte = 0;
    const auto [end, error] = std::from_chars(pair.begin(), pair.end(), byte, 16);
    if (pair.size() < 2 || error != std::errc() || end != pair.end()) return std::nullopt;
    bytes += static_cast<char>(byte);
    text.remove_prefix(2);
  }
  return bytes;
}

std::expected<InputSource, CommandFailure> messageSource(const NetSendOptions& options) {
  const int given = options.text.has_value() + options.hex.has_value() + options.file.has_value();
  if (given > 1) return badOption("--text, --hex and --file exclude each other; give one of them");
  if (!options.hex) return InputSource{.argument = options.text, .file = options.file};
  const auto bytes = bytesOfHex(*options.hex);
  if (bytes) return InputSource{.argument = bytes};
  return badOption(std::string("--hex takes ") + hexValues + ", not " + inQuotes(*options.hex));
}

/// An address as it stands in a URL or before a port, "[::1]", without its brackets; everything
/// else as it is.
std::string withoutBrackets(const std::string& host) {
  if (host.size() < 2 || host.front() != '[' || host.back() != ']') return host;
  const std::string inside = host.substr(1, host.size() - 2);
  const std::string address = inside.substr(0, inside.find('%'));
  return StandardAddressTypeGuesser().type(address) == AddressType::ipv6 ? inside : host;
}

/// Runs the main loop until the exchange has ended, or the user has ended it.
MessageResult exchange(NetworkMessageSender& sender, const Machine& machine) {
  asio::execution_context context;
  const QueueExecutor caller(machine.platform.dispatch.mainQueue(), context);
  const auto outcome = std::make_shared<std::optional<MessageResult>>();
  asio::co_spawn(
      caller, sender.start(),
      [outcome, &loop = machine.mainLoop](const std::exception_ptr& fault, MessageResult result) {
        if (fault) std::rethrow_exception(fault);
        *outcome = std::move(result);
        loop.stop();
      });
  machine.mainLoop.runUntilInterrupted();
  if (!*outcome) {
    asio::co_spawn(caller, sender.cancel(), asio::detached);
    machine.mainLoop.runFor(cancellationPatience);
  }
  return outcome->value_or(std::unexpected(make_error_code(MessageSenderError::cancelled)));
}

}  // namespace

std::expected<NetSendPlan, CommandFailure> planNetSend(const NetSendOptions& options) {
  if (options.tcp == options.udp) return badOption("give --tcp or --udp, one of them");
  NetSendPlan plan{.json = options.json};
  plan.target.transport = options.tcp ? Transport::tcp : Transport::udp;
  plan.target.host = withoutBrackets(options.host);
  if (options.host.empty()) return badOption("HOST takes an address or a name, not an empty one");
  const auto port = parsePort(options.port);
  if (!port) return std::unexpected(port.error());
  plan.target.port = *port;
  if (options.timeout) {
    const auto seconds = parseTimeout(*options.timeout);
    if (!seconds) return std::unexpected(seconds.error());
    plan.timeoutSeconds = *seconds;
    plan.timeoutText = *options.timeout;
  }
  auto message = messageSource(options);
  if (!message) return std::unexpected(message.error());
  plan.message = *std::move(message);
  return plan;
}

std::expected<void, CommandFailure> runNetSend(const NetSendPlan& plan, const Machine& machine,
                                               const Console& console) {
  auto message = readInput(plan.message, machine.platform.fileSystem, console);
  if (!message) return std::unexpected(message.error());
  Dispatch& dispatch = machine.platform.dispatch;
  NetworkMessageSender sender(*std::move(message),
                              machine.platform.connections.connection(plan.target),
                              plan.timeoutSeconds,
                              dispatch.serialQueue("net.quernaple.NetBase.NetworkMessageSender",
                                                   QualityOfService::userInitiated),
                              dispatch.mainQueue());
  const MessageResult result = exchange(sender, machine);
  if (!result)
    return std::unexpected(
        workFailed(exchangeFailure(result.error(), plan.target, plan.timeoutText)));
  console.output << (plan.json ? replyJson(*result) : replyText(*result));
  return {};
}

}  // namespace lanternfold
