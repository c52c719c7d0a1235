#include "HostProgram/Consent/ConsentQuestion.h"

#include <array>

namespace lanternfold {
namespace {

/// In the order of the buttons.
constexpr std::array<ConsentDecision, 3> decisions = {ConsentDecision::denied,
                                                      ConsentDecision::authorizedWhenInUse,
                                                      ConsentDecision::authorizedAlways};

}  // namespace

Question consentQuestion(const StringTable& strings) {
  return {.title = strings.localized("Wi-Fi names"),
          .text = strings.localized("Show the names of Wi-Fi networks?"),
          .explanation = strings.localized(
              "A network's name can tell where you are, also to those who see a picture of your "
              "screen. You can change your decision in the menu of every widget."),
          .answers = {strings.localized("Don't allow"), strings.localized("While in use"),
                      strings.localized("Always")},
          .defaultAnswer = 0};
}

ConsentDecision consentOfAnswer(std::size_t answer) {
  return answer < decisions.size() ? decisions.at(answer) : ConsentDecision::notDetermined;
}

}  // namespace lanternfold
