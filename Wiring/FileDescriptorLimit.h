// Whether the program may open as many files as it needs.
#pragma once

namespace lanternfold {

/// Throws std::system_error (too_many_files_open) when fewer than `count` descriptors are free.
void requireFreeDescriptors(int count);

}  // namespace lanternfold
