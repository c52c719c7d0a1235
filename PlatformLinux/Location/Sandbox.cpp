#include "PlatformLinux/Location/Sandbox.h"

#include <algorithm>
#include <glib.h>
#include <memory>

namespace lanternfold {
namespace {

constexpr std::size_t longestApplicationId = 255;

bool isApplicationId(std::string_view text) {
  constexpr std::string_view punctuation = "._-";
  return !text.empty() && text.size() <= longestApplicationId &&
         std::ranges::all_of(text, [&](char each) {
           return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') ||
                  (each >= '0' && each <= '9') || punctuation.contains(each);
         });
}

struct KeyFileCloser {
  void operator()(GKeyFile* file) const { g_key_file_unref(file); }
};
struct TextCloser {
  void operator()(char* text) const { g_free(text); }
};

}  // namespace

Sandbox parseSandboxFile(std::string_view text) {
  if (text.empty() || text.size() > longestSandboxFile) return {};
  const std::unique_ptr<GKeyFile, KeyFileCloser> file(g_key_file_new());
  if (g_key_file_load_from_data(file.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr) ==
      0) {
    return {};
  }
  const std::unique_ptr<char, TextCloser> name(
      g_key_file_get_string(file.get(), "Application", "name", nullptr));
  if (!name || !isApplicationId(name.get())) return {};
  return {.applicationId = name.get()};
}

std::optional<Sandbox> findSandbox(const std::filesystem::path& file, const FileSystem& files) {
  const auto contents = files.readFile(file, longestSandboxFile);
  if (contents) return parseSandboxFile(contents->bytes);
  if (contents.error() == std::errc::no_such_file_or_directory) return std::nullopt;
  return Sandbox();
}

}  // namespace lanternfold
