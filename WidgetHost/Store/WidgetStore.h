// What remembers the widgets of a desktop: one file, replaced whole.
//
// Made by: the host's composition. Used by: the desk. The file is written down in
// Docs/formats/widget-store.md.
#pragma once

#include <expected>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Platform/DiagnosticLog.h"
#include "Platform/FileSystem.h"
#include "WidgetHost/Store/PlacedWidget.h"
#include "WidgetHost/Store/WidgetStoreText.h"

namespace lanternfold {

/// Whatever in the file is not understood stays there. A file that makes no sense is set aside, and
/// one that cannot be read or is of a later version is never replaced; each is one line of the log.
/// One thread, which waits for the disk.
class WidgetStore {
 public:
  struct Place {
    std::filesystem::path file;
    /// Makes the folder of the file, for its user alone; the error is a sentence.
    std::function<std::expected<void, std::string>()> makeFolder;
  };

  /// `files` and `log` outlive the store.
  WidgetStore(FileSystem& files, Place place, DiagnosticLog& log);

  /// Once, before anything else. None when there is nothing to go by: no file, or one that makes no
  /// sense or cannot be read.
  [[nodiscard]] std::optional<std::vector<PlacedWidget>> load();

  /// For a new widget: one that no widget has had since the file was read.
  [[nodiscard]] std::string newId() { return stored_.ids.give(); }

  /// Puts `widgets`, whose ids are unique, in the place of those that `load` has returned; returns
  /// whether they are on the disk. The log says why not, once for each cause.
  bool save(const std::vector<PlacedWidget>& widgets);

 private:
  void setAside(const std::string& reason);
  /// An error when it cannot be kept, and then must not be replaced.
  [[nodiscard]] std::expected<void, std::string> keepWhatSomebodyElseWrote();
  /// Puts `widgets` among what is not understood, which keeps its places.
  void update(const std::vector<PlacedWidget>& widgets);
  [[nodiscard]] std::expected<void, std::string> write();
  void sayOnce(const std::string& line);

  FileSystem& files_;
  Place place_;
  DiagnosticLog& log_;
  StoredWidgets stored_;
  /// Of the file that was read or written last.
  std::optional<FileAttributes> known_;
  bool isWritable_ = true;
  std::set<std::string> said_;
};

}  // namespace lanternfold
