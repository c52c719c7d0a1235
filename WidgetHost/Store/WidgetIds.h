// Which ids widgets have had, so that none is given to another widget.
//
// Made by: the reader of the store's file, with the ids that stand there. Pure. Belongs to one
// thread.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace lanternfold {

/// Forgets none while it is there: a dialog or a command that names a removed widget must not reach
/// a later one.
class WidgetIds {
 public:
  /// Is never given from now on; of no effect when it is known already.
  void note(std::string_view id);
  [[nodiscard]] bool isKnown(std::string_view id) const { return known_.contains(id); }
  /// A number that is none of those known, and is known from now on: the one behind the highest,
  /// while numbers are short.
  [[nodiscard]] std::string give();

  friend bool operator==(const WidgetIds&, const WidgetIds&) = default;

 private:
  std::set<std::string, std::less<>> known_;
  std::uint64_t highest_ = 0;
};

}  // namespace lanternfold
