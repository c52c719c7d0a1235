// A desk, an extension that a test directs, and an observer that writes down what it is told.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Support/FakeWidgetExtension.h"
#include "Tests/WidgetHost/DeskMachine.h"
#include "ViewTree/View.h"

namespace lanternfold {

class RecordingDeskObserver final : public WidgetDeskObserver {
 public:
  void cardAdded(const std::string& id) override { told_.push_back("added " + id); }
  void cardChanged(const std::string& id) override { told_.push_back("changed " + id); }
  void cardRemoved(const std::string& id) override { told_.push_back("removed " + id); }
  void catalogueChanged() override { told_.emplace_back("catalogue"); }

  /// Since the last call.
  [[nodiscard]] std::vector<std::string> takeTold() { return std::exchange(told_, {}); }

 private:
  std::vector<std::string> told_;
};

/// The widgets "A" (small to large), "B" (medium) and "C" (small).
inline std::vector<WidgetDescription> threeWidgets() {
  using enum WidgetFamily;
  return {{.kind = "A", .displayName = "Alpha", .supportedFamilies = {small, medium, large}},
          {.kind = "B", .displayName = "Beta", .supportedFamilies = {medium}},
          {.kind = "C", .displayName = "Gamma", .supportedFamilies = {small}}};
}

inline std::vector<MonitorArea> oneMonitor() {
  return {{.name = "DP-1",
           .size = {1920, 1080},
           .workArea = {.origin = {}, .size = {1920, 1080}},
           .isPrimary = true}};
}

/// What a screen reader would say of a view: enough to tell cards apart.
inline std::string said(const View& view) { return accessibleDescription(view, "now"); }

class DeskWorld : public testing::Test, protected DeskMachine {
 protected:
  DeskWorld() {
    extension_.setWidgets(threeWidgets());
    makeDesk();
  }
  ~DeskWorld() override { desk_.reset(); }

  void makeDesk() { DeskMachine::makeDesk(extension_, observer_, options_); }

  /// The three widgets as at the first start, with their first timelines.
  void startAndSettle() {
    desk_->monitorsChanged(oneMonitor());
    desk_->start();
    settle();
  }
  void settle() {
    dispatch_.runReady();
    (void)extension_.takeAsked();
    (void)observer_.takeTold();
  }
  /// What was asked after everything that is due.
  std::vector<std::string> asked() {
    dispatch_.runReady();
    return extension_.takeAsked();
  }
  std::vector<std::string> askedWithin(std::chrono::nanoseconds time) {
    dispatch_.advance(time);
    return extension_.takeAsked();
  }
  std::vector<std::string> told() {
    dispatch_.runReady();
    return observer_.takeTold();
  }
  [[nodiscard]] std::string saidBy(const std::string& id) const {
    const auto card = desk_->card(id);
    return card ? said(card->view) : "no card";
  }

  WidgetDesk::Options options_{.dates = {.locale = "en", .timeZone = "UTC"}};
  FakeWidgetExtension extension_{dispatch_.mainQueue(), clock_};
  RecordingDeskObserver observer_;
};

}  // namespace lanternfold
