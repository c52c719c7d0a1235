#include "PlatformLinux/Netlink/LinkDirectory.h"

#include <algorithm>
#include <utility>

namespace lanternfold {

void LinkDirectory::clear() {
  known_.clear();
  isStale_ = true;
}

void LinkDirectory::apply(const LinkMessage& link) {
  if (!link.describesLink()) return;
  if (link.isRemoval) {
    isStale_ = known_.erase(link.index) > 0 || isStale_;
    return;
  }
  Known& known = known_[link.index];
  const std::uint64_t mtu = link.mtu.value_or(static_cast<std::uint32_t>(known.mtu));
  if (known.name == link.name && known.mtu == mtu) return;
  known = {link.name, mtu};
  isStale_ = true;
}

const std::vector<LinkDirectory::Slot>& LinkDirectory::slots() {
  if (isStale_) rebuild();
  return slots_;
}

const std::shared_ptr<const ConnectionMetricsMap::Names>& LinkDirectory::names() {
  if (isStale_) rebuild();
  return names_;
}

void LinkDirectory::rebuild() {
  // By name, and of equal names the one with the largest index first.
  std::vector<std::pair<std::string_view, std::uint32_t>> byName;
  byName.reserve(known_.size());
  for (const auto& [index, known] : known_) byName.emplace_back(known.name, index);
  std::ranges::sort(byName, [](const auto& left, const auto& right) {
    return left.first != right.first ? left.first < right.first : left.second > right.second;
  });
  const auto surplus = std::ranges::unique(byName, {}, [](const auto& pair) { return pair.first; });
  byName.erase(surplus.begin(), surplus.end());

  auto names = std::make_shared<ConnectionMetricsMap::Names>();
  names->reserve(byName.size());
  slots_.clear();
  slots_.reserve(byName.size());
  for (const auto& [name, index] : byName) {
    slots_.push_back({index, static_cast<std::uint32_t>(names->size()), known_.at(index).mtu});
    names->emplace_back(name);
  }
  std::ranges::sort(slots_, {}, &Slot::index);
  names_ = std::move(names);
  isStale_ = false;
}

}  // namespace lanternfold
