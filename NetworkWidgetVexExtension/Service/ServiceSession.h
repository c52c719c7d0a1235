// One host's conversation with the extension: lines in, answers out, each request on its own.
//
// Made by: the extension's composition, one for its socket.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "NetworkWidgetVexExtension/Service/WidgetResponder.h"
#include "Platform/ByteStream.h"
#include "Platform/Clock.h"
#include "Platform/Dispatch.h"
#include "WidgetService/LineSplitter.h"
#include "WidgetService/ServiceMessage.h"

namespace lanternfold {

/// Timelines are made `mostAtOnce` at a time, each begun by a work of its own; the others wait, and
/// when too many wait, the next one is refused. A request that the host has cancelled, or whose
/// host is gone, is not answered; its timeline may still be under way, and counts until it is made
/// or nobody can wait for it any more. What is not answered when the session ends of the host's
/// silence is refused then. Main queue.
class ServiceSession {
 public:
  static constexpr std::size_t mostAtOnce = 64;
  static constexpr std::size_t mostWaiting = 1024;
  /// Without a request for so long nobody shows these widgets any more. A host gives a timeline up
  /// after the same time, so none that is under way then is waited for.
  static constexpr std::chrono::seconds patience{30};
  /// For a host to read what it was sent last.
  static constexpr std::chrono::seconds farewell{1};

  struct Surroundings {
    ByteStream& stream;
    const WidgetResponder& responder;
    DispatchQueue& mainQueue;
    const Clock& clock;
    /// What the host says of the user's consent, a raw value.
    std::function<void(std::int32_t)> locationChanged;
    /// Called once, when there is nothing left to do: the host is gone, or has been silent for too
    /// long, or has said all that it wants to and has been answered.
    std::function<void()> ended;
  };

  explicit ServiceSession(Surroundings surroundings);
  ~ServiceSession();
  ServiceSession(const ServiceSession&) = delete;
  ServiceSession& operator=(const ServiceSession&) = delete;

  void start();

  /// Has the host ask the user for consent.
  void requestLocation(bool whenInUse);

 private:
  /// A request that the host waits for.
  struct Pending {
    RequestIdentifier id;
    ServiceCall call;
  };
  using PendingRequest = std::shared_ptr<const Pending>;

  void take(std::string_view line);
  void handle(const ServiceRequest& request);
  void handle(const CancelNotification& notification);
  void handle(const LocationNotification& notification);
  void handle(const IgnoredNotification& notification);
  void handle(const RefusedMessage& message);

  struct UnderWay {
    std::chrono::steady_clock::time_point begun;
    bool isOver = false;
  };

  void begin(const PendingRequest& request);
  void makeTimelinesSoon();
  void makeNextTimeline();
  void makeTimeline(const PendingRequest& request);
  void giveUpOldTimelines();
  void answer(const std::weak_ptr<const Pending>& request, const WidgetResponder::Answer& answer);
  void refuse(const RequestIdentifier& id, ServiceErrorCode code, std::string message);
  void send(std::string line);
  void hostEnded(ByteStream::End end);
  void endWhenAnswered();
  void watchForSilence();
  void endOfSilence();
  void endWhenSent();
  void end();

  Surroundings surroundings_;
  LineSplitter lines_;
  std::unordered_map<RequestIdentifier, PendingRequest> pending_;
  std::deque<std::weak_ptr<const Pending>> waiting_;
  std::size_t underWay_ = 0;                     ///< timelines that are not over
  std::deque<std::shared_ptr<UnderWay>> begun_;  ///< in the order of their beginning
  bool isMakingSoon_ = false;
  std::chrono::steady_clock::time_point lastRequest_;
  bool hasSaidAll_ = false;  ///< the host
  bool isLeaving_ = false;
  bool hasEnded_ = false;
  /// Expires with the session: works that come later do nothing.
  std::shared_ptr<ServiceSession*> self_ = std::make_shared<ServiceSession*>(this);
};

}  // namespace lanternfold
