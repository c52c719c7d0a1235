#include "PlatformLinux/Location/PortalConversations.h"

#include <utility>

#include "PlatformLinux/Bus/OwnerChanges.h"

namespace lanternfold {

PortalConversations::PortalConversations(BusThread& thread, PortalSurroundings surroundings,
                                         LearnHandler learned)
    : thread_(thread),
      surroundings_(std::move(surroundings)),
      learned_(std::move(learned)),
      bus_(std::make_shared<MessageBus>()) {}

void PortalConversations::begin() {
  if (state_ != State::idle) return;
  if (!surroundings_.busAddress) {
    busIsLost();
    return;
  }
  state_ = State::connecting;
  // A bus that takes the connection and says nothing would never be given up.
  connectDeadline_ = thread_.after(surroundings_.limits.reply, [this] {
    if (state_ == State::connecting) busIsLost();
  });
  bus_->connect(*surroundings_.busAddress,
                [this](bool isConnected) { takeConnection(isConnected); });
}

void PortalConversations::takeConnection(bool isConnected) {
  if (state_ != State::connecting) return;
  connectDeadline_.reset();
  if (!isConnected) {
    busIsLost();
    return;
  }
  state_ = State::connected;
  bus_->setLostHandler([this] { busIsLost(); });
  ownerChanges_ = bus_->subscribe(ownerChangesOf(portalBusName), [this](GVariant* arguments) {
    ownerHasChanged(newOwnerIn(arguments));
  });
  store_ = std::make_shared<PermissionStoreWatch>(
      bus_, surroundings_.applicationId, surroundings_.limits.reply,
      [this](StoredPermission stored) { learnOfStore(stored); });
  store_->begin();
  lookAtPortal();
  if (!asking_.empty()) beginQuestion();
}

void PortalConversations::ownerHasChanged(const std::string& newOwner) {
  if (newOwner.empty()) {
    if (question_) question_->end(PortalOutcome::vanished);
  } else if (isPortalKnown_ && knowledge_.portal != PortalOutcome::offered) {
    lookAtPortal();
  }
}

void PortalConversations::lookAtPortal() {
  if (look_) return;
  look_ = std::make_shared<PortalSession>(bus_);
  look_->open(surroundings_.limits.reply, [this](PortalOutcome outcome) {
    look_.reset();
    learnOfPortal(outcome);
  });
}

void PortalConversations::learnOfPortal(PortalOutcome outcome) {
  isPortalKnown_ = true;
  knowledge_.portal = outcome;
  if (isStoreKnown_ && learned_) learned_(knowledge_);
}

void PortalConversations::learnOfStore(StoredPermission stored) {
  isStoreKnown_ = true;
  knowledge_.stored = stored;
  if (isPortalKnown_ && learned_) learned_(knowledge_);
}

void PortalConversations::ask(LocationPortal::AnswerHandler handler) {
  asking_.push_back(std::move(handler));
  begin();
  if (state_ == State::over) tell(PortalOutcome::noBus);
  if (state_ == State::connected && !question_) beginQuestion();
}

void PortalConversations::beginQuestion() {
  question_ = std::make_shared<PortalQuestion>(
      thread_, bus_, surroundings_.limits, [this](PortalOutcome outcome) { takeAnswer(outcome); });
  question_->begin();
}

void PortalConversations::takeAnswer(PortalOutcome outcome) {
  // Kept until the return: this is its handler.
  const auto gone = std::exchange(question_, nullptr);
  if (isDecision(outcome)) learnOfPortal(PortalOutcome::offered);
  if (isOutOfReach(outcome)) learnOfPortal(outcome);
  tell(outcome);
}

void PortalConversations::tell(PortalOutcome outcome) {
  for (const auto& handler : std::exchange(asking_, {})) handler(outcome);
}

/// Also when it was never reached.
void PortalConversations::busIsLost() {
  state_ = State::over;
  isStoreKnown_ = true;
  learnOfPortal(PortalOutcome::noBus);
  if (question_) {
    question_->end(PortalOutcome::vanished);
  } else {
    tell(PortalOutcome::noBus);
  }
}

void PortalConversations::end() {
  state_ = State::over;
  learned_ = nullptr;
  connectDeadline_.reset();
  asking_.clear();
  question_.reset();
  look_.reset();
  store_.reset();
  ownerChanges_.reset();
  bus_->close(thread_);
}

}  // namespace lanternfold
