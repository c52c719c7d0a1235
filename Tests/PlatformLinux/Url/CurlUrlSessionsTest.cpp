// URL sessions against servers that behave well and badly, over real sockets.
#include <thread>

#include "Tests/PlatformLinux/Url/ScriptedServer.h"
#include "Tests/PlatformLinux/Url/UrlWorld.h"

namespace lanternfold::test {
namespace {

using namespace std::chrono_literals;

class UrlsInNamespace : public testing::Test {
 protected:
  void SetUp() override { OPEN_URL_WORLD(world_); }

  /// What comes of a server that gives every client this answer.
  std::string answerTo(std::string bytes) {
    const ScriptedServer server(answering(std::move(bytes)));
    return world_.fetch(server.url());
  }

  UrlWorld world_;
};

TEST_F(UrlsInNamespace, FetchesABody) {
  EXPECT_EQ(answerTo(httpAnswer("{\"ip\":\"192.0.2.1\"}")), "answer: {\"ip\":\"192.0.2.1\"}");
}

}  // namespace
}  // namespace lanternfold::test
