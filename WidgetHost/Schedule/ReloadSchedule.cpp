#include "WidgetHost/Schedule/ReloadSchedule.h"

#include <algorithm>
#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// A timeline may end in a thousand years.
constexpr ReloadSchedule::Duration longestWait = std::chrono::hours(24 * 365);

}  // namespace

void ReloadSchedule::add(const std::string& id, TimePoint now) {
  const bool isNew = reloads_.emplace(id, Reload{.due = now}).second;
  if (!isNew) fatalError("a widget was scheduled twice");
}

void ReloadSchedule::remove(std::string_view id) {
  const auto found = reloads_.find(id);
  if (found != reloads_.end()) reloads_.erase(found);
}

void ReloadSchedule::wish(std::string_view id, TimePoint now) { makeDue(reloadOf(id), now); }

void ReloadSchedule::wishAll(TimePoint now) {
  for (auto& [id, reload] : reloads_) makeDue(reload, now);
}

void ReloadSchedule::pathChanged(TimePoint now) {
  if (!firstPathChange_) firstPathChange_ = now;
  pathDue_ = std::min(now + pathQuiet, *firstPathChange_ + longestPathBurst);
}

void ReloadSchedule::resumed(TimePoint now) { makeAllDue(now); }

void ReloadSchedule::setHeld(Hold hold, bool isOn) {
  (hold == Hold::locked ? isLocked_ : isLeftAlone_) = isOn;
}

std::vector<std::string> ReloadSchedule::takeDue(TimePoint now) {
  takePathChange(now);
  std::vector<std::string> due;
  if (isHeld()) return due;
  for (auto& [id, reload] : reloads_) {
    if (reload.isAsking || !reload.due || *reload.due > now) continue;
    reload.due.reset();
    reload.isAsking = true;
    due.push_back(id);
  }
  return due;
}

void ReloadSchedule::answered(std::string_view id, std::optional<Duration> untilEnd,
                              TimePoint now) {
  Reload& reload = reloadOf(id);
  reload.misses = 0;
  reload.gone = 0;
  reload.isNever = !untilEnd.has_value();
  std::optional<TimePoint> due;
  if (untilEnd) due = now + std::max(std::min(*untilEnd, longestWait), refreshInterval_);
  finish(reload, due, now);
}

void ReloadSchedule::failed(std::string_view id, ExtensionFailure failure, TimePoint now) {
  if (failure == ExtensionFailure::cancelled) return putBack(id, now);
  Reload& reload = reloadOf(id);
  reload.misses = std::min(reload.misses + 1, missesUntilStale);
  if (failure == ExtensionFailure::gone) {
    reload.gone = std::min(reload.gone + 1, 2);
    finish(reload, reload.gone == 1 ? now : now + goneRetry, now);
    // A wish is no reason to ask faster.
    if (reload.gone > 1) reload.due = now + goneRetry;
    return;
  }
  reload.gone = 0;
  finish(reload, failure == ExtensionFailure::tooOften ? now : now + refreshInterval_, now);
}

void ReloadSchedule::putBack(std::string_view id, TimePoint now) { finish(reloadOf(id), now, now); }

int ReloadSchedule::missesOf(std::string_view id) const {
  const auto found = reloads_.find(id);
  return found == reloads_.end() ? 0 : found->second.misses;
}

std::optional<ReloadSchedule::TimePoint> ReloadSchedule::nextDue() const {
  if (isHeld()) return std::nullopt;
  std::optional<TimePoint> next;
  if (firstPathChange_) next = pathDue_;
  for (const auto& [id, reload] : reloads_) {
    if (reload.isAsking || !reload.due) continue;
    if (!next || *reload.due < *next) next = reload.due;
  }
  return next;
}

ReloadSchedule::Reload& ReloadSchedule::reloadOf(std::string_view id) {
  const auto found = reloads_.find(id);
  if (found == reloads_.end()) fatalError("a widget that was never scheduled was spoken of");
  return found->second;
}

void ReloadSchedule::makeDue(Reload& reload, TimePoint when) {
  if (reload.isAsking) {
    reload.isWished = true;
  } else {
    reload.due = reload.due ? std::min(*reload.due, when) : when;
  }
}

void ReloadSchedule::makeAllDue(TimePoint now) {
  for (auto& [id, reload] : reloads_) {
    if (!reload.isNever) makeDue(reload, now);
  }
}

void ReloadSchedule::takePathChange(TimePoint now) {
  if (!firstPathChange_ || pathDue_ > now) return;
  firstPathChange_.reset();
  makeAllDue(now);
}

void ReloadSchedule::finish(Reload& reload, std::optional<TimePoint> due, TimePoint now) {
  reload.isAsking = false;
  reload.due = std::exchange(reload.isWished, false) ? now : due;
}

}  // namespace lanternfold
