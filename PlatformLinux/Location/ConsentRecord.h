// The consent as the product keeps it itself: one small file of the user's.
//
// Made by: the composition, one per program. Read by: `LinuxLocationConsent` and
// `PortalLocationConsent`. Written by: the `location` commands, a host that has asked, and the
// portal's answers.
#pragma once

#include <expected>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>

#include "Platform/DiagnosticLog.h"
#include "Platform/FileSystem.h"
#include "PlatformLinux/Defaults/DataDirectory.h"
#include "PlatformLinux/Location/ConsentText.h"

namespace lanternfold {

/// Where the file stands.
struct ConsentPlace {
  std::filesystem::path file;  ///< absolute; empty when this user has no folder for it
  /// Both refuse a folder that is not safe, with a sentence for the user; the second one also makes
  /// one that is not there. Any thread.
  std::function<std::expected<void, std::string>()> checkFolder;
  std::function<std::expected<void, std::string>()> makeFolder;
};

/// Who had to agree to what a record holds: a consent from outside a sandbox is none inside of it.
enum class ConsentKeeper {
  user,    ///< the user's word to this program
  portal,  ///< the portal's answers, inside a sandbox
};

/// In the user's data folder; `directory` outlives every copy.
[[nodiscard]] ConsentPlace consentPlaceIn(const DataDirectory& directory,
                                          ConsentKeeper keeper = ConsentKeeper::user);

/// Why a decision could not be recorded: a sentence, or else what the system says of the file.
struct ConsentRecordError {
  std::string sentence;   ///< for the user, of the folder or of the file as it is; may be empty
  std::error_code error;  ///< of replacing the file, when there is no sentence
};

/// Any thread, any number of processes: readers find the last decision that was recorded, whole.
/// What cannot be read or understood counts as not determined, so that nothing is shown by mistake;
/// why is one line of the log, again only after it has changed.
class ConsentRecord {
 public:
  /// Both references outlive the record.
  ConsentRecord(ConsentPlace place, FileSystem& files, DiagnosticLog& log)
      : place_(std::move(place)), files_(files), log_(log) {}

  /// Looks at the file anew. A damaged one is kept aside under a second name.
  [[nodiscard]] ConsentDecision decision() const;

  /// When it returns the decision is on the disk. After a failure the former one stands. A file of
  /// a later version is left alone.
  [[nodiscard]] std::expected<void, ConsentRecordError> record(ConsentDecision decision);

  /// The file, whether or not it is there; empty when there is no place for it.
  [[nodiscard]] const std::filesystem::path& file() const { return place_.file; }

 private:
  [[nodiscard]] std::expected<ConsentDecision, ConsentTextError> read() const;
  [[nodiscard]] std::string damageLine() const;
  void say(std::string line) const;

  const ConsentPlace place_;
  FileSystem& files_;
  DiagnosticLog& log_;
  mutable std::mutex mutex_;
  mutable std::string lastLine_;  ///< guarded by mutex_; empty after a look that went well
};

}  // namespace lanternfold
