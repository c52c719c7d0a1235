// A timeline on its way from a provider to the host: it is drawn as soon as both its entries and
// the views' needs are there.
//
// Made by: the widget's configuration, one for each request.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "WidgetService/Timeline.h"
#include "WidgetService/Widget.h"
#include "WidgetService/WidgetContent.h"

namespace lanternfold {

/// One queue: that which the provider and the content complete on. What comes a second time is
/// dropped, so that the host hears at most once.
template <typename Entry>
class DrawnTimeline {
 public:
  DrawnTimeline(WidgetFamily family, Widget::TimelineCompletion completion)
      : family_(family), completion_(std::move(completion)) {}

  void receive(Timeline<Entry> timeline) {
    if (!timeline_) timeline_ = std::move(timeline);
    completeWhenReady();
  }

  void receive(EntryViewMaker<Entry> makeView) {
    if (!makeView_) makeView_ = std::move(makeView);
    completeWhenReady();
  }

 private:
  void completeWhenReady() {
    if (!timeline_ || !makeView_ || !completion_) return;
    Timeline<ViewEntry> drawn{.entries = {}, .policy = timeline_->policy};
    drawn.entries.reserve(timeline_->entries.size());
    for (const Entry& entry : timeline_->entries) {
      drawn.entries.push_back({.date = entry.date, .view = (*makeView_)(entry, family_)});
    }
    std::exchange(completion_, nullptr)(std::move(drawn));
  }

  WidgetFamily family_;
  Widget::TimelineCompletion completion_;  ///< empty once called
  std::optional<Timeline<Entry>> timeline_;
  std::optional<EntryViewMaker<Entry>> makeView_;
};

}  // namespace lanternfold
