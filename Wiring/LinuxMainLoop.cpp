#include "Wiring/LinuxMainLoop.h"

#include <optional>
#include <system_error>

#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>

#include "PlatformLinux/System/EndRequests.h"

namespace lanternfold {
LinuxMainLoop::LinuxMainLoop(EventLoop& eventLoop, AsioDispatch& dispatch)
    : eventLoop_(eventLoop), dispatch_(dispatch) {}

void LinuxMainLoop::runUntilInterrupted() {
  const EndRequests requests;
  std::optional<asio::posix::stream_descriptor> readable;
  eventLoop_.runAndWait([&] {
    readable.emplace(eventLoop_.context(), requests.descriptor());
    readable->async_wait(asio::posix::stream_descriptor::wait_read,
                         [this](const std::error_code& error) {
                           if (!error) dispatch_.stopMain();
                         });
  });
  dispatch_.runMain();
  eventLoop_.runAndWait([&] {
    (void)readable->release();
    readable.reset();
  });
}

void LinuxMainLoop::runFor(std::chrono::milliseconds limit) {
  // A run that reaches its limit leaves its caller with what there is by then.
  (void)dispatch_.runMainUntil(std::chrono::steady_clock::now() + limit);
}

void LinuxMainLoop::stop() { dispatch_.stopMain(); }

}  // namespace lanternfold
