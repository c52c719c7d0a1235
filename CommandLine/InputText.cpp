#include "CommandLine/InputText.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <istream>
#include <system_error>
#include <utility>

#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

std::unexpected<CommandFailure> tooLong(const std::string& what) {
  return std::unexpected(workFailed(what + " is longer than " +
                                    std::to_string(longestInputBytes / 1024 / 1024) +
                                    " MiB; give a shorter one"));
}

std::unexpected<CommandFailure> cannotRead(const std::filesystem::path& file,
                                           const std::string& why) {
  return std::unexpected(workFailed("cannot read " + inQuotes(file.string()) + ": " + why));
}

/// Up to its end; none when reading fails. `what` is too long where it does not end.
std::expected<std::optional<std::string>, CommandFailure> readStream(std::istream& input,
                                                                     const std::string& what) {
  std::string bytes;
  std::array<char, 65536> piece{};
  while (input.read(piece.data(), piece.size()) || input.gcount() > 0) {
    bytes.append(piece.data(), static_cast<std::size_t>(input.gcount()));
    if (bytes.size() > longestInputBytes) return tooLong(what);
  }
  if (input.bad()) return std::nullopt;
  return bytes;
}

/// What somebody else writes into it, also of a process substitution: waits for him. Nothing
/// catches an interruption at this point, so that it ends the program.
std::expected<std::string, CommandFailure> readPipe(const std::filesystem::path& file) {
  errno = 0;
  std::ifstream pipe(file, std::ios::binary);
  if (!pipe) {
    return cannotRead(file, std::generic_category().message(errno) + "; check its permissions");
  }
  auto bytes = readStream(pipe, "the pipe " + inQuotes(file.string()));
  if (!bytes) return std::unexpected(bytes.error());
  if (!*bytes) return cannotRead(file, "the pipe fails; hand its text to standard input");
  return **std::move(bytes);
}

std::expected<std::string, CommandFailure> readFile(const std::filesystem::path& file,
                                                    const FileSystem& files) {
  auto contents = files.readFile(file, longestInputBytes);
  if (contents) return std::move(contents->bytes);
  if (contents.error() == std::errc::file_too_large)
    return tooLong("the file " + inQuotes(file.string()));
  if (contents.error() == std::errc::invalid_argument) {
    std::error_code ignored;
    if (std::filesystem::is_fifo(file, ignored)) return readPipe(file);
    return cannotRead(file, "it is neither a file nor a pipe; hand it to standard input");
  }
  return cannotRead(file, contents.error().message() + "; check its name and its permissions");
}

std::expected<std::string, CommandFailure> readStandardInput(const Console& console) {
  if (console.input == nullptr) return std::string();
  auto bytes = readStream(*console.input, "standard input");
  if (!bytes) return std::unexpected(bytes.error());
  if (!*bytes) {
    return std::unexpected(workFailed("cannot read standard input; name a file with --file"));
  }
  return **std::move(bytes);
}

}  // namespace

std::expected<std::string, CommandFailure> readInput(const InputSource& source,
                                                     const FileSystem& files,
                                                     const Console& console) {
  if (source.argument) return *source.argument;
  return source.file ? readFile(*source.file, files) : readStandardInput(console);
}

std::expected<std::string, CommandFailure> readInputLine(const InputSource& source,
                                                         const FileSystem& files,
                                                         const Console& console) {
  auto text = readInput(source, files, console);
  if (!text || source.argument) return text;
  if (!text->ends_with('\n')) return text;
  text->pop_back();
  if (text->ends_with('\r')) text->pop_back();
  return text;
}

}  // namespace lanternfold
