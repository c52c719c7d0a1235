#include "HostProgram/Consent/WifiNames.h"

#include <utility>

#include "Support/FileRemedy.h"

namespace lanternfold {
namespace {

bool allows(ConsentDecision decision) {
  return decision == ConsentDecision::authorizedAlways ||
         decision == ConsentDecision::authorizedWhenInUse;
}

std::string sentenceOf(const ConsentRecordError& error, const ConsentRecord& record) {
  return error.sentence.empty() ? cannotWrite(record.file(), error.error) : error.sentence;
}

std::expected<void, std::string> resultOf(const ConsentAuthority::Answer& answer,
                                          const ConsentRecord& record) {
  if (answer.outcome != PortalOutcome::granted) {
    return std::unexpected(std::string(sentenceOf(answer.outcome)));
  }
  if (answer.notRecorded) return std::unexpected(sentenceOf(*answer.notRecorded, record));
  return {};
}

}  // namespace

WifiNames::WifiNames(Surroundings surroundings)
    : surroundings_(std::move(surroundings)),
      manager_(surroundings_.consent.makeLocationManager([this] { tellChange(); })),
      told_(surroundings_.consent.authorizationStatus()) {
  surroundings_.extension.tellLocationStatus(told_);
  surroundings_.extension.setLocationRequestHandler([this](bool) { request(); });
}

WifiNames::~WifiNames() { surroundings_.extension.setLocationRequestHandler({}); }

ConsentDecision WifiNames::decision() const {
  const std::int32_t status = surroundings_.consent.authorizationStatus();
  for (const ConsentDecision decision : {ConsentDecision::denied, ConsentDecision::authorizedAlways,
                                         ConsentDecision::authorizedWhenInUse}) {
    if (status == static_cast<std::int32_t>(decision)) return decision;
  }
  return ConsentDecision::notDetermined;
}

void WifiNames::networkPathChanged() {
  if (isWanted_) request();
}

/// Who closes the dialog without a word is not asked again before the next start. Names that nobody
/// can see are not asked about.
void WifiNames::request() {
  constexpr auto undecided = static_cast<std::int32_t>(ConsentDecision::notDetermined);
  if (hasAsked_ || surroundings_.consent.authorizationStatus() != undecided) return;
  isWanted_ = !surroundings_.hasWifi();
  if (isWanted_) return;
  hasAsked_ = true;
  if (surroundings_.authority == nullptr) {
    surroundings_.askUser();
  } else {
    surroundings_.authority->ask([](const ConsentAuthority::Answer&) {});
  }
}

void WifiNames::decide(ConsentDecision decision, const Decided& decided) {
  if (allows(decision) && surroundings_.authority != nullptr) {
    surroundings_.authority->ask(
        [&record = surroundings_.record, decided](const ConsentAuthority::Answer& answer) {
          decided(resultOf(answer, record));
        });
    return;
  }
  decided(record(decision));
}

std::expected<void, std::string> WifiNames::record(ConsentDecision decision) {
  const auto recorded = surroundings_.record.record(decision);
  if (!recorded) return std::unexpected(sentenceOf(recorded.error(), surroundings_.record));
  return {};
}

void WifiNames::tellChange() {
  const std::int32_t status = surroundings_.consent.authorizationStatus();
  const std::int32_t former = std::exchange(told_, status);
  if (former == status) return;
  surroundings_.extension.tellLocationStatus(status);
  // Others than the decisions are allowed nothing.
  surroundings_.changed(allows(static_cast<ConsentDecision>(former)) &&
                        !allows(static_cast<ConsentDecision>(status)));
}

}  // namespace lanternfold
