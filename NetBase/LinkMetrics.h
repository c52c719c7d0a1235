// One link's record as the loosely typed metrics dictionary.
#pragma once

#include "Platform/NetworkKernel.h"
#include "Support/PropertyListValue.h"

namespace lanternfold {

/// The eleven numbers of `SNUtilsInterfaceInfoKey`, and "hw_address" when the link has an address
/// of six bytes that are not all zero and not 02:00:00:00:00:00, which a system that withholds the
/// real address reports in its place. Pure.
[[nodiscard]] PropertyListDictionary linkMetricsDictionary(const LinkRecord& link);

}  // namespace lanternfold
