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
#include <asio/error.hpp>

#include "CommandLine/PlainNumber.h"
#include "CommandLine/ReplyText.h"
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
  if (bytes) return InputSource{.argument = *bytes};
  return badOption(std::string("--hex takes ") + hexValues + ", not " + inQuotes(*options.hex));
}

std::string peerText(const ConnectionTarget& target) {
  return printable(target.host) + " port " + std::to_string(target.port);
}

/// Of an exchange that its own rules ended.
std::string senderFailure(MessageSenderError error, const NetSendPlan& plan) {
  const std::string peer = peerText(plan.target);
  switch (error) {
    case MessageSenderError::timeout:
      return peer + " did not reply within " + plan.timeoutText + " s" +
             (plan.target.transport == Transport::tcp
                  ? ", or did not end its reply; check that it runs and closes, or allow more time"
                  : "; check that it runs, or allow more time");
    case MessageSenderError::noData:
      return peer + " replied without data; check that it takes such messages";
    case MessageSenderError::cancelled:
      return "the exchange with " + peer + " was cancelled; nothing is known of a reply";
    case MessageSenderError::genericFailure:
      break;
  }
  return "the exchange with " + peer + " failed; try it again";
}

std::string failureSentence(std::error_code error, const NetSendPlan& plan) {
  if (error.category() == messageSenderCategory()) {
    return senderFailure(static_cast<MessageSenderError>(error.value()), plan);
  }
  const std::string peer = peerText(plan.target);
  if (error == std::errc::connection_refused) {
    return peer + " refuses: nobody listens there; check the port, and that the peer runs";
  }
  if (error == std::errc::message_size) {
    if (plan.target.transport == Transport::tcp) {
      return "the reply of " + peer + " is longer than 16 MiB; ask for less";
    }
    return "the message is too large for a datagram, which carries 65507 bytes at the most; send "
           "less, or over --tcp";
  }
  if (error == asio::error::host_not_found || error == asio::error::host_not_found_try_again ||
      error == asio::error::no_recovery) {
    return "cannot find the host " + inQuotes(plan.target.host) +
           "; check its name, and that the machine reaches its DNS servers";
  }
  return "the exchange with " + peer + " failed: " + error.message() +
         "; check the address, and the way there";
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
  plan.target.host = options.host;
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
  if (!result) return std::unexpected(workFailed(failureSentence(result.error(), plan)));
  console.output << (plan.json ? replyJson(*result) : replyText(*result));
  return {};
}

}  // namespace lanternfold
