#include "Support/FileRemedy.h"

namespace lanternfold {

std::string remedyFor(std::error_code error) {
  switch (static_cast<std::errc>(error.value())) {
    case std::errc::is_a_directory:
      return "move that folder away, since a file belongs there";
    case std::errc::invalid_argument:
    case std::errc::no_such_device_or_address:
      return "move it away, since it is no ordinary file (a pipe, a socket or a device)";
    case std::errc::too_many_symbolic_link_levels:
      return "remove the link that stands there, or choose another folder with --data-dir";
    case std::errc::filename_too_long:
      return "choose a folder with a shorter name with --data-dir";
    case std::errc::too_many_files_open:
    case std::errc::too_many_files_open_in_system:
      return "raise the limit of open files, as with \"ulimit -n 256\"";
    case std::errc::no_space_on_device:
      return "make room on the disk, or choose another folder with --data-dir";
    case std::errc::read_only_file_system:
      return "choose a folder on a disk that can be written to with --data-dir";
    case std::errc::permission_denied:
    case std::errc::operation_not_permitted:
      return "check the permissions of the file and its folder, or choose another folder with "
             "--data-dir";
    case std::errc::no_such_file_or_directory:
      return "see whether its folder is still there, or choose another one with --data-dir";
    default:
      return "check the folder and its disk, or choose another folder with --data-dir";
  }
}

std::string cannotWrite(const std::filesystem::path& file, std::error_code error) {
  return file.string() + " could not be written: " + error.message() + "; " + remedyFor(error);
}

}  // namespace lanternfold
