#include "WidgetHost/Bandwidth/BandwidthHistory.h"

#include <algorithm>
#include <utility>

#include "NetworkMonitor/Metrics/AdjustedMetrics.h"

namespace lanternfold {
namespace {

/// The class is that of the last ten seconds.
constexpr std::size_t readingsOfClass = 11;
/// What went through in a longer time says nothing of its last second.
constexpr std::chrono::seconds longestMean{secondsShown};

bool wentBack(const ConnectionMetrics& before, const ConnectionMetrics& now) {
  return now.recvBytes < before.recvBytes || now.sentBytes < before.sentBytes;
}

/// None when that cannot be known.
std::optional<TrafficRate> rateBetween(const auto& before, const auto& now) {
  const std::chrono::duration<double> interval = now.time - before.time;
  const bool isMeasurable = interval.count() > 0 && now.time - before.time < longestMean &&
                            !wentBack(before.adjusted, now.adjusted);
  if (!isMeasurable) return std::nullopt;
  const auto perSecond = [&](std::uint64_t since, std::uint64_t until) {
    return static_cast<double>(until - since) / interval.count();
  };
  return TrafficRate{.received = perSecond(before.adjusted.recvBytes, now.adjusted.recvBytes),
                     .sent = perSecond(before.adjusted.sentBytes, now.adjusted.sentBytes)};
}

void moveOn(TrafficMinute& minute, std::int64_t seconds) {
  const auto places = static_cast<std::ptrdiff_t>(
      std::min<std::int64_t>(seconds, static_cast<std::int64_t>(minute.size())));
  std::shift_left(minute.begin(), minute.end(), places);
  std::fill(minute.end() - places, minute.end(), std::nullopt);
}

}  // namespace

BandwidthHistory::BandwidthHistory(const ConnectionBandwidthAnalyzer& analyzer, bool is32bitCapped)
    : analyzer_(analyzer), is32bitCapped_(is32bitCapped) {}

void BandwidthHistory::watch(const std::vector<std::string>& names) {
  std::erase_if(adapters_, [&](const auto& known) {
    return std::ranges::find(names, known.first) == names.end();
  });
  for (const std::string& name : names) {
    const auto [adapter, isNew] = adapters_.try_emplace(name);
    if (isNew && last_) addTo(adapter->second, last_->time, last_->counters.find(name));
  }
}

void BandwidthHistory::add(TimePoint time, const ConnectionMetricsMap& reading) {
  if (!beginSecond(time)) return;
  for (auto& [name, adapter] : adapters_) addTo(adapter, time, reading.find(name));
  last_ = {time, reading};
}

void BandwidthHistory::addFailure(TimePoint time) {
  if (!beginSecond(time)) return;
  for (auto& [name, adapter] : adapters_) addTo(adapter, time, nullptr);
  last_.reset();
}

void BandwidthHistory::interrupt() {
  mustCountAnew_ = true;
  last_.reset();
  for (auto& [name, adapter] : adapters_) {
    adapter.recent.clear();
    adapter.traffic.bandwidthClass.reset();
  }
}

AdapterTraffic BandwidthHistory::trafficOf(std::string_view name) const {
  const auto adapter = adapters_.find(name);
  return adapter == adapters_.end() ? AdapterTraffic{} : adapter->second.traffic;
}

bool BandwidthHistory::beginSecond(TimePoint time) {
  if (!start_) start_ = time;
  std::int64_t second = std::chrono::round<std::chrono::seconds>(time - *start_).count();
  if (std::exchange(mustCountAnew_, false)) {
    second = std::max(second, second_ + 1);
    start_ = time - std::chrono::seconds(second);
  }
  if (second <= second_) return false;
  for (auto& [name, adapter] : adapters_) moveOn(adapter.traffic.minute, second - second_);
  second_ = second;
  return true;
}

void BandwidthHistory::addTo(Adapter& adapter, TimePoint time,
                             const ConnectionMetrics* counters) const {
  std::vector<Reading>& recent = adapter.recent;
  AdapterTraffic& traffic = adapter.traffic;
  traffic.totals.reset();
  if (counters == nullptr) {
    recent.clear();
  } else {
    const Reading now = continued(adapter, time, *counters);
    if (!recent.empty()) traffic.minute.back() = rateBetween(recent.back(), now);
    if (!traffic.now()) recent.clear();
    traffic.totals = now.adjusted;
    recent.push_back(now);
    if (recent.size() > readingsOfClass) recent.erase(recent.begin());
  }
  traffic.bandwidthClass = classOf(adapter);
}

BandwidthHistory::Reading BandwidthHistory::continued(const Adapter& adapter, TimePoint time,
                                                      const ConnectionMetrics& counters) const {
  Reading now{.time = time, .original = counters, .adjusted = counters};
  if (is32bitCapped_ && !adapter.recent.empty()) {
    const Reading& before = adapter.recent.back();
    now.adjusted = carriedForward(counters, before.original, before.adjusted);
  }
  return now;
}

std::optional<ConnectionBandwidthClass> BandwidthHistory::classOf(const Adapter& adapter) const {
  if (adapter.recent.size() < 2) return std::nullopt;
  const Reading& first = adapter.recent.front();
  const Reading& last = adapter.recent.back();
  return analyzer_.evaluate(first.adjusted, last.adjusted, last.time - first.time);
}

}  // namespace lanternfold
