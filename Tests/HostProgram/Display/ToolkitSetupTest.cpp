// What becomes of the toolkit's own lines.
#include <glib.h>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostProgram/Display/ToolkitSetup.h"
#include "Tests/Support/RecordingDiagnosticLog.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;

/// Libraries complain also while the program is being torn down, from threads of their own: the
/// writer once had a log that had been destroyed.
TEST(ToolkitSetupTest, TheToolkitsLogLivesAsLongAsTheToolkitMaySayAnything) {
  auto log = std::make_shared<RecordingDiagnosticLog>();
  const std::weak_ptr<RecordingDiagnosticLog> kept = log;
  sendToolkitsLinesTo(std::move(log));
  ASSERT_FALSE(kept.expired());
  g_log_structured("Test", G_LOG_LEVEL_WARNING, "MESSAGE", "%s", "something is odd");
  g_log_structured("Test", G_LOG_LEVEL_DEBUG, "MESSAGE", "%s", "nobody wants to know");
  EXPECT_THAT(kept.lock()->lines(),
              ElementsAre("the desktop's library Test says: something is odd"));
}

}  // namespace
}  // namespace lanternfold
