#include "ViewTree/Guides.h"

#include <algorithm>
#include <cmath>

namespace lanternfold {
namespace {

bool isFor(const MovedGuide& moved, HorizontalAlignment guide) { return moved.across == guide; }
bool isFor(const MovedGuide& moved, VerticalAlignment guide) { return moved.down == guide; }

template <typename Alignment>
const MovedGuide* find(const MovedGuides& guides, Alignment guide) {
  const auto found =
      std::ranges::find_if(guides, [&](const MovedGuide& moved) { return isFor(moved, guide); });
  return found == guides.end() ? nullptr : &*found;
}

/// The rest of a length that may be unlimited.
double rest(double length, double part) { return std::isfinite(length) ? length - part : length; }

template <typename Alignment>
GuidePosition position(Alignment guide, const MovedGuides& guides, double length) {
  if (const MovedGuide* moved = find(guides, guide)) return {moved->at, rest(length, moved->at)};
  // The first two guides are the beginning and the middle; one that is nowhere is the end.
  const int index = static_cast<int>(guide);
  if (index == 0) return {0, length};
  return index == 1 ? GuidePosition{length / 2, length / 2} : GuidePosition{length, 0};
}

template <typename Alignment>
void move(MovedGuides& guides, Alignment guide, const MovedGuide& moved) {
  std::erase_if(guides, [&](const MovedGuide& other) { return isFor(other, guide); });
  guides.push_back(moved);
}

}  // namespace

GuidePosition positionOf(HorizontalAlignment guide, const Dimensions& view) {
  return position(guide, view.guides, view.size.width);
}

GuidePosition positionOf(VerticalAlignment guide, const Dimensions& view) {
  return position(guide, view.guides, view.size.height);
}

void SharedGuide::add(const GuidePosition& position) {
  before_ = std::max(before_, position.before);
  after_ = std::max(after_, position.after);
}

double SharedGuide::extent() const { return isEmpty() ? 0 : std::max(0.0, before_ + after_); }

double beginningFor(const GuidePosition& inner, double guide) {
  const double beginning = guide - inner.before;
  // Between unlimited lengths every place is as good.
  return std::isfinite(beginning) ? beginning : 0;
}

void moveGuide(MovedGuides& guides, HorizontalAlignment guide, double at) {
  move(guides, guide, {guide, std::nullopt, at});
}

void moveGuide(MovedGuides& guides, VerticalAlignment guide, double at) {
  move(guides, guide, {std::nullopt, guide, at});
}

MovedGuides shifted(MovedGuides guides, Point at) {
  for (MovedGuide& guide : guides) guide.at += guide.across ? at.x : at.y;
  return guides;
}

void addFirstBaseline(MovedGuides& guides, const MovedGuides& child) {
  constexpr VerticalAlignment baseline = VerticalAlignment::firstTextBaseline;
  const MovedGuide* const added = find(child, baseline);
  if (added == nullptr) return;
  const MovedGuide* const known = find(guides, baseline);
  moveGuide(guides, baseline, known == nullptr ? added->at : std::min(known->at, added->at));
}

}  // namespace lanternfold
