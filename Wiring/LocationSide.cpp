#include "Wiring/LocationSide.h"

#include <utility>

#include "PlatformLinux/Bus/BusAddresses.h"
#include "PlatformLinux/Location/BusLocationPortal.h"
#include "PlatformLinux/Location/LinuxLocationConsent.h"
#include "PlatformLinux/Location/PortalLocationConsent.h"

namespace lanternfold {

LocationSide::LocationSide(const Surroundings& surroundings)
    : sandbox_(findSandbox(surroundings.sandboxFile, surroundings.files)),
      record_(consentPlaceIn(surroundings.directory,
                             sandbox_ ? ConsentKeeper::portal : ConsentKeeper::user),
              surroundings.files, surroundings.log) {
  if (!sandbox_) {
    consent_ = std::make_unique<LinuxLocationConsent>(record_, surroundings.loop,
                                                      surroundings.dispatch, surroundings.log);
    return;
  }
  auto consent = std::make_unique<PortalLocationConsent>(
      ConsentSurroundings{.record = record_,
                          .loop = surroundings.loop,
                          .dispatch = surroundings.dispatch,
                          .log = surroundings.log},
      record_,
      std::make_unique<BusLocationPortal>(
          PortalSurroundings{.busAddress = sessionBusAddress(),
                             .applicationId = sandbox_->applicationId,
                             .limits = {}}));
  authority_ = consent.get();
  consent_ = std::move(consent);
}

}  // namespace lanternfold
