// usage: SystemTestVirtualPointer
// The pointer of a Wayland compositor that has none of its own, until standard input ends. A line
// is an order, and is answered with a line once the compositor has done it:
//   move X Y WIDTH HEIGHT    to a point of all monitors together, which are so wide and so high
//   press BUTTON             with the kernel's number of the button, 272 for the left one
//   release BUTTON
#include <array>
#include <chrono>
#include <cstdint>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <wayland-client.h>

namespace {

// The part of the protocol wlr-virtual-pointer-unstable-v1 that is needed, as its scanner would
// write it: Debian 12 has no package of that protocol.
extern const wl_interface pointerInterface;
const wl_interface* noTypes[8] = {};
const wl_interface* createTypes[] = {&wl_seat_interface, &pointerInterface};
const wl_message pointerRequests[] = {
    {"motion", "uff", noTypes},   {"motion_absolute", "uuuuu", noTypes},
    {"button", "uuu", noTypes},   {"axis", "uuf", noTypes},
    {"frame", "", noTypes},       {"axis_source", "u", noTypes},
    {"axis_stop", "uu", noTypes}, {"axis_discrete", "uufi", noTypes},
    {"destroy", "", noTypes},
};
const wl_interface pointerInterface = {"zwlr_virtual_pointer_v1", 1, 9,
                                       pointerRequests,           0, nullptr};
const wl_message managerRequests[] = {{"create_virtual_pointer", "?on", createTypes}};
const wl_interface managerInterface = {
    "zwlr_virtual_pointer_manager_v1", 1, 1, managerRequests, 0, nullptr};
enum Request : std::uint32_t { motionAbsolute = 1, button = 2, frame = 4 };

struct Globals {
  wl_proxy* manager = nullptr;
  wl_seat* seat = nullptr;
};

void noteGlobal(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
                std::uint32_t /*version*/) {
  auto& globals = *static_cast<Globals*>(data);
  if (interface == std::string_view(managerInterface.name)) {
    globals.manager =
        static_cast<wl_proxy*>(wl_registry_bind(registry, name, &managerInterface, 1));
  }
  if (interface == std::string_view(wl_seat_interface.name)) {
    globals.seat = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
  }
}

void forgetGlobal(void* /*data*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}

class VirtualPointer {
 public:
  explicit VirtualPointer(wl_display* display) : display_(display) {
    static const wl_registry_listener listener = {noteGlobal, forgetGlobal};
    Globals globals;
    wl_registry_add_listener(wl_display_get_registry(display), &listener, &globals);
    wl_display_roundtrip(display);
    if (globals.manager == nullptr) return;
    pointer_ =
        wl_proxy_marshal_flags(globals.manager, 0, &pointerInterface, 1, 0, globals.seat, nullptr);
    wl_display_roundtrip(display);
  }

  [[nodiscard]] bool exists() const { return pointer_ != nullptr; }

  /// Whether the order made sense and the compositor has done it.
  bool obey(const std::string& order) {
    std::istringstream words(order);
    std::string verb;
    std::array<std::uint32_t, 4> numbers = {};
    words >> verb;
    std::size_t count = 0;
    while (count < numbers.size() && words >> numbers.at(count)) ++count;
    if (verb == "move" && count == 4) {
      send(motionAbsolute, milliseconds(), numbers[0], numbers[1], numbers[2], numbers[3]);
    } else if ((verb == "press" || verb == "release") && count == 1) {
      send(button, milliseconds(), numbers[0], verb == "press" ? 1U : 0U);
    } else {
      return false;
    }
    send(frame);
    return wl_display_roundtrip(display_) >= 0;
  }

 private:
  template <typename... Arguments>
  void send(Request request, Arguments... arguments) {
    wl_proxy_marshal_flags(pointer_, request, nullptr, 1, 0, arguments...);
  }

  static std::uint32_t milliseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
  }

  wl_display* display_;
  wl_proxy* pointer_ = nullptr;
};

}  // namespace

int main() {
  wl_display* const display = wl_display_connect(nullptr);
  if (display == nullptr) {
    std::cerr << "no compositor answers\n";
    return 1;
  }
  VirtualPointer pointer(display);
  if (!pointer.exists()) {
    std::cerr << "the compositor makes no virtual pointers\n";
    return 1;
  }
  std::cout << "ready" << std::endl;
  for (std::string order; std::getline(std::cin, order);) {
    if (!pointer.obey(order)) {
      std::cerr << "cannot do this: " << order << '\n';
      return 1;
    }
    std::cout << "done" << std::endl;
  }
  wl_display_disconnect(display);
  return 0;
}
