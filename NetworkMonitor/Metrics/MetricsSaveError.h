// Why what was registered in a storage did not reach the disk.
//
// Made by: the storages that outlive the program. Read by: the recorder, which hands it on.
#pragma once

#include <string>

namespace lanternfold {

struct MetricsSaveError {
  std::string sentence;  ///< a clause for the user: what could not be written, why, what to do
  friend bool operator==(const MetricsSaveError&, const MetricsSaveError&) = default;
};

}  // namespace lanternfold
