#include "PlatformLinux/Location/PortalLocationConsent.h"

#include <utility>

namespace lanternfold {
namespace {

std::string reasonOf(const ConsentRecordError& error) {
  return error.sentence.empty() ? error.error.message() : error.sentence;
}

std::string consentNotRecordedLine(const ConsentRecordError& error) {
  return "the consent of the location portal could not be recorded and does not count: " +
         reasonOf(error);
}

std::string refusalNotRecordedLine(const ConsentRecordError& error) {
  return "the refusal of the location portal could not be recorded and counts for this program "
         "only: " +
         reasonOf(error);
}

}  // namespace

class PortalLocationConsent::Manager final : public LocationManager {
 public:
  Manager(PortalLocationConsent& consent, ChangeHandler didChangeAuthorization)
      : consent_(consent),
        watch_(
            consent.surroundings_, [&consent] { return consent.authorizationStatus(); },
            std::move(didChangeAuthorization)) {}

  [[nodiscard]] std::weak_ptr<StatusComparison> comparison() const { return watch_.comparison(); }

  // The portal knows only one kind of consent.
  void requestWhenInUseAuthorization() override { consent_.request(); }
  void requestAlwaysAuthorization() override { consent_.request(); }

 private:
  PortalLocationConsent& consent_;
  const ConsentWatch watch_;
};

PortalLocationConsent::PortalLocationConsent(const ConsentSurroundings& surroundings,
                                             ConsentRecord& record,
                                             std::unique_ptr<LocationPortal> portal)
    : surroundings_(surroundings), record_(record), portal_(std::move(portal)) {
  portal_->setChangeHandler([this] { compareAll(); });
}

PortalLocationConsent::~PortalLocationConsent() = default;

std::int32_t PortalLocationConsent::authorizationStatus() const {
  ConsentDecision recorded = record_.decision();
  if (isRefusedSince(recorded)) recorded = ConsentDecision::denied;
  // What the user withholds himself needs nobody else's word.
  if (recorded == ConsentDecision::denied) return sandboxedStatus(recorded, {});
  const PortalKnowledge knowledge = portal_->knowledge();
  say(knowledge.portal == PortalOutcome::offered ? std::string_view()
                                                 : sentenceOf(knowledge.portal));
  return sandboxedStatus(recorded, knowledge);
}

std::unique_ptr<LocationManager> PortalLocationConsent::makeLocationManager(
    ChangeHandler didChangeAuthorization) {
  auto manager = std::make_unique<Manager>(*this, std::move(didChangeAuthorization));
  const auto comparison = manager->comparison();
  {
    const std::lock_guard lock(mutex_);
    std::erase_if(comparisons_, [](const auto& each) { return each.expired(); });
    comparisons_.push_back(comparison);
  }
  // What the portal told before the comparison stood in the list.
  if (const auto living = comparison.lock()) living->compare();
  return manager;
}

void PortalLocationConsent::compareAll() {
  std::vector<std::weak_ptr<StatusComparison>> comparisons;
  {
    const std::lock_guard lock(mutex_);
    comparisons = comparisons_;
  }
  for (const auto& comparison : comparisons) {
    if (const auto living = comparison.lock()) living->compare();
  }
}

void PortalLocationConsent::request() {
  const ConsentDecision recorded = record_.decision();
  if (!mustAsk(recorded)) return;
  portal_->ask([this, recorded](PortalOutcome outcome) {
    // The user has decided otherwise while the question was open.
    if (outcome == PortalOutcome::granted && record_.decision() != recorded) return;
    const Answer answer = take(outcome);
    if (answer.notRecorded && outcome == PortalOutcome::granted) {
      surroundings_.log.line(consentNotRecordedLine(*answer.notRecorded));
    } else if (!isDecision(outcome)) {
      surroundings_.log.line(sentenceOf(outcome));
    }
  });
}

bool PortalLocationConsent::mustAsk(ConsentDecision recorded) {
  const PortalKnowledge knowledge = portal_->knowledge();
  // A refusal that only this program knows of may have become another answer.
  if (isRefusedSince(recorded)) return knowledge.portal == PortalOutcome::offered;
  switch (portalRequestFor(recorded, knowledge)) {
    case PortalRequest::none:
      return false;
    case PortalRequest::question:
      return true;
    case PortalRequest::verification:
      break;
  }
  return !hasVerified_.exchange(true);
}

void PortalLocationConsent::ask(AnswerHandler handler) {
  portal_->ask([this, handler = std::move(handler)](PortalOutcome outcome) {
    surroundings_.dispatch.mainQueue().async(
        [handler, answer = take(outcome)] { handler(answer); });
  });
}

/// On the portal's thread.
ConsentAuthority::Answer PortalLocationConsent::take(PortalOutcome outcome) {
  Answer answer{.outcome = outcome, .notRecorded = {}};
  if (!isDecision(outcome)) return answer;
  hasVerified_ = true;
  const auto decision = outcome == PortalOutcome::granted ? ConsentDecision::authorizedWhenInUse
                                                          : ConsentDecision::denied;
  const ConsentDecision former = record_.decision();
  // The same answer again changes nothing, and need not be written.
  if (former != decision) {
    if (auto recorded = record_.record(decision); !recorded) answer.notRecorded = recorded.error();
  }
  const bool isKeptHere = answer.notRecorded && outcome == PortalOutcome::refused;
  keepRefusal(isKeptHere ? std::optional(former) : std::nullopt);
  if (isKeptHere) surroundings_.log.line(refusalNotRecordedLine(*answer.notRecorded));
  return answer;
}

/// No file changes with it, so that the managers have to be told.
void PortalLocationConsent::keepRefusal(std::optional<ConsentDecision> refused) {
  {
    const std::lock_guard lock(mutex_);
    if (std::exchange(refused_, refused) == refused) return;
  }
  compareAll();
}

bool PortalLocationConsent::isRefusedSince(ConsentDecision recorded) const {
  const std::lock_guard lock(mutex_);
  return refused_ == recorded;
}

void PortalLocationConsent::say(std::string_view line) const {
  const std::lock_guard lock(mutex_);
  if (line == lastLine_) return;
  lastLine_ = line;
  if (!lastLine_.empty()) surroundings_.log.line(lastLine_);
}

}  // namespace lanternfold
