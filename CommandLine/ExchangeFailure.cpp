#include "CommandLine/ExchangeFailure.h"

#include <optional>
#include <string_view>

#include <asio/error.hpp>
#include <asio/ip/address_v6.hpp>

#include "NetBase/MessageSenderError.h"
#include "Wiring/PrintableText.h"
#include "Wiring/ProgramName.h"

namespace lanternfold {
namespace {

std::string peerText(const ConnectionTarget& target) {
  return printable(target.host) + " port " + std::to_string(target.port);
}

/// Of an exchange that its own rules ended.
std::string senderFailure(MessageSenderError error, const ConnectionTarget& target,
                          const std::string& timeoutSeconds) {
  const std::string peer = peerText(target);
  switch (error) {
    case MessageSenderError::timeout:
      return peer + " did not reply within " + timeoutSeconds + " s" +
             (target.transport == Transport::tcp
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

/// What stands behind the first "%", as in fe80::1%eth0; none without one.
std::optional<std::string_view> interfaceOf(std::string_view host) {
  const std::size_t end = host.find('%');
  return end == host.npos ? std::nullopt : std::optional(host.substr(end + 1));
}

/// Whether the address before a "%" is one that means nothing without an interface.
bool isOfOneLink(std::string_view host) {
  std::error_code isNone;
  const auto address =
      asio::ip::make_address_v6(std::string(host.substr(0, host.find('%'))), isNone);
  return !isNone && (address.is_link_local() || address.is_multicast_link_local() ||
                     address.is_multicast_node_local());
}

std::string interfaceList() {
  return std::string("\"") + programName + " interfaces\" lists those that this machine has";
}

std::string unknownHost(const std::string& host) {
  const auto interface = interfaceOf(host);
  if (!interface) {
    return "cannot find the host " + inQuotes(host) +
           "; check its name, and that the machine reaches its DNS servers";
  }
  if (isOfOneLink(host)) {
    return "there is no interface " + inQuotes(std::string(*interface)) + " for " + inQuotes(host) +
           "; " + interfaceList();
  }
  return "cannot find the host " + inQuotes(host) +
         "; leave \"%\" and what is behind it out: only an address of one link, such as fe80::1, "
         "has an interface there";
}

std::string wrongSize(const ConnectionTarget& target) {
  if (target.transport == Transport::tcp) {
    return "the reply of " + peerText(target) + " is longer than 16 MiB; ask for less";
  }
  return "the message is too large for a datagram, which carries 65507 bytes at the most; send "
         "less, or over --tcp";
}

std::string systemFailure(std::error_code error, const ConnectionTarget& target) {
  const std::string peer = peerText(target);
  const std::string failed = "the exchange with " + peer + " failed: ";
  if (error == std::errc::connection_refused) {
    return peer + " refuses: nobody listens there; check the port, and that the peer runs";
  }
  // The kernel's answer to an address of which every link may have one.
  if (error == std::errc::invalid_argument) {
    return failed + "every link may have its address; say which is meant, as in fe80::1%eth0; " +
           interfaceList();
  }
  if (error == std::errc::network_unreachable && interfaceOf(target.host)) {
    return failed + "there is no way there over that interface; check that it is there and up; " +
           interfaceList();
  }
  return failed + error.message() + "; check the address, and the way there";
}

}  // namespace

std::string exchangeFailure(std::error_code error, const ConnectionTarget& target,
                            const std::string& timeoutSeconds) {
  if (error.category() == messageSenderCategory()) {
    return senderFailure(static_cast<MessageSenderError>(error.value()), target, timeoutSeconds);
  }
  if (error == asio::error::host_not_found || error == asio::error::host_not_found_try_again ||
      error == asio::error::no_recovery) {
    return unknownHost(target.host);
  }
  if (error == std::errc::message_size) return wrongSize(target);
  return systemFailure(error, target);
}

}  // namespace lanternfold
