#include "Rendering/PictureFile.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace lanternfold {
namespace {

/// A file descriptor that is closed with its owner.
class Descriptor {
 public:
  explicit Descriptor(int value) : value_(value) {}
  ~Descriptor() {
    if (value_ >= 0) close(value_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] int value() const { return value_; }

 private:
  int value_;
};

std::error_code lastError() { return {errno, std::generic_category()}; }

std::error_code writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return lastError();
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

std::error_code writeInPlace(const std::filesystem::path& file, std::string_view bytes) {
  const Descriptor descriptor(open(file.c_str(), O_WRONLY | O_CLOEXEC));
  if (descriptor.value() < 0) return lastError();
  return writeAll(descriptor.value(), bytes);
}

std::error_code writeNew(const std::filesystem::path& file, std::string_view bytes) {
  const Descriptor descriptor(
      open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
  if (descriptor.value() < 0) return lastError();
  if (const std::error_code error = writeAll(descriptor.value(), bytes)) return error;
  return fsync(descriptor.value()) == 0 ? std::error_code{} : lastError();
}

std::error_code writeAndReplace(const std::filesystem::path& file, std::string_view bytes) {
  const std::filesystem::path beside = file.parent_path() / ("." + file.filename().string() + "." +
                                                             std::to_string(getpid()) + ".part");
  std::error_code error = writeNew(beside, bytes);
  if (error == std::errc::file_exists) return error;
  if (!error && std::rename(beside.c_str(), file.c_str()) != 0) error = lastError();
  if (error) unlink(beside.c_str());
  return error;
}

}  // namespace

std::expected<void, std::string> writePictureFile(const std::filesystem::path& file,
                                                  std::string_view bytes) {
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(file, ignored);
  std::error_code error;
  if (std::filesystem::is_directory(status)) {
    error = std::make_error_code(std::errc::is_a_directory);
  } else if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    error = writeInPlace(file, bytes);
  } else {
    const std::filesystem::path target = std::filesystem::weakly_canonical(file, ignored);
    error = writeAndReplace(target.empty() ? file : target, bytes);
  }
  if (!error) return {};
  return std::unexpected("cannot write the picture " + file.string() + ": " + error.message());
}

}  // namespace lanternfold
