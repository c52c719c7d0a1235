#include "PlatformLinux/Location/LinuxLocationConsent.h"

#include <utility>

namespace lanternfold {
namespace {

class LinuxLocationManager final : public LocationManager {
 public:
  LinuxLocationManager(const ConsentSurroundings& surroundings, LinuxLocationConsent::Ask ask,
                       LocationConsent::ChangeHandler didChangeAuthorization)
      : record_(surroundings.record),
        ask_(std::move(ask)),
        watch_(
            surroundings,
            [&record = surroundings.record] {
              return static_cast<std::int32_t>(record.decision());
            },
            std::move(didChangeAuthorization)) {}

  void requestWhenInUseAuthorization() override { request(/*whenInUse=*/true); }
  void requestAlwaysAuthorization() override { request(/*whenInUse=*/false); }

 private:
  void request(bool whenInUse) {
    if (ask_ && record_.decision() == ConsentDecision::notDetermined) ask_(whenInUse);
  }

  const ConsentRecord& record_;
  const LinuxLocationConsent::Ask ask_;
  const ConsentWatch watch_;
};

}  // namespace

LinuxLocationConsent::LinuxLocationConsent(const ConsentRecord& record, EventLoop& loop,
                                           Dispatch& dispatch, DiagnosticLog& log, Ask ask)
    : surroundings_{.record = record, .loop = loop, .dispatch = dispatch, .log = log},
      ask_(std::move(ask)) {}

std::int32_t LinuxLocationConsent::authorizationStatus() const {
  return static_cast<std::int32_t>(surroundings_.record.decision());
}

std::unique_ptr<LocationManager> LinuxLocationConsent::makeLocationManager(
    ChangeHandler didChangeAuthorization) {
  return std::make_unique<LinuxLocationManager>(surroundings_, ask_,
                                                std::move(didChangeAuthorization));
}

}  // namespace lanternfold
