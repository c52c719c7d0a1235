// How a widget turns the entries of its provider into views.
//
// Made by: each widget's body. Read by: the widget's configuration
// (WidgetService/WidgetConfiguration.h).
#pragma once

#include <functional>

#include "ViewTree/View.h"
#include "WidgetService/Widget.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

/// The view of an entry in a widget of that size. Any thread.
template <typename Entry>
using EntryViewMaker = std::function<View(const Entry&, WidgetFamily)>;

template <typename Entry>
struct WidgetContent {
  using Completion = std::function<void(EntryViewMaker<Entry>)>;

  /// Of sample content; of timelines too when nothing has to be found out first.
  EntryViewMaker<Entry> view;
  /// Finds out what the views of one timeline need besides its entries. Begun on the main queue
  /// beside the provider's work; completes exactly once, on the queue that the provider completes
  /// on. Empty when nothing has to be found out.
  std::function<void(const ConfigurationParameters&, Completion)> prepareTimeline = nullptr;
};

}  // namespace lanternfold
