#include "ViewTree/LayoutArithmetic.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <utility>

namespace lanternfold {
namespace {

/// The order in which members are served: by priority, then the least flexible first.
std::vector<std::size_t> servingOrder(const std::vector<StackMember>& members) {
  std::vector<std::size_t> order(members.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, [&](std::size_t left, std::size_t right) {
    const StackMember& one = members[left];
    const StackMember& other = members[right];
    if (one.priority != other.priority) return one.priority > other.priority;
    return one.maximum - one.minimum < other.maximum - other.minimum;
  });
  return order;
}

/// What members of lower priority than the one at `position` need at least, and how many members
/// of its own priority, itself included, are still to be served.
std::pair<double, double> reserveAndSharers(const std::vector<StackMember>& members,
                                            const std::vector<std::size_t>& order,
                                            std::size_t position) {
  double reserve = 0;
  double sharers = 0;
  for (std::size_t later = position; later < order.size(); ++later) {
    const StackMember& member = members[order[later]];
    if (member.priority < members[order[position]].priority) {
      reserve += member.minimum;
    } else {
      sharers += 1;
    }
  }
  return {reserve, sharers};
}

double alignedFraction(int position, double outer, double inner) {
  return (outer - inner) * position / 2;
}

}  // namespace

std::vector<std::optional<double>> stackOffers(std::optional<double> available, double spacing,
                                               const std::vector<StackMember>& members) {
  std::vector<std::optional<double>> offers(members.size());
  if (!available || members.empty()) return offers;
  double remaining = *available - spacing * static_cast<double>(members.size() - 1);
  const std::vector<std::size_t> order = servingOrder(members);
  for (std::size_t position = 0; position < order.size(); ++position) {
    const auto [reserve, sharers] = reserveAndSharers(members, order, position);
    const double offer = std::max(0.0, (remaining - reserve) / sharers);
    offers[order[position]] = offer;
    const double length = members[order[position]].lengthFor(offer);
    if (std::isfinite(remaining)) remaining -= length;
  }
  return offers;
}

double fittingSpacing(double spacing, std::size_t count, std::optional<double> available) {
  if (count < 2 || !available) return spacing;
  return std::min(spacing, std::max(0.0, *available) / static_cast<double>(count - 1));
}

std::optional<double> frameOffer(const FrameLength& frame, std::optional<double> proposal) {
  if (frame.fixed) return frame.fixed;
  std::optional<double> offer = proposal ? proposal : frame.ideal;
  if (!offer) return std::nullopt;
  if (frame.maximum) offer = std::min(*offer, *frame.maximum);
  if (frame.minimum) offer = std::max(*offer, *frame.minimum);
  return offer;
}

double frameExtent(const FrameLength& frame, std::optional<double> proposal, double child) {
  if (frame.fixed) return *frame.fixed;
  const double wanted = proposal.value_or(frame.ideal.value_or(child));
  // Without a bound of its own the frame is as large, or as small, as its child.
  const double least = frame.minimum.value_or(std::min(child, wanted));
  const double most = frame.maximum ? *frame.maximum : std::max(child, least);
  return std::max(least, std::min(wanted, most));
}

std::pair<double, double> fittingInsets(double before, double after,
                                        std::optional<double> available) {
  const double sum = before + after;
  if (!available || sum <= *available || sum <= 0) return {before, after};
  const double share = std::max(0.0, *available) / sum;
  return {before * share, after * share};
}

double alignedOffset(HorizontalAlignment alignment, double outer, double inner) {
  return alignedFraction(static_cast<int>(alignment), outer, inner);
}

double alignedOffset(VerticalAlignment alignment, double outer, double inner) {
  return alignedFraction(static_cast<int>(alignment), outer, inner);
}

}  // namespace lanternfold
