#include "Wiring/LinuxMainLoop.h"

#include <csignal>
#include <optional>
#include <system_error>

#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>

namespace lanternfold {
namespace {

/// Whoever started the program may have decided that it outlives its terminal (nohup).
bool isIgnored(int signal) {
  struct sigaction action{};
  return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

/// Some ask twice, as whoever signals a process and then its group: what has begun to end goes on
/// with that.
void ignoreFurtherRequests() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) (void)std::signal(signal, SIG_IGN);
}

}  // namespace

LinuxMainLoop::LinuxMainLoop(EventLoop& eventLoop, AsioDispatch& dispatch)
    : eventLoop_(eventLoop), dispatch_(dispatch) {}

void LinuxMainLoop::runUntilInterrupted() {
  std::optional<asio::signal_set> signals;
  bool isAskedToEnd = false;  // used on the event loop's thread
  eventLoop_.runAndWait([&] {
    signals.emplace(eventLoop_.context(), SIGINT, SIGTERM);
    if (!isIgnored(SIGHUP)) signals->add(SIGHUP);
    signals->async_wait([this, &isAskedToEnd](const std::error_code& error, int) {
      if (error) return;
      isAskedToEnd = true;
      dispatch_.stopMain();
    });
  });
  dispatch_.runMain();
  eventLoop_.runAndWait([&] {
    signals.reset();
    if (isAskedToEnd) ignoreFurtherRequests();
  });
}

void LinuxMainLoop::runFor(std::chrono::milliseconds limit) {
  // A run that reaches its limit leaves its caller with what there is by then.
  (void)dispatch_.runMainUntil(std::chrono::steady_clock::now() + limit);
}

void LinuxMainLoop::stop() { dispatch_.stopMain(); }

}  // namespace lanternfold
