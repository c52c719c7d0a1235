// Files that appear whole or not at all: written without a name, named, moved into place.
//
// Read by: `PosixFileSystem`, and the command line where it writes pictures.
#pragma once

#include <expected>
#include <filesystem>
#include <string_view>
#include <sys/types.h>
#include <system_error>

#include "Platform/FileSystem.h"

namespace lanternfold {

/// Puts a file of `bytes` with the permissions `mode` in the place of `path` and waits until it is
/// on the disk; its attributes. A symbolic link stays and the file that it names is replaced, as an
/// ordinary write would do: people link such files to another disk or into a folder that they back
/// up. invalid_argument for a device, a pipe or a socket, is_a_directory for a folder.
///
/// Nothing is left behind, but by a process killed in the moment between naming and moving; a later
/// replacement of the same file removes that when it is older than a minute. When only the folder
/// could not be brought to the disk, the new file stands and the error is returned all the same.
[[nodiscard]] std::expected<FileAttributes, std::error_code> replaceFileAtomically(
    const std::filesystem::path& path, std::string_view bytes, mode_t mode);

}  // namespace lanternfold
