#include "WidgetHost/Store/WidgetStore.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// What the file system says of a device, a pipe or a socket in the file's place.
bool isNoFile(std::error_code error) { return error == std::errc::invalid_argument; }

/// The system's own words are about what was done, not about what stands there.
std::string reasonOf(std::error_code error) {
  if (isNoFile(error)) return "it is no file";
  if (error == std::errc::no_such_file_or_directory) {
    return "it is a link into a folder that is not there";
  }
  return error.message();
}

/// What a user can do, for files that are not in the data folder.
std::string remedyFor(std::error_code error) {
  if (error == std::errc::no_space_on_device) return "make room on the disk";
  if (error == std::errc::is_a_directory || isNoFile(error)) return "move away what stands there";
  if (error == std::errc::no_such_file_or_directory) {
    return "remove it, or make that folder";
  }
  return "check the permissions of the file and its folder";
}

std::string failed(const std::filesystem::path& file, std::string_view what,
                   std::error_code error) {
  return file.string() + " could not be " + std::string(what) + ": " + reasonOf(error) + "; " +
         remedyFor(error);
}

}  // namespace

WidgetStore::WidgetStore(FileSystem& files, Place place, DiagnosticLog& log)
    : files_(files), place_(std::move(place)), log_(log) {
  if (!place_.makeFolder) fatalError("a widget store was made without a way to make its folder");
}

std::optional<std::vector<PlacedWidget>> WidgetStore::load() {
  const auto file = files_.readFile(place_.file, longestWidgetStoreBytes);
  if (!file) {
    if (file.error() == std::errc::no_such_file_or_directory) return std::nullopt;
    if (file.error() == std::errc::file_too_large) {
      setAside("it is longer than " + std::to_string(longestWidgetStoreBytes) + " bytes");
      return std::nullopt;
    }
    isWritable_ = false;
    log_.line(failed(place_.file, "read", file.error()) +
              "; until then the widgets are not remembered");
    return std::nullopt;
  }
  auto stored = readWidgetStore(file->bytes);
  if (!stored) {
    setAside(stored.error());
    return std::nullopt;
  }
  stored_ = std::move(*stored);
  known_ = file->attributes;
  isWritable_ = !stored_.isOfLaterVersion;
  if (!isWritable_) {
    log_.line(place_.file.string() +
              " is of a later version of this program; it is left as it is, and changes to the "
              "widgets are not remembered");
  }
  for (const std::string& remark : stored_.remarks) {
    log_.line(place_.file.string() + ": " + remark);
  }
  if (!stored_.hasList) return std::nullopt;
  std::vector<PlacedWidget> widgets;
  for (const StoredWidget& widget : stored_.widgets) {
    if (widget.placed) widgets.push_back(*widget.placed);
  }
  return widgets;
}

bool WidgetStore::save(const std::vector<PlacedWidget>& widgets) {
  update(widgets);
  if (!isWritable_ && !wasMovedAway()) return false;
  if (const auto written = write(); !written) {
    sayOnce(written.error());
    return false;
  }
  said_.clear();
  return true;
}

/// As the user was asked to do with a file that is not to be replaced. What is known of one of a
/// later version is not enough to write another.
bool WidgetStore::wasMovedAway() {
  if (stored_.isOfLaterVersion) return false;
  const auto present = files_.attributes(place_.file);
  isWritable_ = !present && present.error() == std::errc::no_such_file_or_directory;
  return isWritable_;
}

void WidgetStore::setAside(const std::string& reason) {
  const auto kept = files_.keepAside(place_.file);
  isWritable_ = kept.has_value();
  if (!kept) {
    log_.line(place_.file.string() + " cannot be used, since " + reason +
              ", and cannot be kept aside: " + reasonOf(kept.error()) +
              "; move it away, until then the widgets are not remembered");
    return;
  }
  if (const auto attributes = files_.attributes(place_.file)) known_ = *attributes;
  log_.line(place_.file.string() + " cannot be used, since " + reason + "; it is kept as " +
            kept->string() + ", and the widgets stand where they stood at first");
}

std::expected<void, std::string> WidgetStore::keepWhatSomebodyElseWrote() {
  const auto present = files_.attributes(place_.file);
  if (!present || *present == known_) return {};
  const auto kept = files_.keepAside(place_.file);
  if (!kept) {
    return std::unexpected(
        place_.file.string() + " was changed by another program and cannot be kept aside: " +
        reasonOf(kept.error()) + "; move it away, until then the widgets are not remembered");
  }
  log_.line(place_.file.string() + " was changed by another program; that file is kept as " +
            kept->string());
  return {};
}

void WidgetStore::update(const std::vector<PlacedWidget>& widgets) {
  std::vector<PlacedWidget> fresh = widgets;
  std::erase_if(stored_.widgets, [&](StoredWidget& stored) {
    if (!stored.placed) return false;
    const auto present = std::ranges::find(fresh, stored.placed->id, &PlacedWidget::id);
    if (present == fresh.end()) return true;
    stored.placed = std::move(*present);
    fresh.erase(present);
    return false;
  });
  std::ranges::transform(fresh, std::back_inserter(stored_.widgets), [](PlacedWidget& widget) {
    return StoredWidget{.placed = std::move(widget), .original = {}};
  });
}

std::expected<void, std::string> WidgetStore::write() {
  const std::string text = widgetStoreText(stored_);
  if (text.size() > longestWidgetStoreBytes) {
    return std::unexpected(place_.file.string() + " would be longer than " +
                           std::to_string(longestWidgetStoreBytes) +
                           " bytes and stays as it was; remove what it holds besides the widgets");
  }
  if (auto made = place_.makeFolder(); !made) return made;
  if (auto kept = keepWhatSomebodyElseWrote(); !kept) return kept;
  const auto written = files_.replaceFile(place_.file, text);
  if (!written) {
    // It may stand there all the same, and is nobody else's then.
    if (const auto present = files_.attributes(place_.file)) known_ = *present;
    return std::unexpected(failed(place_.file, "written", written.error()) +
                           "; it stays as it was, and the widgets stand where they do until the "
                           "program ends");
  }
  known_ = *written;
  return {};
}

void WidgetStore::sayOnce(const std::string& line) {
  if (said_.insert(line).second) log_.line(line);
}

}  // namespace lanternfold
