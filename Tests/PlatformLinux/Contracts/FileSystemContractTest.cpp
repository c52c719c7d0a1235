// What every side of the file-system seam promises.
#include <sys/stat.h>

#include "PlatformLinux/System/PosixFileSystem.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

constexpr std::size_t largest = 1024;

class PosixWorld {
 public:
  [[nodiscard]] FileSystem& files() { return files_; }
  [[nodiscard]] std::filesystem::path folder() const { return folder_.path(); }
  void makeFolder(const std::filesystem::path& path) { std::filesystem::create_directory(path); }
  void makePipe(const std::filesystem::path& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); }

 private:
  TemporaryFolder folder_;
  PosixFileSystem files_;
};

class FakeWorld {
 public:
  FakeWorld() { files_.makeFolder(folder()); }

  [[nodiscard]] FileSystem& files() { return files_; }
  [[nodiscard]] std::filesystem::path folder() const { return "/data"; }
  void makeFolder(const std::filesystem::path& path) { files_.makeFolder(path); }
  void makePipe(const std::filesystem::path& path) { files_.putSpecialFile(path); }

 private:
  SimulatedClock clock_;
  FakeFileSystem files_{clock_};
};

template <typename World>
class FileSystemContract : public testing::Test {
 protected:
  [[nodiscard]] FileSystem& files() { return world_.files(); }
  [[nodiscard]] std::filesystem::path file() const { return world_.folder() / "a.json"; }
  [[nodiscard]] std::string bytes() {
    const auto contents = files().readFile(file(), largest);
    return contents ? contents->bytes : "cannot be read: " + contents.error().message();
  }
  /// The folder that stands in the place of the file.
  void putFolder() { world_.makeFolder(file()); }
  void putPipe() { world_.makePipe(file()); }

  World world_;
};

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, PosixWorld> ? "Linux" : "Fake";
  }
};

using Worlds = testing::Types<PosixWorld, FakeWorld>;
TYPED_TEST_SUITE(FileSystemContract, Worlds, WorldNames);

TYPED_TEST(FileSystemContract, WhatWasReplacedIsReadBack) {
  ASSERT_TRUE(this->files().replaceFile(this->file(), "[0,{}]"));
  EXPECT_EQ(this->bytes(), "[0,{}]");
  ASSERT_TRUE(this->files().replaceFile(this->file(), ""));
  EXPECT_EQ(this->bytes(), "");
}

TYPED_TEST(FileSystemContract, BytesOfAnyValueAreKept) {
  std::string all;
  for (int value = 0; value < 256; ++value) all += static_cast<char>(value);
  ASSERT_TRUE(this->files().replaceFile(this->file(), all));
  EXPECT_EQ(this->bytes(), all);
}

TYPED_TEST(FileSystemContract, AMissingFileIsNoSuchFile) {
  FileSystem& files = this->files();
  const auto missing = std::errc::no_such_file_or_directory;
  EXPECT_EQ(files.attributes(this->file()).error(), missing);
  EXPECT_EQ(files.readFile(this->file(), largest).error(), missing);
  EXPECT_EQ(files.overwriteFile(this->file(), "x").error(), missing);
  EXPECT_EQ(files.keepAside(this->file()).error(), missing);
  EXPECT_EQ(files.removeFile(this->file()).error(), missing);
  EXPECT_EQ(files.attributes(this->file()).error(), missing) << "none of them makes the file";
}

TYPED_TEST(FileSystemContract, AMissingFolderIsNoSuchFile) {
  const auto inside = this->world_.folder() / "none" / "a.json";
  const auto missing = std::errc::no_such_file_or_directory;
  EXPECT_EQ(this->files().replaceFile(inside, "x").error(), missing);
  EXPECT_EQ(this->files().createEmptyFile(inside).error(), missing);
}

TYPED_TEST(FileSystemContract, AReplacedFileIsAnotherOneAndTellsItsAttributes) {
  const auto first = this->files().replaceFile(this->file(), "old");
  const auto second = this->files().replaceFile(this->file(), "newer");
  ASSERT_TRUE(first && second);
  EXPECT_EQ(this->files().attributes(this->file()), second);
  EXPECT_EQ(this->files().readFile(this->file(), largest)->attributes, *second);
  EXPECT_EQ(second->sizeBytes, 5U);
  EXPECT_NE(first->fileNumber, second->fileNumber);
  EXPECT_LE(first->modificationDate, second->modificationDate);
}

TYPED_TEST(FileSystemContract, AFileOfTheGreatestSizeIsReadAndALongerOneIsNot) {
  ASSERT_TRUE(this->files().replaceFile(this->file(), std::string(largest, 'x')));
  EXPECT_EQ(this->bytes().size(), largest);
  ASSERT_TRUE(this->files().replaceFile(this->file(), std::string(largest + 1, 'x')));
  EXPECT_EQ(this->files().readFile(this->file(), largest).error(), std::errc::file_too_large);
}

TYPED_TEST(FileSystemContract, AnEmptyFileIsMadeAndAFullOneIsEmptied) {
  ASSERT_TRUE(this->files().createEmptyFile(this->file()));
  EXPECT_EQ(this->bytes(), "");
  ASSERT_TRUE(this->files().replaceFile(this->file(), "full"));
  ASSERT_TRUE(this->files().createEmptyFile(this->file()));
  EXPECT_EQ(this->bytes(), "");
}

TYPED_TEST(FileSystemContract, OverwritingLeavesNothingOfALongerText) {
  ASSERT_TRUE(this->files().createEmptyFile(this->file()));
  const auto made = this->files().attributes(this->file());
  ASSERT_TRUE(this->files().overwriteFile(this->file(), "784000000.12345678"));
  ASSERT_TRUE(this->files().overwriteFile(this->file(), "1.5"));
  EXPECT_EQ(this->bytes(), "1.5");
  EXPECT_EQ(this->files().attributes(this->file())->fileNumber, made->fileNumber);
}

TYPED_TEST(FileSystemContract, ARemovedFileIsGoneOnce) {
  ASSERT_TRUE(this->files().replaceFile(this->file(), "x"));
  ASSERT_TRUE(this->files().removeFile(this->file()));
  EXPECT_EQ(this->files().removeFile(this->file()).error(), std::errc::no_such_file_or_directory);
}

TYPED_TEST(FileSystemContract, AFileThatIsKeptAsideOutlivesItsReplacement) {
  ASSERT_TRUE(this->files().replaceFile(this->file(), "first"));
  const auto name = this->files().keepAside(this->file());
  ASSERT_EQ(name, this->file().native() + ".damaged-1");
  EXPECT_EQ(this->files().keepAside(this->file()), name) << "it has such a name already";
  EXPECT_EQ(this->bytes(), "first");
  ASSERT_TRUE(this->files().replaceFile(this->file(), "second"));
  EXPECT_EQ(this->files().readFile(*name, largest)->bytes, "first");
  EXPECT_EQ(this->files().keepAside(this->file()), this->file().native() + ".damaged-2");
  EXPECT_EQ(this->files().readFile(*name, largest)->bytes, "first");
}

TYPED_TEST(FileSystemContract, TwentyFilesAreKeptAsideAndTheNextIsRefused) {
  for (int number = 1; number <= 20; ++number) {
    ASSERT_TRUE(this->files().replaceFile(this->file(), std::to_string(number)));
    ASSERT_TRUE(this->files().keepAside(this->file())) << number;
  }
  ASSERT_TRUE(this->files().replaceFile(this->file(), "21"));
  EXPECT_EQ(this->files().keepAside(this->file()).error(), std::errc::file_exists);
  EXPECT_EQ(this->bytes(), "21");
}

TYPED_TEST(FileSystemContract, AFolderInThePlaceOfTheFileStays) {
  this->putFolder();
  const auto isFolder = std::errc::is_a_directory;
  EXPECT_TRUE(this->files().attributes(this->file()));
  EXPECT_EQ(this->files().readFile(this->file(), largest).error(), isFolder);
  EXPECT_EQ(this->files().replaceFile(this->file(), "x").error(), isFolder);
  EXPECT_EQ(this->files().createEmptyFile(this->file()).error(), isFolder);
  EXPECT_EQ(this->files().overwriteFile(this->file(), "x").error(), isFolder);
  EXPECT_EQ(this->files().keepAside(this->file()).error(), isFolder);
  EXPECT_EQ(this->files().removeFile(this->file()).error(), isFolder);
  EXPECT_TRUE(this->files().attributes(this->file()));
}

TYPED_TEST(FileSystemContract, APipeInThePlaceOfTheFileIsNeverWaitedForAndStays) {
  this->putPipe();
  const auto invalid = std::errc::invalid_argument;
  EXPECT_TRUE(this->files().attributes(this->file()));
  EXPECT_EQ(this->files().readFile(this->file(), largest).error(), invalid);
  EXPECT_EQ(this->files().replaceFile(this->file(), "x").error(), invalid);
  EXPECT_EQ(this->files().createEmptyFile(this->file()).error(), invalid);
  EXPECT_EQ(this->files().overwriteFile(this->file(), "x").error(), invalid);
  EXPECT_EQ(this->files().keepAside(this->file()).error(), invalid);
  EXPECT_TRUE(this->files().removeFile(this->file()));
}

TYPED_TEST(FileSystemContract, AFileInThePlaceOfAFolderIsNotADirectory) {
  ASSERT_TRUE(this->files().replaceFile(this->file(), "x"));
  const auto inside = this->file() / "b.json";
  const auto notFolder = std::errc::not_a_directory;
  EXPECT_EQ(this->files().attributes(inside).error(), notFolder);
  EXPECT_EQ(this->files().readFile(inside, largest).error(), notFolder);
  EXPECT_EQ(this->files().replaceFile(inside, "x").error(), notFolder);
  EXPECT_EQ(this->files().createEmptyFile(inside).error(), notFolder);
  EXPECT_EQ(this->files().overwriteFile(inside, "x").error(), notFolder);
  EXPECT_EQ(this->files().removeFile(inside).error(), notFolder);
}

}  // namespace
}  // namespace lanternfold
