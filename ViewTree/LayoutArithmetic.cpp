#include "ViewTree/LayoutArithmetic.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <span>
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

/// Room for lengths that are equal but for rounding.
constexpr double tolerance = 0.001;
/// How finely the height is found up to which all rows may grow alike, in points.
constexpr double levelStep = 0.25;

/// The heights of the first rows, each asked by `offerOf`, until they take more than `available`.
template <typename OfferOf>
std::vector<double> heightsWithin(double available, double spacing, std::span<const RowHeight> rows,
                                  const OfferOf& offerOf) {
  std::vector<double> heights;
  double sum = -spacing;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const double height = rows[row](offerOf(row));
    sum += spacing + height;
    if (sum > available + tolerance) break;
    heights.push_back(height);
  }
  return heights;
}

/// Raises the offers of rows as far as all may grow alike, and then, from the first one on, of
/// those that make something of the next step, as long as it has room.
std::vector<double> levelledOffers(double available, double spacing,
                                   std::span<const RowHeight> rows,
                                   const std::vector<double>& ideals) {
  std::vector<double> offers(rows.size());
  const auto raise = [&](std::size_t row, double level) {
    offers[row] = std::min(level, ideals[row]);
  };
  const auto heights = [&] {
    return heightsWithin(available, spacing, rows, [&](std::size_t row) { return offers[row]; });
  };
  const auto allAt = [&](double level) {
    for (std::size_t row = 0; row < rows.size(); ++row) raise(row, level);
    return heights().size() == rows.size();
  };
  double level = 0;
  double tooHigh = std::ranges::max(ideals);
  if (allAt(tooHigh)) return offers;
  while (tooHigh - level > levelStep) {
    const double middle = level + (tooHigh - level) / 2;
    (allAt(middle) ? level : tooHigh) = middle;
  }
  (void)allAt(level);
  for (std::size_t row = 0; row < rows.size(); ++row) {
    raise(row, tooHigh);
    if (heights().size() == rows.size()) continue;
    raise(row, level);
    break;
  }
  return offers;
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

std::vector<double> wholeRowOffers(std::optional<double> available, double spacing,
                                   const std::vector<RowHeight>& rows) {
  if (rows.empty()) return {};
  const auto ideal = [](std::size_t) { return std::optional<double>(); };
  std::vector<double> ideals = heightsWithin(available.value_or(unlimited), spacing, rows, ideal);
  if (ideals.size() == rows.size()) return ideals;
  const auto least = [](std::size_t) { return std::optional<double>(0); };
  const std::size_t count = heightsWithin(*available, spacing, rows, least).size();
  if (count == 0) return {std::max(0.0, *available)};
  while (ideals.size() < count) ideals.push_back(rows[ideals.size()](std::nullopt));
  ideals.resize(count);
  return levelledOffers(*available, spacing, std::span(rows).first(count), ideals);
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
  // The child stands in for a bound that the frame does not have.
  if (frame.minimum && frame.maximum)
    return std::max(*frame.minimum, std::min(wanted, *frame.maximum));
  if (frame.minimum) return std::max(*frame.minimum, std::min(wanted, child));
  if (frame.maximum) return std::min(*frame.maximum, std::max(wanted, child));
  return child;
}

std::pair<double, double> fittingInsets(double before, double after,
                                        std::optional<double> available) {
  const double sum = before + after;
  if (!available || sum <= *available || sum <= 0) return {before, after};
  const double share = std::max(0.0, *available) / sum;
  return {before * share, after * share};
}

double paddedLength(double child, std::pair<double, double> insets, std::optional<double> inner,
                    std::optional<double> outer) {
  const bool takesAll = inner && outer && child == *inner;
  return takesAll ? *outer : child + insets.first + insets.second;
}

double alignedOffset(HorizontalAlignment alignment, double outer, double inner) {
  return alignedFraction(static_cast<int>(alignment), outer, inner);
}

double alignedOffset(VerticalAlignment alignment, double outer, double inner) {
  return alignedFraction(static_cast<int>(alignment), outer, inner);
}

}  // namespace lanternfold
