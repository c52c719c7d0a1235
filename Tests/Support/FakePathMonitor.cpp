#include "Tests/Support/FakePathMonitor.h"

#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

using Record = FakePathMonitorFactory::Record;

/// `path` as a monitor of one type of interface sees it.
NetworkPath restricted(NetworkPath path, std::optional<PathInterfaceType> type) {
  if (!type) return path;
  std::erase_if(path.availableInterfaces,
                [type](const PathInterface& interface) { return interface.type != *type; });
  if (path.availableInterfaces.empty()) path.status = PathStatus::unsatisfied;
  return path;
}

void post(const std::shared_ptr<Record>& record, const NetworkPath& path) {
  record->startedOn->async([record, seen = restricted(path, record->requiredInterfaceType)] {
    if (!record->listens() || !record->handler) return;
    ++record->updates;
    // A copy, because the handler may destroy the monitor.
    const auto handler = record->handler;
    handler(seen);
  });
}

class FakePathMonitor final : public PathMonitor {
 public:
  FakePathMonitor(std::shared_ptr<Record> record, const NetworkPath& path)
      : record_(std::move(record)), path_(path) {}
  ~FakePathMonitor() override {
    record_->destroyed = true;
    record_->handler = nullptr;
  }

  void setPathUpdateHandler(UpdateHandler handler) override {
    if (record_->startedOn != nullptr) {
      fatalError("a path monitor's handler was set after its start");
    }
    record_->handler = std::move(handler);
  }

  void start(DispatchQueue& queue) override {
    if (record_->startedOn != nullptr) fatalError("a path monitor was started twice");
    record_->startedOn = &queue;
    post(record_, path_);
  }

  void cancel() override { record_->cancelled = true; }

 private:
  std::shared_ptr<Record> record_;
  const NetworkPath& path_;
};

}  // namespace

std::unique_ptr<PathMonitor> FakePathMonitorFactory::makePathMonitor(
    std::optional<PathInterfaceType> requiredInterfaceType) {
  auto record = std::make_shared<Record>();
  record->requiredInterfaceType = requiredInterfaceType;
  monitors_.push_back(record);
  return std::make_unique<FakePathMonitor>(std::move(record), path_);
}

void FakePathMonitorFactory::deliver(NetworkPath path) {
  path_ = std::move(path);
  for (const auto& record : monitors_) {
    if (tells_ && record->listens()) post(record, path_);
  }
}

}  // namespace lanternfold
