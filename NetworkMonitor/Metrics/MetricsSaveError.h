// Why what was registered in a storage did not reach the disk.
//
// Made by: the storages that outlive the program. Read by: the recorder, which hands it on.
#pragma once

#include <string>
#include <system_error>

namespace lanternfold {

struct MetricsSaveError {
  std::string sentence;   ///< a clause for the user: what could not be written and why
  std::error_code cause;  ///< of the file system; empty when `sentence` says what to do, too
  friend bool operator==(const MetricsSaveError&, const MetricsSaveError&) = default;
};

}  // namespace lanternfold
