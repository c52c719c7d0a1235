// What is dear to make and asked for again, kept in bounded room: two generations of at most so
// many values each. When the young one is full it becomes the old one, whose values are dropped
// unless they are asked for meanwhile.
//
// Used by: what draws, each on its own thread.
#pragma once

#include <cstddef>
#include <unordered_map>
#include <utility>

namespace lanternfold {

/// `Hash` and `Equal` may be transparent, so that a look-up need not make a key.
template <typename Key, typename Value, typename Hash, typename Equal>
class BoundedCache {
 public:
  /// `generation` is how many values a generation holds, at least one.
  explicit BoundedCache(std::size_t generation) : generation_(generation) {}

  /// The value of `key`; null when none is kept. It stands until the next `keep`.
  template <typename AnyKey>
  [[nodiscard]] Value* find(const AnyKey& key) {
    if (const auto young = young_.find(key); young != young_.end()) return &young->second;
    const auto old = old_.find(key);
    if (old == old_.end()) return nullptr;
    auto node = old_.extract(old);
    makeRoom();
    return &young_.insert(std::move(node)).position->second;
  }

  /// Keeps `value`, in place of one of an equal key. It stands until the next `find` or `keep`.
  Value& keep(Key key, Value value) {
    makeRoom();
    return young_.insert_or_assign(std::move(key), std::move(value)).first->second;
  }

  /// At most twice the size of a generation.
  [[nodiscard]] std::size_t size() const { return young_.size() + old_.size(); }

 private:
  void makeRoom() {
    if (young_.size() < generation_) return;
    old_ = std::exchange(young_, {});
  }

  using Values = std::unordered_map<Key, Value, Hash, Equal>;
  std::size_t generation_;
  Values young_;
  Values old_;
};

}  // namespace lanternfold
