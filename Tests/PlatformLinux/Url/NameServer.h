// A name server of a test's own at 127.0.0.1, port 53, of the test's namespace.
#pragma once

#include <atomic>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold::test {

class NameServer {
 public:
  /// The numeric addresses of each name. Other names do not exist.
  using Names = std::map<std::string, std::vector<std::string>>;

  /// Without names it never answers.
  explicit NameServer(std::optional<Names> names);
  ~NameServer();
  NameServer(const NameServer&) = delete;
  NameServer& operator=(const NameServer&) = delete;

  [[nodiscard]] int questions() const { return questions_; }

 private:
  void serve();

  const std::optional<Names> names_;
  FileDescriptor socket_;
  FileDescriptor ending_;
  std::atomic<int> questions_ = 0;
  std::thread thread_;
};

}  // namespace lanternfold::test
