#include "WidgetHost/Desk/CardContent.h"

#include <algorithm>
#include <utility>

#include "WidgetHost/Desk/HostCards.h"

namespace lanternfold {
namespace {

/// An entry may be of the year 3000.
constexpr std::chrono::nanoseconds longestWait = std::chrono::hours(24 * 365);

std::chrono::nanoseconds until(CardContent::Date date, CardContent::Date now) {
  if (date <= now) return {};
  return std::min<std::chrono::nanoseconds>(date - now, longestWait);
}

}  // namespace

void CardContent::receiveSample(ViewEntry sample) {
  if (!entry_) sample_ = std::move(sample);
}

void CardContent::receiveTimeline(Timeline<ViewEntry> timeline, const Moment& now) {
  if (timeline.entries.empty()) return;
  std::ranges::stable_sort(timeline.entries, {}, &ViewEntry::date);
  later_.clear();
  for (ViewEntry& entry : timeline.entries) {
    const auto due = now.time + until(entry.date, now.date);
    later_.push_back({.due = due, .entry = std::move(entry)});
  }
  std::ranges::reverse(later_);
  sample_.reset();
  entry_ = std::move(later_.back().entry);
  later_.pop_back();
  advance(now.time);
}

void CardContent::forget() {
  sample_.reset();
  entry_.reset();
  later_.clear();
}

bool CardContent::advance(TimePoint now) {
  bool isAnother = false;
  while (!later_.empty() && later_.back().due <= now) {
    entry_ = std::move(later_.back().entry);
    later_.pop_back();
    isAnother = true;
  }
  return isAnother;
}

std::optional<CardContent::TimePoint> CardContent::nextChange() const {
  return later_.empty() ? std::nullopt : std::optional(later_.back().due);
}

View CardContent::view(const Standing& standing, const StringTable& strings,
                       WidgetFamily family) const {
  if (standing.isLeftAlone) return quietCard(strings, family);
  // A sample that stays would be taken for facts.
  if (standing.isStale) {
    return entry_ ? staleCard(entry_->view, strings) : unansweredCard(strings, family);
  }
  if (entry_) return entry_->view;
  return sample_ ? sample_->view : emptyCard(strings);
}

std::optional<CardContent::Date> CardContent::date() const {
  const std::optional<ViewEntry>& shown = entry_ ? entry_ : sample_;
  return shown ? std::optional(shown->date) : std::nullopt;
}

std::optional<std::chrono::nanoseconds> untilEndOf(const Timeline<ViewEntry>& timeline,
                                                   CardContent::Date now) {
  if (timeline.policy == TimelineReloadPolicy::never) return std::nullopt;
  std::chrono::nanoseconds end{};
  for (const ViewEntry& entry : timeline.entries) end = std::max(end, until(entry.date, now));
  return end;
}

}  // namespace lanternfold
