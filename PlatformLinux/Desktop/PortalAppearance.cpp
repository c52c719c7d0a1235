#include "PlatformLinux/Desktop/PortalAppearance.h"

#include <string_view>
#include <utility>

#include "PlatformLinux/Bus/MessageBus.h"
#include "PlatformLinux/Bus/OwnerChanges.h"

namespace lanternfold {
namespace {

constexpr std::chrono::seconds replyLimit{25};
constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* colourScheme = "color-scheme";

/// Whatever else may stand there is no preference.
PreferredColourScheme schemeIn(GVariant* value) {
  if (g_variant_is_of_type(value, G_VARIANT_TYPE_UINT32) == FALSE) {
    return PreferredColourScheme::noPreference;
  }
  switch (g_variant_get_uint32(value)) {
    case 1:
      return PreferredColourScheme::dark;
    case 2:
      return PreferredColourScheme::light;
    default:
      return PreferredColourScheme::noPreference;
  }
}

/// `Read` puts its answer into one more box than `ReadOne` does.
VariantPointer unboxed(VariantPointer value) {
  for (int box = 0; box < 2; ++box) {
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARIANT) == FALSE) break;
    value.reset(g_variant_get_variant(value.get()));
  }
  return value;
}

}  // namespace

/// Hears the bus. Whatever is told is told by a work of the main queue.
class PortalAppearance::Watch : public std::enable_shared_from_this<Watch> {
 public:
  Watch(std::optional<std::string> busAddress, DispatchQueue& mainQueue)
      : busAddress_(std::move(busAddress)), mainQueue_(mainQueue) {}

  void begin(std::function<void(PreferredColourScheme)> changed);
  void end();

 private:
  void listen();
  void read(const char* method);
  void takeReply(const MessageBus::Reply& reply, std::string_view method);
  void takeChange(GVariant* arguments);
  void learn(PreferredColourScheme scheme);
  void learnThatThereIsNoPortal();

  const std::optional<std::string> busAddress_;
  DispatchQueue& mainQueue_;
  std::function<void(PreferredColourScheme)> changed_;
  const std::shared_ptr<MessageBus> bus_ = std::make_shared<MessageBus>();
  std::unique_ptr<MessageBus::Subscription> settingChanges_;
  std::unique_ptr<MessageBus::Subscription> ownerChanges_;
  std::optional<PreferredColourScheme> known_;
};

void PortalAppearance::Watch::begin(std::function<void(PreferredColourScheme)> changed) {
  changed_ = std::move(changed);
  if (!busAddress_) {
    learnThatThereIsNoPortal();
    return;
  }
  bus_->connect(*busAddress_, [weak = weak_from_this()](bool isConnected) {
    const auto living = weak.lock();
    if (!living) return;
    if (isConnected) {
      living->listen();
    } else {
      living->learnThatThereIsNoPortal();
    }
  });
}

void PortalAppearance::Watch::end() {
  changed_ = nullptr;
  settingChanges_.reset();
  ownerChanges_.reset();
  bus_->abandon();
}

/// It listens before it looks, so that no change is missed.
void PortalAppearance::Watch::listen() {
  settingChanges_ = bus_->subscribe({.sender = portalName,
                                     .path = portalPath,
                                     .interface = settingsInterface,
                                     .name = "SettingChanged",
                                     .firstArgument = appearance},
                                    [weak = weak_from_this()](GVariant* arguments) {
                                      if (const auto living = weak.lock()) {
                                        living->takeChange(arguments);
                                      }
                                    });
  ownerChanges_ =
      bus_->subscribe(ownerChangesOf(portalName), [weak = weak_from_this()](GVariant* arguments) {
        const auto living = weak.lock();
        if (living && !newOwnerIn(arguments).empty()) living->read("ReadOne");
      });
  read("ReadOne");
}

void PortalAppearance::Watch::read(const char* method) {
  bus_->call({.destination = portalName,
              .path = portalPath,
              .interface = settingsInterface,
              .name = method},
             g_variant_new("(ss)", appearance, colourScheme), "(v)", replyLimit,
             [weak = weak_from_this(), method](const MessageBus::Reply& reply) {
               if (const auto living = weak.lock()) living->takeReply(reply, method);
             });
}

/// Portals before version 1.17 have the other method only.
void PortalAppearance::Watch::takeReply(const MessageBus::Reply& reply, std::string_view method) {
  if (reply) {
    learn(schemeIn(unboxed(VariantPointer(g_variant_get_child_value(reply->get(), 0))).get()));
  } else if (method == "ReadOne" && reply.error() == "org.freedesktop.DBus.Error.UnknownMethod") {
    read("Read");
  } else {
    learnThatThereIsNoPortal();
  }
}

void PortalAppearance::Watch::takeChange(GVariant* arguments) {
  if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ssv)")) == FALSE) return;
  const char* key = nullptr;
  g_variant_get_child(arguments, 1, "&s", &key);
  if (std::string_view(key) != colourScheme) return;
  learn(schemeIn(unboxed(VariantPointer(g_variant_get_child_value(arguments, 2))).get()));
}

void PortalAppearance::Watch::learn(PreferredColourScheme scheme) {
  if (std::exchange(known_, scheme) == scheme) return;
  mainQueue_.async([weak = weak_from_this(), scheme] {
    const auto living = weak.lock();
    if (living && living->changed_) living->changed_(scheme);
  });
}

void PortalAppearance::Watch::learnThatThereIsNoPortal() {
  if (!known_) learn(PreferredColourScheme::noPreference);
}

PortalAppearance::PortalAppearance(std::optional<std::string> busAddress, DispatchQueue& mainQueue)
    : watch_(std::make_shared<Watch>(std::move(busAddress), mainQueue)) {}

PortalAppearance::~PortalAppearance() { watch_->end(); }

void PortalAppearance::start(std::function<void(PreferredColourScheme)> changed) {
  watch_->begin(std::move(changed));
}

}  // namespace lanternfold
