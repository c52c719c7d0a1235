#include "ViewTree/LayoutArithmetic.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <utility>

namespace lanternfold {
namespace {

/// A gap that two unlimited lengths leave is none.
double flexibility(const StackMember& member) {
  return std::isfinite(member.minimum) ? member.maximum - member.minimum : 0;
}

/// The order in which members are served: by priority, then the least flexible first.
std::vector<std::size_t> servingOrder(const std::vector<StackMember>& members) {
  std::vector<std::size_t> order(members.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::sort(order, [&](std::size_t left, std::size_t right) {
    const StackMember& one = members[left];
    const StackMember& other = members[right];
    if (one.priority != other.priority) return one.priority > other.priority;
    const double first = flexibility(one);
    const double second = flexibility(other);
    return first != second ? first < second : left < right;
  });
  return order;
}

/// Room for lengths that are equal but for rounding.
constexpr double tolerance = 0.001;
/// How finely the height is found up to which all rows may grow alike, in points.
constexpr double levelStep = 0.25;

using Heights = std::vector<double>;

double sumOf(const Heights& heights, double spacing) {
  if (heights.empty()) return 0;
  return std::accumulate(heights.begin(), heights.end(),
                         spacing * static_cast<double>(heights.size() - 1));
}

/// The heights of the first rows for the offers that `offerOf` makes them, until they take more
/// than `available`.
template <typename OfferOf>
Heights heightsWithin(double available, double spacing, std::size_t count,
                      const RowHeight& heightFor, const OfferOf& offerOf) {
  Heights heights;
  double sum = -spacing;
  for (std::size_t row = 0; row < count; ++row) {
    const double height = heightFor(row, offerOf(row));
    sum += spacing + height;
    if (!fits(sum, available)) break;
    heights.push_back(height);
  }
  return heights;
}

/// Raises the offers of all rows alike as far as that fits, and then, from the first one on, those
/// of the rows that make something of the next step, as long as it has room.
Heights levelledHeights(double available, double spacing, const RowHeight& heightFor,
                        const Heights& ideals) {
  const auto allAt = [&](double level) {
    return heightsWithin(available, spacing, ideals.size(), heightFor,
                         [&](std::size_t row) { return std::min(level, ideals[row]); });
  };
  double level = 0;
  double tooHigh = std::ranges::max(ideals);
  if (Heights heights = allAt(tooHigh); heights.size() == ideals.size()) return heights;
  Heights heights = allAt(level);
  while (tooHigh - level > levelStep) {
    const double middle = level + (tooHigh - level) / 2;
    Heights raised = allAt(middle);
    if (raised.size() == ideals.size()) {
      level = middle;
      heights = std::move(raised);
    } else {
      tooHigh = middle;
    }
  }
  double sum = sumOf(heights, spacing);
  for (std::size_t row = 0; row < heights.size(); ++row) {
    const double more = heightFor(row, std::min(tooHigh, ideals[row])) - heights[row];
    if (!fits(sum + more, available)) break;
    sum += more;
    heights[row] += more;
  }
  return heights;
}

}  // namespace

bool fits(double length, std::optional<double> offered) {
  return !offered || length <= *offered + tolerance;
}

std::vector<double> stackOffers(double available, double spacing,
                                const std::vector<StackMember>& members,
                                const MemberLength& lengthFor) {
  std::vector<double> offers(members.size());
  if (members.empty()) return offers;
  double remaining = available - spacing * static_cast<double>(members.size() - 1);
  const std::vector<std::size_t> order = servingOrder(members);
  // What those need at least that are served from a place on; exactly nothing behind the last.
  std::vector<double> reserves(order.size() + 1);
  for (std::size_t place = order.size(); place-- > 0;) {
    reserves[place] = reserves[place + 1] + members[order[place]].minimum;
  }
  auto next = order.begin();
  while (next != order.end()) {
    // Those of one priority, before all others.
    const double priority = members[*next].priority;
    const auto end = std::find_if(next, order.end(), [&](std::size_t member) {
      return members[member].priority != priority;
    });
    const double reserve = reserves[static_cast<std::size_t>(end - order.begin())];
    for (; next != end; ++next) {
      const auto sharers = static_cast<double>(end - next);
      offers[*next] = std::max(0.0, (remaining - reserve) / sharers);
      const double length = lengthFor(*next, offers[*next]);
      if (std::isfinite(remaining)) remaining -= length;
    }
  }
  return offers;
}

double fittingSpacing(double spacing, std::size_t count, std::optional<double> available) {
  if (count < 2 || !available) return spacing;
  return std::min(spacing, std::max(0.0, *available) / static_cast<double>(count - 1));
}

std::vector<double> wholeRowHeights(std::optional<double> available, double spacing,
                                    std::size_t count, const RowHeight& heightFor) {
  if (count == 0) return {};
  const auto ideal = [](std::size_t) { return std::optional<double>(); };
  const auto least = [](std::size_t) { return std::optional<double>(0); };
  Heights ideals = heightsWithin(available.value_or(unlimited), spacing, count, heightFor, ideal);
  if (ideals.size() == count) return ideals;
  const std::size_t shown = heightsWithin(*available, spacing, count, heightFor, least).size();
  if (shown == 0) return {heightFor(0, std::max(0.0, *available))};
  while (ideals.size() < shown) ideals.push_back(heightFor(ideals.size(), std::nullopt));
  ideals.resize(shown);
  return levelledHeights(*available, spacing, heightFor, ideals);
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

std::optional<double> paddedOffer(std::optional<double> outer, std::pair<double, double> insets) {
  if (!outer) return std::nullopt;
  return std::max(0.0, *outer - insets.first - insets.second);
}

double paddedLength(double child, std::pair<double, double> insets, std::optional<double> inner,
                    std::optional<double> outer) {
  if (inner && outer && child == *inner) return *outer;
  return std::max(0.0, child + insets.first + insets.second);
}

}  // namespace lanternfold
