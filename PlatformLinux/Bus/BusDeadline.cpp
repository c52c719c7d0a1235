#include "PlatformLinux/Bus/BusDeadline.h"

#include <stop_token>

namespace lanternfold {

BusDeadline::BusDeadline(std::chrono::milliseconds limit)
    : cancellable_(g_cancellable_new()), thread_([this, limit](const std::stop_token& stop) {
        std::unique_lock lock(mutex_);
        condition_.wait_for(lock, stop, limit, [] { return false; });
        if (!stop.stop_requested()) g_cancellable_cancel(cancellable_.get());
      }) {}

}  // namespace lanternfold
