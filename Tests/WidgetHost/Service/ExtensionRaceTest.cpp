// Questions, answers, crashes, cancellations and time, at moments that a seed draws: whatever
// happens, each question completes once.
#include <array>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/WidgetHost/Service/ClientWorld.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

class ExtensionRace {
 public:
  explicit ExtensionRace(std::uint64_t seed) : random_(seed), world_(seed) {}

  void run() {
    for (int step = 0; step < 300; ++step) {
      act();
      if (draw(3) == 0) runSome();
    }
    comeToRest();
  }

  /// How often each end of a question was met.
  std::map<std::string, int> ends() {
    std::map<std::string, int> ends;
    for (const auto question : asked_) ++ends[world_.outcomeOf(question)];
    return ends;
  }
  /// After ten minutes without a question.
  bool isLeftAlone() { return !world_.programs.isHeld() && world_.dispatch.waitingWorks() == 0; }

 private:
  std::uint64_t draw(std::uint64_t bound) { return random_() % bound; }

  void act() {
    using Action = void (ExtensionRace::*)();
    constexpr std::array<Action, 16> actions{
        &ExtensionRace::ask,       &ExtensionRace::ask,       &ExtensionRace::ask,
        &ExtensionRace::ask,       &ExtensionRace::answer,    &ExtensionRace::answer,
        &ExtensionRace::answer,    &ExtensionRace::answer,    &ExtensionRace::cancel,
        &ExtensionRace::letTimeGo, &ExtensionRace::letTimeGo, &ExtensionRace::letTimeGo,
        &ExtensionRace::end,       &ExtensionRace::misbehave, &ExtensionRace::changeSystem,
        &ExtensionRace::tellIt};
    (this->*actions[draw(actions.size())])();
  }

  void ask() {
    asked_.push_back(world_.ask(draw(5) == 0 ? WidgetFamily::large : WidgetFamily::small));
  }
  void cancel() {
    if (!asked_.empty()) world_.client->cancel(asked_[draw(asked_.size())]);
  }
  /// One of all that was ever asked for, in whatever order, now and then twice.
  void answer() {
    for (std::string& line : world_.programs.takeLines()) heard_.push_back(std::move(line));
    if (heard_.empty()) return;
    const std::size_t index = draw(heard_.size());
    const HostMessage message = parseHostMessage(heard_[index]);
    if (draw(4) != 0) heard_.erase(heard_.begin() + static_cast<std::ptrdiff_t>(index));
    if (const auto* const request = std::get_if<ServiceRequest>(&message)) {
      world_.programs.say(LampAnswers::lineOf(*request));
    }
  }
  void letTimeGo() { world_.dispatch.advance(std::chrono::milliseconds(draw(20'000))); }
  void end() {
    if (draw(2) == 0) return world_.programs.end({.exitStatus = static_cast<int>(draw(2))});
    world_.programs.end({.exitStatus = std::nullopt, .signal = 11});
  }
  void misbehave() {
    switch (draw(4)) {
      case 0:
        return world_.programs.say("no message");
      case 1:
        return world_.programs.closeSocket();
      case 2:
        return world_.programs.setReading(false);
      default:
        if (world_.programs.isHeld()) world_.programs.setStubborn();
    }
  }
  void changeSystem() {
    if (draw(2) == 0) return world_.client->tryAgain();
    world_.programs.setLaunchError(
        draw(4) == 0 ? std::make_error_code(std::errc::resource_unavailable_try_again)
                     : std::error_code());
  }
  void tellIt() {
    if (draw(2) == 0) return world_.client->tellLocationStatus(static_cast<int>(draw(5)));
    world_.programs.say(locationRequestLine(draw(2) == 0));
  }
  void runSome() {
    for (std::uint64_t work = draw(6); work > 0 && world_.dispatch.runOne(); --work) {
    }
  }

  void comeToRest() {
    world_.programs.setLaunchError({});
    world_.dispatch.advance(10min);
  }

  std::mt19937_64 random_;
  ClientWorld world_;
  std::vector<ClientWorld::Question> asked_;
  std::vector<std::string> heard_;
};

TEST(ExtensionRaceTest, EachQuestionCompletesOnce) {
  std::map<std::string, int> ends;
  for (std::uint64_t seed = 1; seed <= 100; ++seed) {
    ExtensionRace race(seed);
    race.run();
    EXPECT_TRUE(race.isLeftAlone()) << "seed " << seed;
    for (const auto& [end, count] : race.ends()) ends[end] += count;
    ASSERT_EQ(ends["waits"] + ends["completed more than once"], 0) << "seed " << seed;
  }
  for (const std::string end :
       {"answered", "refused", "cancelled", "gone", "timed out", "too often"}) {
    EXPECT_GT(ends[end], 0) << "no question has ended so: " << end;
  }
}

}  // namespace
}  // namespace lanternfold
