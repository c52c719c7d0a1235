#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>
#include <poll.h>
#include <wayland-client.h>

#include "HostProgram/Display/DisplayChoice.h"

namespace lanternfold {
namespace {

constexpr const char* layerProtocol = "zwlr_layer_shell_v1";
constexpr std::chrono::seconds patience{3};

/// What the compositor has said so far.
struct Answer {
  bool hasLayers = false;
  bool isComplete = false;
};

void noteGlobal(void* answer, wl_registry*, std::uint32_t, const char* protocol, std::uint32_t) {
  if (std::strcmp(protocol, layerProtocol) == 0) static_cast<Answer*>(answer)->hasLayers = true;
}

void ignoreRemoval(void*, wl_registry*, std::uint32_t) {}

void noteEnd(void* answer, wl_callback*, std::uint32_t) {
  static_cast<Answer*>(answer)->isComplete = true;
}

constexpr wl_registry_listener registryListener{.global = noteGlobal,
                                                .global_remove = ignoreRemoval};
constexpr wl_callback_listener endListener{.done = noteEnd};

/// Whether something can be read by then.
bool waitForBytes(int descriptor, const Clock& clock,
                  std::chrono::steady_clock::time_point deadline) {
  pollfd waiting{.fd = descriptor, .events = POLLIN, .revents = 0};
  for (;;) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - clock.steadyNow()).count();
    const int ready = ::poll(&waiting, 1, static_cast<int>(std::max<long>(left, 0)));
    if (ready >= 0 || errno != EINTR) return ready == 1;
  }
}

/// The library's own round trip waits without end.
WaylandCompositor listen(wl_display* display, const Answer& answer, const Clock& clock) {
  const auto deadline = clock.steadyNow() + patience;
  while (!answer.isComplete) {
    // Nothing is left over that would have to be dispatched first.
    if (wl_display_prepare_read(display) != 0) return WaylandCompositor::unreachable;
    (void)wl_display_flush(display);
    if (!waitForBytes(wl_display_get_fd(display), clock, deadline)) {
      wl_display_cancel_read(display);
      return WaylandCompositor::silent;
    }
    if (wl_display_read_events(display) < 0 || wl_display_dispatch_pending(display) < 0) {
      return WaylandCompositor::unreachable;
    }
  }
  return answer.hasLayers ? WaylandCompositor::withLayers : WaylandCompositor::withoutLayers;
}

}  // namespace

WaylandCompositor askWaylandCompositor(const Clock& clock) {
  const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(
      wl_display_connect(nullptr), wl_display_disconnect);
  if (!display) return WaylandCompositor::unreachable;
  Answer answer;
  wl_registry* const registry = wl_display_get_registry(display.get());
  wl_registry_add_listener(registry, &registryListener, &answer);
  wl_callback* const end = wl_display_sync(display.get());
  wl_callback_add_listener(end, &endListener, &answer);
  const WaylandCompositor compositor = listen(display.get(), answer, clock);
  wl_callback_destroy(end);
  wl_registry_destroy(registry);
  return compositor;
}

}  // namespace lanternfold
