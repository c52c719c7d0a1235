#include "PlatformLinux/System/WifiCellNews.h"

#include <utility>

namespace lanternfold {

bool WifiCellNews::mayHaveChanged() {
  if (!std::exchange(wasAsked_, true)) return true;
  if (!socket_) {
    auto socket = WifiEventSocket::open(wifiCellGroups());
    if (socket) socket_ = *std::move(socket);
    return true;
  }
  const auto drained = socket_->drain();
  if (!drained) socket_.reset();
  return !drained || drained->news != WifiNews::none || !drained->isEmpty;
}

}  // namespace lanternfold
