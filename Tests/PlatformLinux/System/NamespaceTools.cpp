#include "Tests/PlatformLinux/System/NamespaceTools.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <memory>

#include <gtest/gtest.h>

#include "Tests/PlatformLinux/NetworkNamespace.h"

namespace lanternfold::test {

void inNewNetworkNamespace(const std::function<void()>& work) {
  std::unique_ptr<NetworkNamespace> network;
  ENTER_NETWORK_NAMESPACE(network);
  work();
}

void ip(std::string_view commands) {
  std::FILE* batch = popen("ip -batch -", "w");
  ASSERT_NE(batch, nullptr);
  std::fwrite(commands.data(), 1, commands.size(), batch);
  ASSERT_EQ(pclose(batch), 0) << commands.substr(0, 500);
}

void turnOffIPv6() {
  for (const char* scope : {"all", "default"}) {
    std::ofstream setting("/proc/sys/net/ipv6/conf/" + std::string(scope) + "/disable_ipv6");
    setting << "1" << std::flush;
    ASSERT_TRUE(setting.good());
  }
}

std::string ipOutput(const std::string& arguments) {
  std::FILE* pipe = popen(("ip " + arguments).c_str(), "r");
  if (pipe == nullptr) return {};
  std::string text;
  std::array<char, 65536> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
    text.append(buffer.data(), count);
  }
  EXPECT_EQ(pclose(pipe), 0) << arguments;
  return text;
}

}  // namespace lanternfold::test
