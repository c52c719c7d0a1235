#include "WidgetHost/Desk/CardContent.h"

#include <algorithm>
#include <utility>

#include "Support/FatalError.h"
#include "ViewTree/DrawingTimes.h"
#include "WidgetHost/Desk/HostCards.h"

namespace lanternfold {
namespace {

constexpr std::chrono::hours longestWait{24 * 365};

}  // namespace

void CardContent::receiveSample(ViewEntry sample) {
  if (!entry_) sample_ = std::move(sample);
}

void CardContent::receiveTimeline(Timeline<ViewEntry> timeline, Date now) {
  if (timeline.entries.empty()) return;
  std::ranges::stable_sort(timeline.entries, {}, &ViewEntry::date);
  std::ranges::reverse(timeline.entries);
  later_ = std::move(timeline.entries);
  sample_.reset();
  entry_ = std::move(later_.back());
  later_.pop_back();
  advance(now);
}

void CardContent::forget() {
  sample_.reset();
  entry_.reset();
  later_.clear();
}

bool CardContent::advance(Date now) {
  bool isAnother = false;
  while (!later_.empty() && later_.back().date <= now) {
    entry_ = std::move(later_.back());
    later_.pop_back();
    isAnother = true;
  }
  return isAnother;
}

std::optional<CardContent::Date> CardContent::nextChange() const {
  return later_.empty() ? std::nullopt : std::optional(later_.back().date);
}

CardContent::Face CardContent::face(const Standing& standing) const {
  if (standing.isLeftAlone) return Face::quiet;
  if (entry_) return standing.isStale ? Face::stale : Face::entry;
  // A sample that stays would be taken for facts.
  if (sample_ && !standing.isStale) return Face::sample;
  return standing.isMissed ? Face::unanswered : Face::empty;
}

View CardContent::view(const Standing& standing, const StringTable& strings,
                       WidgetFamily family) const {
  switch (face(standing)) {
    case Face::empty:
      return emptyCard(strings);
    case Face::sample:
      return sample_->view;
    case Face::entry:
      return entry_->view;
    case Face::stale:
      return staleCard(entry_->view, strings);
    case Face::unanswered:
      return unansweredCard(strings, family);
    case Face::quiet:
      return quietCard(strings, family);
  }
  fatalError("a card has no face");
}

bool CardContent::saysTime(const Standing& standing) const {
  const Face shown = face(standing);
  if (shown == Face::sample) return hasDrawingTime(sample_->view);
  return shown == Face::entry && hasDrawingTime(entry_->view);
}

std::optional<CardContent::Date> CardContent::date() const {
  const std::optional<ViewEntry>& shown = entry_ ? entry_ : sample_;
  return shown ? std::optional(shown->date) : std::nullopt;
}

std::chrono::nanoseconds untilDate(CardContent::Date date, CardContent::Date now) {
  if (date <= now) return {};
  // The difference of far dates would not fit. An entry may be of the year 3000.
  if (date >= now + longestWait) return longestWait;
  return date - now;
}

std::optional<std::chrono::nanoseconds> untilEndOf(const Timeline<ViewEntry>& timeline,
                                                   CardContent::Date now) {
  if (timeline.policy == TimelineReloadPolicy::never) return std::nullopt;
  std::chrono::nanoseconds end{};
  for (const ViewEntry& entry : timeline.entries) end = std::max(end, untilDate(entry.date, now));
  return end;
}

}  // namespace lanternfold
