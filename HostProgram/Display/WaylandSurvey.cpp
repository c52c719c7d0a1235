#include <cstring>
#include <memory>
#include <wayland-client.h>

#include "HostProgram/Display/DisplayChoice.h"

namespace lanternfold {
namespace {

constexpr const char* layerProtocol = "zwlr_layer_shell_v1";

void noteGlobal(void* hasLayers, wl_registry*, std::uint32_t, const char* protocol, std::uint32_t) {
  if (std::strcmp(protocol, layerProtocol) == 0) *static_cast<bool*>(hasLayers) = true;
}

void ignoreRemoval(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener listener{.global = noteGlobal, .global_remove = ignoreRemoval};

}  // namespace

WaylandCompositor askWaylandCompositor() {
  const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(
      wl_display_connect(nullptr), wl_display_disconnect);
  if (!display) return WaylandCompositor::unreachable;
  bool hasLayers = false;
  wl_registry* const registry = wl_display_get_registry(display.get());
  wl_registry_add_listener(registry, &listener, &hasLayers);
  const bool hasAnswered = wl_display_roundtrip(display.get()) >= 0;
  wl_registry_destroy(registry);
  if (!hasAnswered) return WaylandCompositor::unreachable;
  return hasLayers ? WaylandCompositor::withLayers : WaylandCompositor::withoutLayers;
}

}  // namespace lanternfold
