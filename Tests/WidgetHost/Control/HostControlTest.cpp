// The verbs of the session bus over a desk.
#include <nlohmann/json.hpp>

#include "Tests/WidgetHost/DeskWorld.h"
#include "WidgetHost/Control/HostControl.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class HostControlTest : public DeskWorld {
 protected:
  void SetUp() override { startAndSettle(); }
  [[nodiscard]] std::vector<std::string> listedKinds() {
    std::vector<std::string> kinds;
    for (const auto& widget : nlohmann::json::parse(control_.list().value_or(""))) {
      kinds.push_back(widget.at("kind"));
    }
    return kinds;
  }
  template <typename Result>
  static std::string refusalOf(const WidgetControl::Outcome<Result>& outcome) {
    if (outcome) return "done";
    EXPECT_EQ(outcome.error().cause, WidgetControlFailure::Cause::refused);
    return outcome.error().sentence;
  }

  int ends_ = 0;
  HostControl control_{*desk_, [this] { ++ends_; }};
};

TEST_F(HostControlTest, ListsWhatStandsThere) {
  EXPECT_THAT(listedKinds(), ElementsAre("A", "B", "C"));
  const auto first = nlohmann::json::parse(control_.list().value()).front();
  EXPECT_EQ(first.at("id"), "1");
  EXPECT_EQ(first.at("family"), "large");
  EXPECT_EQ(first.at("monitor"), "DP-1");
  EXPECT_EQ(first.at("x"), 1532);
}

TEST_F(HostControlTest, AddsAWidgetAsItWasAskedFor) {
  const auto id = control_.add("A", "small", "eth0");
  ASSERT_TRUE(id);
  const auto card = desk_->card(*id);
  ASSERT_TRUE(card);
  EXPECT_EQ(card->placed.family, WidgetFamily::small);
  EXPECT_EQ(card->placed.configuration.adapter,
            (AdapterParameter{.identifier = "eth0", .display = "eth0"}));
  EXPECT_EQ(stored(), placed());
}

TEST_F(HostControlTest, AddsAWidgetOfItsLargestSizeAndWithoutAnAdapterOtherwise) {
  const auto id = control_.add("A", "", "");
  ASSERT_TRUE(id);
  EXPECT_EQ(desk_->card(*id)->placed.family, WidgetFamily::large);
  EXPECT_EQ(desk_->card(*id)->placed.configuration, ConfigurationParameters{});
}

TEST_F(HostControlTest, RefusesWhatThereIsNot) {
  for (const std::string& refusal :
       {refusalOf(control_.add("Bogus", "", "")), refusalOf(control_.add("A", "big", "")),
        refusalOf(control_.add("B", "small", "")), refusalOf(control_.remove("99")),
        refusalOf(control_.reload("99"))}) {
    EXPECT_THAT(refusal, testing::Not(testing::AnyOf("done", "", HasSubstr("\n"))));
    EXPECT_NE(refusal.back(), '.');
  }
  EXPECT_THAT(listedKinds(), ElementsAre("A", "B", "C"));
}

TEST_F(HostControlTest, RemovesForGood) {
  EXPECT_TRUE(control_.remove("2"));
  EXPECT_THAT(listedKinds(), ElementsAre("A", "C"));
  EXPECT_EQ(stored(), placed());
}

TEST_F(HostControlTest, ReloadsOneOrAll) {
  EXPECT_TRUE(control_.reload("2"));
  EXPECT_THAT(asked(), ElementsAre("timeline B medium"));
  EXPECT_TRUE(control_.reload(""));
  EXPECT_THAT(asked(), ElementsAre("timeline A large", "timeline B medium", "timeline C small"));
}

TEST_F(HostControlTest, QuitEndsTheProgramAndChangesNothing) {
  EXPECT_TRUE(control_.quit());
  EXPECT_EQ(ends_, 1);
  EXPECT_THAT(listedKinds(), ElementsAre("A", "B", "C"));
  EXPECT_THAT(asked(), IsEmpty());
}

}  // namespace
}  // namespace lanternfold
