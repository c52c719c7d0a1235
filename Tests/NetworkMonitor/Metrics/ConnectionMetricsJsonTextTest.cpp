// The short way from a record to its JSON text and back.
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsJson.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsJsonText.h"
#include "Tests/Support/SampleConnectionMetrics.h"

namespace lanternfold {
namespace {

std::string written(const ConnectionMetrics& metrics) {
  std::string text;
  appendConnectionMetricsJson(text, metrics);
  return text;
}

TEST(ConnectionMetricsJsonText, ReadsWhatItWrites) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 1000; ++i) {
    ConnectionMetrics metrics;
    for (const auto& field : connectionMetricsFields) {
      metrics.*field.member = random() >> (random() % 64);
    }
    EXPECT_EQ(decodeWrittenConnectionMetrics(written(metrics)), metrics);
  }
  const ConnectionMetrics largest{.recvError = std::numeric_limits<std::uint64_t>::max()};
  EXPECT_EQ(decodeWrittenConnectionMetrics(written(largest)), largest);
}

TEST(ConnectionMetricsJsonText, LeavesAnyOtherTextToTheJsonDecoder) {
  const std::string text = written(oneToEight);
  for (std::size_t place = 0; place < text.size(); ++place) {
    EXPECT_FALSE(decodeWrittenConnectionMetrics(text.substr(0, place)));
    std::string changed = text;
    EXPECT_FALSE(decodeWrittenConnectionMetrics(changed.insert(place, "-")));
    changed = text;
    EXPECT_FALSE(decodeWrittenConnectionMetrics(changed.insert(place, " "))) << changed;
  }
  EXPECT_FALSE(decodeWrittenConnectionMetrics(text + " "));
  for (const char* number : {"01", "00", "18446744073709551616", "+1", "1.0", "1e0", ""}) {
    const std::string changed = "{\"sentBytes\":" + std::string(number) + text.substr(14);
    EXPECT_FALSE(decodeWrittenConnectionMetrics(changed)) << changed;
    EXPECT_EQ(decodeConnectionMetrics(changed), decodeConnectionMetrics(" " + changed));
  }
}

TEST(ConnectionMetricsJsonText, EscapesWhatAStringCannotHoldAndRefusesWhatIsNotUtf8) {
  std::string text;
  EXPECT_TRUE(appendJsonString(text, "en0"));
  EXPECT_TRUE(appendJsonString(text, "a\"\\\n\x01"));
  EXPECT_TRUE(appendJsonString(text, "größe"));
  EXPECT_FALSE(appendJsonString(text, "\xFF"));
  EXPECT_EQ(text, "\"en0\"\"a\\\"\\\\\\n\\u0001\"\"größe\"");
}

}  // namespace
}  // namespace lanternfold
