// A desk with the machine around it in memory: disk, clocks, queue and log.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"
#include "WidgetHost/Desk/WidgetDesk.h"
#include "WidgetHost/Store/WidgetStore.h"

namespace lanternfold {

/// What a test of a desk is made of. The extension and the observer are its own, and it ends the
/// desk before those.
class DeskMachine {
 protected:
  DeskMachine() : dispatch_(clock_) {}
  /// Works that are due at the same time run in an order of that seed.
  explicit DeskMachine(std::uint64_t seed) : dispatch_(clock_, seed) {}

  /// As at another start of the program.
  void makeDesk(WidgetExtension& extension, WidgetDeskObserver& observer,
                const WidgetDesk::Options& options = {}) {
    desk_.reset();
    store_.emplace(files_,
                   WidgetStore::Place{.file = file_,
                                      .makeFolder = [this]() -> std::expected<void, std::string> {
                                        files_.makeFolder(file_.parent_path());
                                        return {};
                                      }},
                   log_);
    desk_.emplace(WidgetDesk::Surroundings{.extension = extension,
                                           .store = *store_,
                                           .mainQueue = dispatch_.mainQueue(),
                                           .clock = clock_,
                                           .strings = strings_,
                                           .log = log_},
                  options);
    desk_->setObserver(&observer);
  }

  /// What stands on the disk.
  [[nodiscard]] std::vector<PlacedWidget> stored() const {
    const auto text = files_.bytes(file_);
    const auto read = text ? readWidgetStore(*text) : std::unexpected("no file");
    std::vector<PlacedWidget> placed;
    if (!read) return placed;
    for (const StoredWidget& widget : read->widgets) {
      if (widget.placed) placed.push_back(*widget.placed);
    }
    return placed;
  }
  /// What stands on the desktop.
  [[nodiscard]] std::vector<PlacedWidget> placed() const {
    std::vector<PlacedWidget> placed;
    for (const Card& card : desk_->cards()) placed.push_back(card.placed);
    return placed;
  }

  const std::filesystem::path file_ = "/config/app/widgets.json";
  SimulatedClock clock_;
  SimulatedDispatch dispatch_;
  FakeFileSystem files_{clock_};
  FakeStringTable strings_;
  RecordingDiagnosticLog log_;
  std::optional<WidgetStore> store_;
  std::optional<WidgetDesk> desk_;
};

}  // namespace lanternfold
