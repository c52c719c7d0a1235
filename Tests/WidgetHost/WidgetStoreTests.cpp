#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedClock.h"
#include "WidgetHost/Store/WidgetStore.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

PlacedWidget widget(std::string id, std::string kind = "K", int x = 0) {
  return {.id = std::move(id), .kind = std::move(kind), .position = {"DP-1", x, 0}};
}

class WidgetStoreTest : public testing::Test {
 protected:
  WidgetStoreTest() { files_.makeFolder("/config"); }

  WidgetStore makeStore() {
    return {files_,
            {.file = file_,
             .makeFolder = [this]() -> std::expected<void, std::string> {
               if (!folderFault_.empty()) return std::unexpected(folderFault_);
               files_.makeFolder(file_.parent_path());
               return {};
             }},
            log_};
  }
  /// What another start of the program would read.
  std::optional<std::vector<PlacedWidget>> loaded() { return makeStore().load(); }

  const std::filesystem::path file_ = "/config/app/widgets.json";
  SimulatedClock clock_;
  FakeFileSystem files_{clock_};
  RecordingDiagnosticLog log_;
  std::string folderFault_;
};

TEST_F(WidgetStoreTest, WithoutAFileThereIsNothingToGoBy) {
  WidgetStore store = makeStore();
  EXPECT_EQ(store.load(), std::nullopt);
  EXPECT_THAT(log_.lines(), IsEmpty());
  EXPECT_THAT(files_.paths("/config"), IsEmpty()) << "looking makes nothing";
}

TEST_F(WidgetStoreTest, RemembersWhatItWasGiven) {
  WidgetStore store = makeStore();
  (void)store.load();
  const std::vector<PlacedWidget> first{widget("1"), widget("2", "L")};
  EXPECT_TRUE(store.save(first));
  EXPECT_EQ(loaded(), first);

  const std::vector<PlacedWidget> second{widget("2", "L", 50), widget("3")};
  EXPECT_TRUE(store.save(second));
  EXPECT_EQ(loaded(), second);
  EXPECT_TRUE(store.save({}));
  EXPECT_EQ(loaded(), std::vector<PlacedWidget>{}) << "a desktop without widgets is one, too";
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(WidgetStoreTest, WhatIsNotUnderstoodKeepsItsPlace) {
  files_.putFile(
      file_, R"({"version":1,"widgets":[{"id":"1","kind":"K","family":"small"},)"
             R"({"id":"x","kind":"K","family":"vast"},{"id":"2","kind":"K","family":"small"}]})");
  WidgetStore store = makeStore();
  ASSERT_EQ(store.load()->size(), 2U);
  EXPECT_THAT(log_.lines(), ElementsAre("/config/app/widgets.json: widget 2 is not shown, since "
                                        "\"family\" \"vast\" is none that is known"));
  EXPECT_TRUE(store.save({widget("2"), widget("3")}));
  const auto stored = readWidgetStore(*files_.bytes(file_));
  ASSERT_TRUE(stored);
  ASSERT_EQ(stored->widgets.size(), 3U);
  EXPECT_THAT(stored->widgets[0].original, HasSubstr("vast"));
  EXPECT_EQ(stored->widgets[1].placed->id, "2");
  EXPECT_EQ(stored->widgets[2].placed->id, "3");
}

TEST_F(WidgetStoreTest, ADamagedFileIsSetAside) {
  files_.putFile(file_, "{\"version\":1,\"wid");
  WidgetStore store = makeStore();
  EXPECT_EQ(store.load(), std::nullopt);
  EXPECT_THAT(
      log_.lines(),
      ElementsAre("/config/app/widgets.json cannot be used, since it is no JSON; it is kept "
                  "as /config/app/widgets.json.damaged-1, and the widgets stand where they "
                  "stood at first"));
  EXPECT_TRUE(store.save({widget("1")}));
  EXPECT_EQ(files_.bytes("/config/app/widgets.json.damaged-1"), "{\"version\":1,\"wid");
  EXPECT_EQ(loaded(), std::vector{widget("1")});
  EXPECT_EQ(log_.lines().size(), 1U);
}

TEST_F(WidgetStoreTest, AFileThatIsTooLongIsSetAside) {
  files_.putFile(file_, std::string(longestWidgetStoreBytes + 1, ' '));
  WidgetStore store = makeStore();
  EXPECT_EQ(store.load(), std::nullopt);
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("it is longer than 1048576 bytes")));
}

TEST_F(WidgetStoreTest, ADamagedFileThatCannotBeSetAsideIsNeverReplaced) {
  for (int number = 1; number <= mostKeptAside; ++number) {
    files_.putFile(file_.string() + ".damaged-" + std::to_string(number), "older");
  }
  files_.putFile(file_, "damaged");
  WidgetStore store = makeStore();
  EXPECT_EQ(store.load(), std::nullopt);
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("cannot be kept aside")));
  EXPECT_FALSE(store.save({widget("1")}));
  EXPECT_EQ(files_.bytes(file_), "damaged");
}

TEST_F(WidgetStoreTest, AFileOfALaterVersionIsShownAndNeverReplaced) {
  const std::string later =
      R"({"version":2,"widgets":[{"id":"1","kind":"K","family":"small","monitor":"DP-1"}]})";
  files_.putFile(file_, later);
  WidgetStore store = makeStore();
  EXPECT_EQ(store.load(), std::vector{widget("1")});
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("is of a later version")));
  EXPECT_FALSE(store.save({}));
  EXPECT_EQ(files_.bytes(file_), later);
  EXPECT_EQ(log_.lines().size(), 1U);

  files_.putFile(file_, R"({"version":3,"widgets":"elsewhere"})");
  EXPECT_EQ(loaded(), std::nullopt) << "nothing to go by";
}

TEST_F(WidgetStoreTest, AFileThatCannotBeReadIsNeverReplaced) {
  files_.putFile(file_, "secret");
  files_.denyReading(file_);
  WidgetStore store = makeStore();
  EXPECT_EQ(store.load(), std::nullopt);
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("could not be read")));
  EXPECT_FALSE(store.save({widget("1")}));
  EXPECT_EQ(files_.bytes(file_), "secret");
}

TEST_F(WidgetStoreTest, OnceTheUserHasMovedItAwayTheWidgetsAreRemembered) {
  files_.makeFolder(file_.parent_path());
  files_.putFile(file_, "torn");
  for (int number = 1; number <= mostKeptAside; ++number) {
    files_.putFile(file_.string() + ".damaged-" + std::to_string(number), "older");
  }
  WidgetStore store = makeStore();
  EXPECT_EQ(store.load(), std::nullopt);
  EXPECT_FALSE(store.save({widget("1")}));
  ASSERT_TRUE(files_.removeFile(file_));
  EXPECT_TRUE(store.save({widget("1")}));
  EXPECT_EQ(loaded(), std::vector{widget("1")});
}

TEST_F(WidgetStoreTest, WhatIsNoFileIsNeitherReadNorReplaced) {
  files_.putSpecialFile(file_);
  WidgetStore store = makeStore();
  EXPECT_EQ(store.load(), std::nullopt);
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("it is no file; move away what stands there")));
  EXPECT_FALSE(store.save({widget("1")}));
}

TEST_F(WidgetStoreTest, WhatComesIntoItsPlaceLaterAndIsNoFileStays) {
  WidgetStore store = makeStore();
  ASSERT_TRUE(store.save({widget("1")}));
  files_.putSpecialFile(file_);
  EXPECT_FALSE(store.save({widget("2")}));
  EXPECT_THAT(log_.lines(),
              ElementsAre(HasSubstr("cannot be kept aside: it is no file; move it away")));
}

TEST_F(WidgetStoreTest, AFullDiskLeavesTheOldFileAndIsSaidOnce) {
  WidgetStore store = makeStore();
  (void)store.load();
  ASSERT_TRUE(store.save({widget("1")}));
  files_.setFreeBytes(10);
  EXPECT_FALSE(store.save({widget("1"), widget("2")}));
  EXPECT_FALSE(store.save({widget("1"), widget("2"), widget("3")}));
  EXPECT_EQ(loaded(), std::vector{widget("1")});
  EXPECT_THAT(log_.lines(), ElementsAre(AllOf(HasSubstr("could not be written"),
                                              HasSubstr("make room on the disk"))));
  files_.setFreeBytes(std::nullopt);
  EXPECT_TRUE(store.save({widget("1"), widget("3")}));
  EXPECT_EQ(loaded(), (std::vector{widget("1"), widget("3")}));
}

TEST_F(WidgetStoreTest, AnyStepThatFailsLeavesAWholeFile) {
  const std::vector<PlacedWidget> before{widget("1")};
  const std::vector<PlacedWidget> after{widget("1"), widget("2")};
  std::size_t steps = 1;
  for (std::size_t step = 0; step < steps; ++step) {
    WidgetStore store = makeStore();
    (void)store.load();
    ASSERT_TRUE(store.save(before));
    const std::size_t begun = files_.stepCount();
    ASSERT_TRUE(store.save(after));
    steps = files_.stepCount() - begun;
    ASSERT_TRUE(store.save(before));

    files_.failStep(step, std::errc::io_error);
    const bool isSaved = store.save(after);
    const auto found = loaded();
    EXPECT_TRUE(found == after || (!isSaved && found == before)) << "step " << step;
    EXPECT_TRUE(store.save(after));
    EXPECT_EQ(loaded(), after);
    EXPECT_EQ(files_.bytes(file_.string() + ".damaged-1"), std::nullopt)
        << "its own file is nobody else's, step " << step;
  }
  EXPECT_GT(steps, 5U);
}

TEST_F(WidgetStoreTest, AProgramThatEndsAtAnyStepLeavesAWholeFile) {
  const std::vector<PlacedWidget> before{widget("1")};
  const std::vector<PlacedWidget> after{widget("1"), widget("2")};
  for (std::size_t step = 0; step < 7; ++step) {
    WidgetStore store = makeStore();
    (void)store.load();
    ASSERT_TRUE(store.save(before));
    files_.crashAtStep(step);
    EXPECT_FALSE(store.save(after));
    ASSERT_TRUE(files_.hasCrashed()) << "step " << step;
    files_.restart();
    const auto found = loaded();
    EXPECT_TRUE(found == after || found == before) << "step " << step;
  }
}

TEST_F(WidgetStoreTest, AFolderThatCannotBeMadeIsSaid) {
  WidgetStore store = makeStore();
  (void)store.load();
  folderFault_ = "/config/app belongs to another user";
  EXPECT_FALSE(store.save({widget("1")}));
  EXPECT_FALSE(store.save({widget("1"), widget("2")}));
  EXPECT_THAT(log_.lines(), ElementsAre(folderFault_));
  folderFault_.clear();
  EXPECT_TRUE(store.save({widget("1")}));
}

TEST_F(WidgetStoreTest, WhatAnotherProgramWroteMeanwhileIsKept) {
  WidgetStore store = makeStore();
  (void)store.load();
  ASSERT_TRUE(store.save({widget("1")}));
  files_.putFile(file_, "written by hand");
  EXPECT_TRUE(store.save({widget("1", "K", 8)}));
  EXPECT_EQ(loaded(), (std::vector{widget("1", "K", 8)}));
  EXPECT_EQ(files_.bytes(file_.string() + ".damaged-1"), "written by hand");
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("was changed by another program")));
}

TEST_F(WidgetStoreTest, AFileThatWouldBeTooLongIsNotWritten) {
  const std::string large(longestWidgetStoreBytes - 100, 'a');
  files_.putFile(file_, R"({"version":1,"widgets":[],"a":")" + large + "\"}");
  WidgetStore store = makeStore();
  ASSERT_TRUE(store.load());
  EXPECT_FALSE(store.save({widget("1"), widget("2")}));
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("would be longer than 1048576 bytes")));
  EXPECT_EQ(loaded(), std::vector<PlacedWidget>{});
}

}  // namespace
}  // namespace lanternfold
