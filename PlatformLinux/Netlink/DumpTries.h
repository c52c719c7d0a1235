// Makes one table of the tries of a dump during which the table kept changing.
//
// Made by: `dumpTable` in PlatformLinux/System/TableDump.h, which feeds it. Pure.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <set>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace lanternfold {

/// The records of every try, in the order of the tries.
template <typename Record>
class DumpTries {
 public:
  /// `room` is how many records a try is made ready for.
  explicit DumpTries(std::size_t room = 0) : room_(room) {}

  void begin() {
    if (tries_.empty() || !tries_.back().empty()) tries_.emplace_back().reserve(room_);
  }

  void take(Record record) {
    if (tries_.empty()) begin();
    tries_.back().push_back(std::move(record));
  }

  /// What the last try brought: the whole table, when nothing interrupted it.
  [[nodiscard]] std::vector<Record> ofLastTry() && {
    return tries_.empty() ? std::vector<Record>() : std::move(tries_.back());
  }

  /// The table when every try was interrupted: whatever was there all the time is in it.
  ///
  /// `place` tells where the kernel passes a record by. A last try in ascending order of places
  /// stands alone: the kernel walked by index (Linux 6.9 and later), and nothing that stayed can
  /// have been passed over. Other kernels walk a hash table by counting entries, and a link that
  /// goes makes them pass over another one that stays; it is another one in every try. There a
  /// record of an earlier try stands unless a later one has one of its `identities`. The price is a
  /// record that went meanwhile: it is as old as the tries, and the next reading is without it.
  /// Records of earlier tries come first, so that of two claims the fresh one is met last.
  template <typename Place, typename... Identities>
  [[nodiscard]] std::vector<Record> united(Place place, Identities... identities) && {
    if (tries_.empty()) return {};
    if (std::ranges::is_sorted(tries_.back(), {}, place)) return std::move(tries_.back());
    std::tuple<std::set<std::decay_t<std::invoke_result_t<Identities, const Record&>>>...> seen;
    std::vector<Record> newestFirst;
    for (auto each = tries_.rbegin(); each != tries_.rend(); ++each) {
      for (auto record = each->rbegin(); record != each->rend(); ++record) {
        if (isNew(seen, *record, identities...)) newestFirst.push_back(std::move(*record));
      }
    }
    std::ranges::reverse(newestFirst);
    return newestFirst;
  }

 private:
  /// Whether no identity of the record was seen before. All are noted then, and none otherwise: a
  /// record that is left out supersedes nothing.
  template <typename Seen, typename... Identities>
  [[nodiscard]] static bool isNew(Seen& seen, const Record& record, Identities... identities) {
    return std::apply(
        [&](auto&... sets) {
          if ((sets.contains(std::invoke(identities, record)) || ...)) return false;
          (sets.insert(std::invoke(identities, record)), ...);
          return true;
        },
        seen);
  }

  std::size_t room_;
  std::vector<std::vector<Record>> tries_;
};

}  // namespace lanternfold
