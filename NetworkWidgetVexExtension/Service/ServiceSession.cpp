#include "NetworkWidgetVexExtension/Service/ServiceSession.h"

#include <utility>
#include <variant>

#include "WidgetService/ServiceAnswer.h"

namespace lanternfold {
namespace {

bool isTimeline(const ServiceCall& call) {
  const auto* entry = std::get_if<EntryCall>(&call);
  return entry != nullptr && entry->entry == EntryCall::Kind::timeline;
}

}  // namespace

ServiceSession::ServiceSession(Surroundings surroundings)
    : surroundings_(std::move(surroundings)),
      lines_(longestServiceLine, {.line = [this](std::string_view line) { take(line); },
                                  .tooLong =
                                      [this] {
                                        refuse(nullptr, ServiceErrorCode::invalidRequest,
                                               "a line is longer than 4 MiB");
                                      }}) {}

ServiceSession::~ServiceSession() = default;

void ServiceSession::start() {
  surroundings_.stream.start({.received = [this](std::string_view bytes) { lines_.take(bytes); },
                              .ended = [this](ByteStream::End end) { hostEnded(end); }});
  lastRequest_ = surroundings_.clock.steadyNow();
  watchForSilence();
}

void ServiceSession::requestLocation(bool whenInUse) { send(locationRequestLine(whenInUse)); }

void ServiceSession::take(std::string_view line) {
  if (hasEnded_) return;
  std::visit([this](const auto& message) { handle(message); }, parseHostMessage(line));
}

void ServiceSession::handle(const ServiceRequest& request) {
  if (isLeaving_) {
    return refuse(request.id, ServiceErrorCode::busy, "the extension is about to end");
  }
  lastRequest_ = surroundings_.clock.steadyNow();
  if (pending_.contains(request.id)) {
    // With the id, this would look like the answer to the other request.
    return refuse(nullptr, ServiceErrorCode::invalidRequest,
                  "the id is that of a request that is not answered yet");
  }
  const auto pending = std::make_shared<const Pending>(Pending{request.id, request.call});
  pending_.emplace(request.id, pending);
  if (!isTimeline(request.call)) return begin(pending);
  std::erase_if(waiting_, [](const auto& each) { return each.expired(); });
  const std::size_t free = underWay_ < mostAtOnce ? mostAtOnce - underWay_ : 0;
  if (waiting_.size() < free + mostWaiting) {
    waiting_.push_back(pending);
    return makeTimelinesSoon();
  }
  pending_.erase(request.id);
  refuse(request.id, ServiceErrorCode::busy, "too many timelines are asked for at once");
}

void ServiceSession::handle(const CancelNotification& notification) {
  pending_.erase(notification.id);
  endWhenAnswered();
}

void ServiceSession::handle(const LocationNotification& notification) {
  surroundings_.locationChanged(notification.status);
}

void ServiceSession::handle(const IgnoredNotification&) {}

void ServiceSession::handle(const RefusedMessage& message) {
  refuse(message.id, message.error.code, message.error.message);
}

void ServiceSession::begin(const PendingRequest& request) {
  surroundings_.responder.respond(
      request->call, [living = std::weak_ptr(self_),
                      request = std::weak_ptr(request)](const WidgetResponder::Answer& answer) {
        if (const auto self = living.lock()) (*self)->answer(request, answer);
      });
}

/// A timeline may keep the queue busy when it is begun. Between two of them everything else has its
/// turn: what the host says next, a cancellation, the end.
void ServiceSession::makeTimelinesSoon() {
  if (hasEnded_ || waiting_.empty() || underWay_ >= mostAtOnce) return;
  if (std::exchange(isMakingSoon_, true)) return;
  surroundings_.mainQueue.async([living = std::weak_ptr(self_)] {
    const auto self = living.lock();
    if (!self) return;
    (*self)->isMakingSoon_ = false;
    if (!(*self)->hasEnded_) (*self)->makeNextTimeline();
    (*self)->makeTimelinesSoon();
  });
}

void ServiceSession::makeNextTimeline() {
  while (underWay_ < mostAtOnce && !waiting_.empty()) {
    const PendingRequest next = waiting_.front().lock();
    waiting_.pop_front();
    if (next) return makeTimeline(next);
  }
}

void ServiceSession::makeTimeline(const PendingRequest& request) {
  const auto slot = std::make_shared<UnderWay>(UnderWay{surroundings_.clock.steadyNow()});
  ++underWay_;
  surroundings_.responder.respond(request->call,
                                  [living = std::weak_ptr(self_), request = std::weak_ptr(request),
                                   slot](const WidgetResponder::Answer& answer) {
                                    const auto self = living.lock();
                                    if (!self) return;
                                    (*self)->answer(request, answer);
                                    if (std::exchange(slot->isOver, true)) return;
                                    --(*self)->underWay_;
                                    (*self)->makeTimelinesSoon();
                                  });
  if (slot->isOver) return;
  begun_.push_back(slot);
  if (begun_.size() == 1) giveUpOldTimelines();
}

/// Those that never become complete make room for others.
void ServiceSession::giveUpOldTimelines() {
  const auto now = surroundings_.clock.steadyNow();
  while (!begun_.empty() && (begun_.front()->isOver || begun_.front()->begun + patience <= now)) {
    if (!std::exchange(begun_.front()->isOver, true)) --underWay_;
    begun_.pop_front();
  }
  makeTimelinesSoon();
  if (begun_.empty()) return;
  surroundings_.mainQueue.after(begun_.front()->begun + patience - now,
                                [living = std::weak_ptr(self_)] {
                                  if (const auto self = living.lock())
                                    (*self)->giveUpOldTimelines();
                                });
}

void ServiceSession::answer(const std::weak_ptr<const Pending>& request,
                            const WidgetResponder::Answer& answer) {
  const PendingRequest answered = request.lock();
  if (!answered || hasEnded_) return;
  pending_.erase(answered->id);
  if (answer) {
    send(answerLine(answered->id, serviceResultJson(*answer)));
  } else {
    send(answerLine(answered->id, std::unexpected(answer.error())));
  }
  endWhenAnswered();
}

void ServiceSession::refuse(const RequestIdentifier& id, ServiceErrorCode code,
                            std::string message) {
  send(answerLine(id, std::unexpected(ServiceError{code, std::move(message)})));
}

void ServiceSession::send(std::string line) {
  if (hasEnded_) return;
  surroundings_.stream.send(std::move(line) + '\n');
}

void ServiceSession::hostEnded(ByteStream::End end) {
  if (end == ByteStream::End::gone) {
    pending_.clear();
    return this->end();
  }
  hasSaidAll_ = true;
  endWhenAnswered();
}

void ServiceSession::endWhenAnswered() {
  if (hasSaidAll_ && pending_.empty()) endWhenSent();
}

void ServiceSession::endWhenSent() {
  const auto finish = [living = std::weak_ptr(self_)] {
    if (const auto self = living.lock()) (*self)->end();
  };
  surroundings_.stream.flush(finish);
  surroundings_.mainQueue.after(farewell, finish);
}

void ServiceSession::watchForSilence() {
  const auto left = lastRequest_ + patience - surroundings_.clock.steadyNow();
  if (left <= left.zero()) return endOfSilence();
  surroundings_.mainQueue.after(left, [living = std::weak_ptr(self_)] {
    if (const auto self = living.lock()) (*self)->watchForSilence();
  });
}

void ServiceSession::endOfSilence() {
  isLeaving_ = true;
  waiting_.clear();
  for (const auto& [id, request] : std::exchange(pending_, {})) {
    refuse(id, ServiceErrorCode::busy, "the timeline could not be made in time");
  }
  endWhenSent();
}

void ServiceSession::end() {
  if (!std::exchange(hasEnded_, true)) surroundings_.ended();
}

}  // namespace lanternfold
