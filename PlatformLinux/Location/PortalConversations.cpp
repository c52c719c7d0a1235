#include "PlatformLinux/Location/PortalConversations.h"

#include <system_error>
#include <thread>
#include <utility>

#include "PlatformLinux/System/ThreadTraits.h"

namespace lanternfold {

PortalConversations::PortalConversations(EventLoop& loop, PortalSurroundings surroundings,
                                         LearnHandler learned)
    : loop_(loop), surroundings_(std::move(surroundings)), learned_(std::move(learned)) {
  connecting_->loop = &loop;
}

void PortalConversations::begin() {
  if (state_ != State::idle) return;
  state_ = State::connecting;
  if (!surroundings_.busAddress) {
    connected(nullptr);
    return;
  }
  try {
    std::thread([connecting = connecting_, address = *surroundings_.busAddress,
                 weak = weak_from_this()] {
      connect(*connecting, address, weak);
    }).detach();
  } catch (const std::system_error&) {
    connected(nullptr);
  }
}

/// On a thread of its own: the library's greeting waits for the bus, however long it takes.
void PortalConversations::connect(Connecting& connecting, const std::string& address,
                                  std::weak_ptr<PortalConversations> conversations) {
  nameCurrentThread("session-bus");
  std::unique_ptr<sdbus::IConnection> connection;
  try {
    connection = sdbus::createSessionBusConnectionWithAddress(address);
  } catch (const sdbus::Error&) {
    connection = nullptr;
  }
  const std::lock_guard lock(connecting.mutex);
  if (connecting.loop == nullptr) return;
  connecting.loop->post(
      [weak = std::move(conversations), connection = std::move(connection)]() mutable {
        if (const auto living = weak.lock()) living->connected(std::move(connection));
      });
}

void PortalConversations::connected(std::unique_ptr<sdbus::IConnection> connection) {
  if (state_ != State::connecting) return;
  try {
    if (connection) {
      connection->setMethodCallTimeout(surroundings_.limits.reply);
      bus_ = std::make_shared<BusOnLoop>(loop_, std::move(connection), [this] { busIsLost(); });
      followOwner();
    }
  } catch (const sdbus::Error&) {
    bus_.reset();
  }
  if (!bus_) {
    busIsLost();
    return;
  }
  state_ = State::connected;
  store_ = std::make_shared<PermissionStoreWatch>(
      bus_, surroundings_.applicationId, surroundings_.limits.reply,
      [this](StoredPermission stored) { learnOfStore(stored); });
  store_->begin();
  lookAtPortal();
  if (!asking_.empty()) beginQuestion();
}

void PortalConversations::followOwner() {
  const std::string match =
      "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
      "member='NameOwnerChanged',arg0='" +
      std::string(portalBusName) + "'";
  ownerChanges_ = bus_->connection().addMatch(
      match, [this](sdbus::Message& message) { ownerHasChanged(message); });
}

void PortalConversations::ownerHasChanged(sdbus::Message& message) {
  std::string newOwner;
  try {
    std::string name;
    std::string oldOwner;
    message >> name >> oldOwner >> newOwner;
  } catch (const sdbus::Error&) {
    return;
  }
  if (newOwner.empty()) {
    if (question_) question_->end(PortalOutcome::vanished);
  } else if (knowledge_.portal != PortalOutcome::offered) {
    lookAtPortal();
  }
}

void PortalConversations::lookAtPortal() {
  if (look_ || !bus_) return;
  look_ = std::make_shared<PortalSession>(bus_);
  look_->open(surroundings_.limits.reply, [this](PortalOutcome outcome) {
    loop_.post([gone = std::move(look_)] {});
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
      bus_, surroundings_.limits, [this](PortalOutcome outcome) { takeAnswer(outcome); });
  question_->begin();
}

/// Inside a handler of the question, which therefore goes a little later.
void PortalConversations::takeAnswer(PortalOutcome outcome) {
  loop_.post([weak = weak_from_this(), gone = question_] {
    const auto living = weak.lock();
    if (!living || living->question_ != gone) return;
    living->question_.reset();
    if (living->state_ == State::connected && !living->asking_.empty()) living->beginQuestion();
  });
  if (isDecision(outcome)) learnOfPortal(PortalOutcome::offered);
  if (isOutOfReach(outcome)) learnOfPortal(outcome);
  tell(outcome);
}

void PortalConversations::tell(PortalOutcome outcome) {
  for (const auto& handler : std::exchange(asking_, {})) handler(outcome);
}

/// Also when it was never reached. What hangs on it goes at the end.
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
  {
    const std::lock_guard lock(connecting_->mutex);
    connecting_->loop = nullptr;
  }
  state_ = State::over;
  learned_ = nullptr;
  asking_.clear();
  question_.reset();
  look_.reset();
  store_.reset();
  ownerChanges_.reset();
  if (bus_) bus_->close();
  bus_.reset();
}

}  // namespace lanternfold
