#include "Tests/PlatformLinux/Contracts/GettextCatalogue.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace lanternfold {
namespace {

void setVariable(const std::string& name, const std::optional<std::string>& value) {
  if (value) {
    setenv(name.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name.c_str());
  }
}

std::filesystem::path newTemporaryDirectory() {
  std::string name = std::filesystem::temp_directory_path() / "catalogue-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) std::abort();
  return name;
}

/// Whether msgfmt made `compiled` of `source`.
bool compile(std::string source, std::string compiled) {
  std::string program = "msgfmt";
  std::string option = "-o";
  const std::array<char*, 5> arguments{program.data(), option.data(), compiled.data(),
                                       source.data(), nullptr};
  pid_t child = 0;
  if (posix_spawnp(&child, program.c_str(), nullptr, nullptr, arguments.data(), environ) != 0) {
    return false;
  }
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

ScopedEnvironment::ScopedEnvironment(std::string name, const std::optional<std::string>& value)
    : name_(std::move(name)) {
  if (const char* before = std::getenv(name_.c_str())) before_ = before;
  setVariable(name_, value);
}

ScopedEnvironment::~ScopedEnvironment() { setVariable(name_, before_); }

GettextCatalogue::GettextCatalogue() : directory_(newTemporaryDirectory()) {}

GettextCatalogue::~GettextCatalogue() { std::filesystem::remove_all(directory_); }

bool GettextCatalogue::add(std::string_view language, std::string_view domain,
                           const std::map<std::string, std::string>& texts) {
  const std::filesystem::path folder = directory_ / language / "LC_MESSAGES";
  std::filesystem::create_directories(folder);
  const std::filesystem::path source = directory_ / "catalogue.po";
  std::ofstream file(source);
  file << "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n";
  for (const auto& [key, text] : texts) {
    file << "\nmsgid \"" << key << "\"\nmsgstr \"" << text << "\"\n";
  }
  file.close();
  return compile(source, folder / (std::string(domain) + ".mo"));
}

}  // namespace lanternfold
