// The common options as one program hands them on to another.
#include <filesystem>

#include <CLI/CLI.hpp>
#include <gtest/gtest.h>

#include "Wiring/CommonOptions.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;

/// What a program that is started with `arguments` understands, said again.
std::vector<std::string> handedOn(std::vector<std::string> arguments) {
  CLI::App app;
  CommonOptions options;
  addCommonOptions(app, options);
  std::ranges::reverse(arguments);  // as the library wants them
  app.parse(arguments);
  return argumentsOf(options);
}

TEST(CommonOptionsHandedOn, AreOnlyThoseThatWereGiven) {
  EXPECT_THAT(argumentsOf({}), ElementsAre());
  EXPECT_THAT(argumentsOf({.services = {.skipGeoIP = true}}), ElementsAre("--skip-geoip"));
}

TEST(CommonOptionsHandedOn, MeanTheSameToWhoeverGetsThem) {
  const std::vector<std::string> all = {"--skip-geoip",
                                        "--ipv4-echo=http://four.example",
                                        "--ipv6-echo=http://six.example",
                                        "--geolocation=http://geo.example",
                                        "--sentinel=http://sentinel.example",
                                        "--ca-file=/etc/own.pem",
                                        "--data-dir=/data dir",
                                        "--app-group=group.one",
                                        "--no-app-group"};
  EXPECT_EQ(handedOn(all), all);
}

TEST(CommonOptionsHandedOn, NameFilesAndFoldersFromTheRoot) {
  const std::string here = std::filesystem::current_path();
  EXPECT_THAT(handedOn({"--ca-file", "own.pem", "--data-dir", "data"}),
              ElementsAre("--ca-file=" + here + "/own.pem", "--data-dir=" + here + "/data"));
}

}  // namespace
}  // namespace lanternfold
