// How an answer of a public-info resolver becomes part of the internet record. Pure.
#pragma once

#include "NetworkMonitor/Model/InternetInfo.h"
#include "NetworkMonitor/PublicInfo/PublicInfoKey.h"

namespace lanternfold {

/// Writes every key of `answer` into its field. An IPv6 address without a word on its support means
/// that there is IPv6; support without an address, in the answer or in `info`, is not believed,
/// because the record would promise an address that it lacks. Stops the program when a value is of
/// another kind than its key's.
void merge(const PublicInfo& answer, InternetInfo& info);

}  // namespace lanternfold
