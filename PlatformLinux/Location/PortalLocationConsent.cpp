#include "PlatformLinux/Location/PortalLocationConsent.h"

#include <utility>

namespace lanternfold {
namespace {

std::string notRecordedLine(const ConsentRecordError& error) {
  return "the answer of the location portal could not be recorded and does not count: " +
         (error.sentence.empty() ? error.error.message() : error.sentence);
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
  portal_->setChangeHandler([this] { portalHasChanged(); });
}

PortalLocationConsent::~PortalLocationConsent() = default;

std::int32_t PortalLocationConsent::authorizationStatus() const {
  const ConsentDecision recorded = record_.decision();
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

void PortalLocationConsent::portalHasChanged() {
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
  switch (portalRequestFor(record_.decision(), portal_->knowledge())) {
    case PortalRequest::none:
      return;
    case PortalRequest::verification:
      if (hasVerified_.exchange(true)) return;
      break;
    case PortalRequest::question:
      break;
  }
  portal_->ask([this](PortalOutcome outcome) {
    const Answer answer = take(outcome);
    if (answer.notRecorded) {
      surroundings_.log.line(notRecordedLine(*answer.notRecorded));
    } else if (!isDecision(outcome)) {
      surroundings_.log.line(sentenceOf(outcome));
    }
  });
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
  // The same answer again changes nothing, and need not be written.
  if (record_.decision() == decision) return answer;
  if (auto recorded = record_.record(decision); !recorded) answer.notRecorded = recorded.error();
  return answer;
}

void PortalLocationConsent::say(std::string_view line) const {
  const std::lock_guard lock(mutex_);
  if (line == lastLine_) return;
  lastLine_ = line;
  if (!lastLine_.empty()) surroundings_.log.line(lastLine_);
}

}  // namespace lanternfold
