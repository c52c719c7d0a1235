// What both sides of the extension's seam promise to the desk.
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Support/FakeWidgetExtension.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"
#include "Tests/WidgetHost/Service/ClientWorld.h"

namespace lanternfold {
namespace {

class FakeExtensionWorld {
 public:
  FakeExtensionWorld() { extension_.setWidgets({lamp}); }

  [[nodiscard]] WidgetExtension& extension() { return extension_; }
  void runReady() { dispatch_.runReady(); }
  void setSilent(bool silent) { extension_.setSilent(silent); }
  void failTooOften() { extension_.failTooOften(); }
  void requestLocation() { extension_.requestLocation(/*whenInUse=*/true); }

 private:
  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeWidgetExtension extension_{dispatch_.mainQueue(), clock_};
};

/// The client, and an extension that answers unless it is silent.
class ClientExtensionWorld {
 public:
  [[nodiscard]] WidgetExtension& extension() { return *world_.client; }
  void runReady() {
    do {
      world_.dispatch.runReady();
    } while (!isSilent_ && world_.answerAll() > 0);
    world_.dispatch.runReady();
  }
  void setSilent(bool silent) { isSilent_ = silent; }
  void failTooOften() {
    while (!world_.client->hasFailedTooOften()) {
      world_.client->list([](const auto& /*answer*/) {});
      world_.dispatch.advance(std::chrono::seconds(10));
      world_.crash();
    }
  }
  void requestLocation() { world_.programs.say(locationRequestLine(/*whenInUse=*/true)); }

 private:
  ClientWorld world_;
  bool isSilent_ = false;
};

template <typename World>
class WidgetExtensionContract : public testing::Test {
 protected:
  template <typename Answer>
  WidgetExtension::Completion<Answer> heard() {
    return [this](const std::expected<Answer, ExtensionFailure>& answer) {
      outcomes_.push_back(answer ? std::nullopt : std::optional(answer.error()));
    };
  }
  WidgetExtension::Question askForLamp(WidgetFamily family = WidgetFamily::small) {
    return world_.extension().timeline("Lamp", {.family = family}, heard<Timeline<ViewEntry>>());
  }

  using Outcomes = std::vector<std::optional<ExtensionFailure>>;  ///< none for an answer
  Outcomes outcomes_;
  World world_;
};

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, FakeExtensionWorld> ? "Fake" : "Client";
  }
};

using Worlds = testing::Types<FakeExtensionWorld, ClientExtensionWorld>;
TYPED_TEST_SUITE(WidgetExtensionContract, Worlds, WorldNames);

TYPED_TEST(WidgetExtensionContract, AnswersEveryQuestionLater) {
  WidgetExtension& extension = this->world_.extension();
  std::vector<WidgetDescription> widgets;
  extension.list([&](const auto& answer) { widgets = answer.value(); });
  extension.sample(WidgetExtension::SampleKind::placeholder, "Lamp", {},
                   this->template heard<ViewEntry>());
  this->askForLamp();
  extension.perform("RefreshAppIntent", this->template heard<void>());
  EXPECT_TRUE(widgets.empty());
  EXPECT_TRUE(this->outcomes_.empty());
  this->world_.runReady();
  EXPECT_EQ(widgets, std::vector{lamp});
  EXPECT_EQ(this->outcomes_, (decltype(this->outcomes_)(3)));
}

TYPED_TEST(WidgetExtensionContract, RefusesAFamilyThatAWidgetLacks) {
  this->askForLamp(WidgetFamily::large);
  this->world_.runReady();
  EXPECT_EQ(this->outcomes_, (decltype(this->outcomes_){ExtensionFailure::refused}));
}

TYPED_TEST(WidgetExtensionContract, WhatIsCancelledCompletesOnceAndLater) {
  this->world_.setSilent(true);
  const auto question = this->askForLamp();
  this->world_.runReady();
  this->world_.extension().cancel(question);
  EXPECT_TRUE(this->outcomes_.empty());
  this->world_.extension().cancel(question);
  this->world_.setSilent(false);
  this->world_.runReady();
  EXPECT_EQ(this->outcomes_, (decltype(this->outcomes_){ExtensionFailure::cancelled}));
}

TYPED_TEST(WidgetExtensionContract, CancellingWhatIsAnsweredOrWasNeverAskedDoesNothing) {
  const auto question = this->askForLamp();
  this->world_.runReady();
  this->world_.extension().cancel(question);
  this->world_.extension().cancel(0);
  this->world_.extension().cancel(12345);
  this->world_.runReady();
  EXPECT_EQ(this->outcomes_, (decltype(this->outcomes_)(1)));
}

TYPED_TEST(WidgetExtensionContract, FailedTooOftenItAnswersNothingUntilItIsTriedAgain) {
  WidgetExtension& extension = this->world_.extension();
  std::vector<bool> changes;
  extension.setFailedTooOftenHandler([&] { changes.push_back(extension.hasFailedTooOften()); });
  this->world_.failTooOften();
  this->world_.runReady();
  this->outcomes_.clear();
  this->askForLamp();
  EXPECT_TRUE(this->outcomes_.empty());
  this->world_.runReady();
  EXPECT_EQ(this->outcomes_, (decltype(this->outcomes_){ExtensionFailure::tooOften}));
  extension.tryAgain();
  this->askForLamp();
  this->world_.runReady();
  EXPECT_EQ(this->outcomes_.back(), std::nullopt);
  EXPECT_EQ(changes, (std::vector{true, false}));
}

TYPED_TEST(WidgetExtensionContract, TellsWhenTheExtensionWantsConsent) {
  std::vector<bool> asked;
  this->world_.extension().setLocationRequestHandler(
      [&](bool whenInUse) { asked.push_back(whenInUse); });
  this->askForLamp();
  this->world_.runReady();
  this->world_.requestLocation();
  this->world_.runReady();
  EXPECT_EQ(asked, std::vector{true});
}

}  // namespace
}  // namespace lanternfold
