// `lanternfold-widgets net send`: one message to a peer, and its one reply.
#pragma once

#include <expected>
#include <optional>
#include <string>

#include "CommandLine/InputText.h"
#include "Platform/Connection.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

/// What the options take.
inline constexpr const char* portValues = "a whole number from 1 to 65535";
inline constexpr const char* timeoutValues = "seconds above 0, such as 2 or 0.5";
inline constexpr const char* hexValues = "pairs of hexadecimal digits";

/// As they stand on the command line, not yet checked.
struct NetSendOptions {
  bool tcp = false;
  bool udp = false;
  std::string host;
  std::string port;
  std::optional<std::string> timeout;
  std::optional<std::string> text;
  std::optional<std::string> hex;
  std::optional<std::filesystem::path> file;
  bool json = false;
};

struct NetSendPlan {
  ConnectionTarget target;
  std::optional<double> timeoutSeconds;
  std::string timeoutText;  ///< the same, as the user wrote it
  InputSource message;
  bool json = false;
};

/// The failure names the option that is wrong and what may stand there.
[[nodiscard]] std::expected<NetSendPlan, CommandFailure> planNetSend(const NetSendOptions& options);

/// Writes who replied and what, or that as JSON. An interruption cancels the exchange; whatever
/// ends it without a reply is a failure.
[[nodiscard]] std::expected<void, CommandFailure> runNetSend(const NetSendPlan& plan,
                                                             const Machine& machine,
                                                             const Console& console);

}  // namespace lanternfold
