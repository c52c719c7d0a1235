#include "PlatformLinux/Desktop/LogindSession.h"

#include <utility>
#include <vector>

#include "PlatformLinux/Bus/MessageBus.h"
#include "PlatformLinux/Bus/OwnerChanges.h"
#include "PlatformLinux/Desktop/LogindNames.h"
#include "PlatformLinux/Desktop/SessionSearch.h"

namespace lanternfold {
namespace {

constexpr std::chrono::seconds replyLimit{25};
constexpr const char* lockedProperty = "LockedHint";

std::optional<bool> truthIn(GVariant* value) {
  if (value == nullptr || g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) == FALSE) return {};
  return g_variant_get_boolean(value) != FALSE;
}

/// What a `PropertiesChanged` of a session says of its lock.
std::optional<bool> lockIn(GVariant* arguments) {
  if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(sa{sv}as)")) == FALSE) return {};
  const VariantPointer changed(g_variant_get_child_value(arguments, 1));
  const VariantPointer value(
      g_variant_lookup_value(changed.get(), lockedProperty, G_VARIANT_TYPE_BOOLEAN));
  return truthIn(value.get());
}

}  // namespace

/// Hears the bus. Whatever is told is told by a work of the main queue.
class LogindSession::Watch : public std::enable_shared_from_this<Watch> {
 public:
  Watch(Surroundings surroundings, DispatchQueue& mainQueue)
      : surroundings_(std::move(surroundings)), mainQueue_(mainQueue) {}

  void begin(Handlers handlers);
  void end();

 private:
  using SignalHandler = void (Watch::*)(GVariant*);

  void listen();
  void listenTo(std::vector<std::unique_ptr<MessageBus::Subscription>>& kept,
                const MessageBus::SignalMatch& match, SignalHandler handler);
  void managerChanged(GVariant* arguments);
  void sleepChanged(GVariant* arguments);
  void search();
  void watchSession(const std::string& path);
  void propertiesChanged(GVariant* arguments);
  void lockAsked(GVariant* arguments);
  void unlockAsked(GVariant* arguments);
  void learnHint(bool isLocked);
  void busIsLost();
  /// Tells what has become of the lock, if that is news.
  void settle();
  void tellLock(bool isLocked);

  const Surroundings surroundings_;
  DispatchQueue& mainQueue_;
  Handlers handlers_;
  const std::shared_ptr<MessageBus> bus_ = std::make_shared<MessageBus>();
  std::vector<std::unique_ptr<MessageBus::Subscription>> ofManager_;
  std::vector<std::unique_ptr<MessageBus::Subscription>> ofSession_;
  std::shared_ptr<SessionSearch> search_;

  bool isHinted_ = false;  ///< the session says that it is locked
  bool isAsked_ = false;   ///< somebody has asked it to lock, and it has said nothing yet
  std::uint64_t asked_ = 0;
  bool isLocked_ = false;  ///< as was told last
};

void LogindSession::Watch::begin(Handlers handlers) {
  handlers_ = std::move(handlers);
  bus_->setLostHandler([weak = weak_from_this()] {
    if (const auto living = weak.lock()) living->busIsLost();
  });
  bus_->connect(surroundings_.busAddress, [weak = weak_from_this()](bool isConnected) {
    const auto living = weak.lock();
    if (living && isConnected) living->listen();
  });
}

void LogindSession::Watch::end() {
  handlers_ = {};
  search_.reset();
  ofSession_.clear();
  ofManager_.clear();
  bus_->abandon();
}

void LogindSession::Watch::listen() {
  listenTo(ofManager_, ownerChangesOf(logindName), &Watch::managerChanged);
  listenTo(ofManager_,
           {.sender = logindName,
            .path = logindObject,
            .interface = logindManager,
            .name = "PrepareForSleep",
            .firstArgument = {}},
           &Watch::sleepChanged);
  search();
}

void LogindSession::Watch::listenTo(std::vector<std::unique_ptr<MessageBus::Subscription>>& kept,
                                    const MessageBus::SignalMatch& match, SignalHandler handler) {
  kept.push_back(bus_->subscribe(match, [weak = weak_from_this(), handler](GVariant* arguments) {
    if (const auto living = weak.lock()) ((*living).*handler)(arguments);
  }));
}

void LogindSession::Watch::managerChanged(GVariant* arguments) {
  if (!newOwnerIn(arguments).empty()) search();
}

/// Told before the machine sleeps, and again when it is awake.
void LogindSession::Watch::sleepChanged(GVariant* arguments) {
  if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(b)")) == FALSE) return;
  const VariantPointer sleeps(g_variant_get_child_value(arguments, 0));
  if (g_variant_get_boolean(sleeps.get()) != FALSE) return;
  mainQueue_.async([weak = weak_from_this()] {
    const auto living = weak.lock();
    if (living && living->handlers_.resumed) living->handlers_.resumed();
  });
}

void LogindSession::Watch::search() {
  search_ = std::make_shared<SessionSearch>(bus_, surroundings_.sessionId,
                                            [weak = weak_from_this()](const std::string& path) {
                                              if (const auto living = weak.lock())
                                                living->watchSession(path);
                                            });
  search_->begin();
}

/// It listens before it looks, so that no change is missed.
void LogindSession::Watch::watchSession(const std::string& path) {
  ofSession_.clear();
  const auto signal = [&path](const char* interface, const char* name) {
    return MessageBus::SignalMatch{.sender = logindName,
                                   .path = path,
                                   .interface = interface,
                                   .name = name,
                                   .firstArgument = {}};
  };
  listenTo(ofSession_, signal(propertiesInterface, "PropertiesChanged"), &Watch::propertiesChanged);
  listenTo(ofSession_, signal(logindSession, "Lock"), &Watch::lockAsked);
  listenTo(ofSession_, signal(logindSession, "Unlock"), &Watch::unlockAsked);
  bus_->call(
      {.destination = logindName, .path = path, .interface = propertiesInterface, .name = "Get"},
      g_variant_new("(ss)", logindSession, lockedProperty), "(v)", replyLimit,
      [weak = weak_from_this()](const MessageBus::Reply& reply) {
        const auto living = weak.lock();
        if (!living || !reply) return;
        const VariantPointer boxed(g_variant_get_child_value(reply->get(), 0));
        const VariantPointer value(g_variant_get_variant(boxed.get()));
        if (const auto isLocked = truthIn(value.get())) living->learnHint(*isLocked);
      });
}

void LogindSession::Watch::propertiesChanged(GVariant* arguments) {
  if (const auto isLocked = lockIn(arguments)) learnHint(*isLocked);
}

void LogindSession::Watch::lockAsked(GVariant* /*arguments*/) {
  isAsked_ = true;
  mainQueue_.after(surroundings_.unconfirmedLock, [weak = weak_from_this(), count = ++asked_] {
    const auto living = weak.lock();
    if (!living || count != living->asked_) return;
    living->isAsked_ = false;
    living->settle();
  });
  settle();
}

void LogindSession::Watch::unlockAsked(GVariant* /*arguments*/) {
  isAsked_ = false;
  settle();
}

void LogindSession::Watch::learnHint(bool isLocked) {
  isHinted_ = isLocked;
  isAsked_ = false;
  settle();
}

void LogindSession::Watch::busIsLost() { learnHint(false); }

void LogindSession::Watch::settle() {
  const bool isLocked = isHinted_ || isAsked_;
  if (std::exchange(isLocked_, isLocked) != isLocked) tellLock(isLocked);
}

void LogindSession::Watch::tellLock(bool isLocked) {
  mainQueue_.async([weak = weak_from_this(), isLocked] {
    const auto living = weak.lock();
    if (living && living->handlers_.lockChanged) living->handlers_.lockChanged(isLocked);
  });
}

LogindSession::LogindSession(Surroundings surroundings, DispatchQueue& mainQueue)
    : watch_(std::make_shared<Watch>(std::move(surroundings), mainQueue)) {}

LogindSession::~LogindSession() { watch_->end(); }

void LogindSession::start(Handlers handlers) { watch_->begin(std::move(handlers)); }

}  // namespace lanternfold
