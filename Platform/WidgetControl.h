// The verbs by which scripts and key bindings arrange the widgets of a host that runs.
//
// In the host: `HostControl`, which `WidgetControlObject` puts on the session bus. In other
// programs: `BusWidgetControl`. Fake: `FakeWidgetControl`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <string>

namespace lanternfold {

struct WidgetControlFailure {
  enum class Cause : std::uint8_t {
    noHost,       ///< none runs
    unreachable,  ///< none can be asked, or it does not answer
    refused,      ///< it has said why not
  };
  Cause cause = Cause::refused;
  std::string sentence;  ///< for the user, without its full stop
  friend bool operator==(const WidgetControlFailure&, const WidgetControlFailure&) = default;
};

/// Bytes of an id, a kind or an adapter that are handed on at most; whoever asks is told so.
inline constexpr std::size_t longestWidgetControlText = 256;

/// Main thread.
class WidgetControl {
 public:
  template <typename Result>
  using Outcome = std::expected<Result, WidgetControlFailure>;

  virtual ~WidgetControl() = default;

  /// A JSON array of {"id","kind","family","configuration","monitor","x","y"}, in the order of the
  /// host.
  [[nodiscard]] virtual Outcome<std::string> list() = 0;
  /// The id of the new widget. Of its largest size where `family` is empty, and with the adapter
  /// that it chooses itself where `adapter` is.
  [[nodiscard]] virtual Outcome<std::string> add(const std::string& kind, const std::string& family,
                                                 const std::string& adapter) = 0;
  [[nodiscard]] virtual Outcome<void> remove(const std::string& id) = 0;
  /// Every widget where `id` is empty.
  [[nodiscard]] virtual Outcome<void> reload(const std::string& id) = 0;
  /// The host puts its windows away and ends.
  [[nodiscard]] virtual Outcome<void> quit() = 0;
};

}  // namespace lanternfold
