#include "CommandLine/InputText.h"

#include <array>
#include <istream>

#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

std::unexpected<CommandFailure> tooLong(const std::string& what) {
  return std::unexpected(workFailed(what + " is longer than " +
                                    std::to_string(longestInputBytes / 1024 / 1024) +
                                    " MiB; give a shorter one"));
}

std::expected<std::string, CommandFailure> readFile(const std::filesystem::path& file,
                                                    const FileSystem& files) {
  auto contents = files.readFile(file, longestInputBytes);
  if (contents) return std::move(contents->bytes);
  if (contents.error() == std::errc::file_too_large) return tooLong("the file " + file.string());
  if (contents.error() == std::errc::invalid_argument) {
    return std::unexpected(workFailed("cannot read " + inQuotes(file.string()) +
                                      ": it is no ordinary file; hand it to standard input"));
  }
  return std::unexpected(workFailed("cannot read " + inQuotes(file.string()) + ": " +
                                    contents.error().message() +
                                    "; check its name and its permissions"));
}

std::expected<std::string, CommandFailure> readStandardInput(const Console& console) {
  std::string bytes;
  if (console.input == nullptr) return bytes;
  std::array<char, 65536> piece{};
  while (console.input->read(piece.data(), piece.size()) || console.input->gcount() > 0) {
    bytes.append(piece.data(), static_cast<std::size_t>(console.input->gcount()));
    if (bytes.size() > longestInputBytes) return tooLong("standard input");
  }
  if (console.input->bad()) {
    return std::unexpected(workFailed("cannot read standard input; name a file with --file"));
  }
  return bytes;
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
