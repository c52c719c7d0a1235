#include "Benchmarks/ScratchFolder.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mntent.h>
#include <sys/stat.h>

#include "Support/FatalError.h"

namespace lanternfold {

namespace {

struct TableCloser {
  void operator()(std::FILE* table) const { ::endmntent(table); }
};

dev_t deviceOf(const char* path) {
  struct stat status{};
  return ::stat(path, &status) == 0 ? status.st_dev : dev_t{};
}

std::string fileSystemOf(const std::filesystem::path& path) {
  const std::unique_ptr<std::FILE, TableCloser> table(::setmntent("/proc/self/mounts", "r"));
  if (table == nullptr) return "unknown";
  const dev_t device = deviceOf(path.c_str());
  while (const mntent* const mount = ::getmntent(table.get())) {
    if (deviceOf(mount->mnt_dir) == device) return mount->mnt_type;
  }
  return "unknown";
}

}  // namespace

ScratchFolder::ScratchFolder() {
  std::string name = LANTERNFOLD_BINARY_DIR "/benchmark-XXXXXX";
  if (::mkdtemp(name.data()) == nullptr) fatalError("the benchmark could not make a folder");
  path_ = name;
  fileSystem_ = fileSystemOf(path_);
  if (fileSystem_ == "tmpfs" || fileSystem_ == "ramfs") {
    std::filesystem::remove_all(path_);
    fatalError("the build folder must be on a disk, or saving a file costs nothing");
  }
}

ScratchFolder::~ScratchFolder() {
  std::error_code error;
  std::filesystem::remove_all(path_, error);
}

}  // namespace lanternfold
