#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Rendering/PictureFile.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

class PictureFile : public testing::Test {
 protected:
  PictureFile() {
    std::string pattern = (fs::temp_directory_path() / "picture-XXXXXX").string();
    folder = mkdtemp(pattern.data());
  }
  ~PictureFile() override { fs::remove_all(folder); }

  static std::string contents(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  [[nodiscard]] std::size_t filesInFolder() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }

  fs::path folder;
};

std::string failure(const fs::path& file, std::string_view bytes) {
  const auto written = writePictureFile(file, bytes);
  return written ? "written" : written.error();
}

TEST_F(PictureFile, IsWrittenWhole) {
  EXPECT_EQ(failure(folder / "card.png", "picture"), "written");
  EXPECT_EQ(contents(folder / "card.png"), "picture");
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(PictureFile, ReplacesAnEarlierOne) {
  std::ofstream(folder / "card.png") << "an older and longer picture";
  EXPECT_EQ(failure(folder / "card.png", "new"), "written");
  EXPECT_EQ(contents(folder / "card.png"), "new");
}

TEST_F(PictureFile, FollowsASymbolicLink) {
  fs::create_symlink(folder / "real.png", folder / "link.png");
  std::ofstream(folder / "real.png") << "old";
  EXPECT_EQ(failure(folder / "link.png", "new"), "written");
  EXPECT_TRUE(fs::is_symlink(folder / "link.png"));
  EXPECT_EQ(contents(folder / "real.png"), "new");
}

TEST_F(PictureFile, OfAMissingFolderSaysSo) {
  EXPECT_EQ(failure(folder / "no" / "card.png", "x"), "cannot write the picture " +
                                                          (folder / "no" / "card.png").string() +
                                                          ": No such file or directory");
}

TEST_F(PictureFile, IsNeverAFolder) {
  EXPECT_EQ(failure(folder, "x"),
            "cannot write the picture " + folder.string() + ": Is a directory");
}

// A device is written to in its place; putting a file there would replace the device.
TEST_F(PictureFile, OfAFullDeviceSaysSoAndLeavesTheDevice) {
  EXPECT_EQ(failure("/dev/full", "x"),
            "cannot write the picture /dev/full: No space left on device");
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST_F(PictureFile, IsWrittenBesideWhatAKilledProgramLeftBehind) {
  std::ofstream(folder / (".card.png." + std::to_string(getpid()) + ".0.part")) << "half";
  EXPECT_EQ(failure(folder / "card.png", "picture"), "written");
  EXPECT_EQ(contents(folder / "card.png"), "picture");
}

/// Lets files grow no further than `bytes` while it lives, as a full disk would.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit limit = before_;
    limit.rlim_cur = bytes;
    previous_ = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, previous_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*previous_)(int) = nullptr;
};

TEST_F(PictureFile, ThatDoesNotFitLeavesTheEarlierOneAndNothingElse) {
  std::ofstream(folder / "card.png") << "old";
  std::string error;
  {
    const FileSizeLimit limit(1000);
    error = failure(folder / "card.png", std::string(5000, 'x'));
  }
  EXPECT_THAT(error, testing::HasSubstr("File too large"));
  EXPECT_EQ(contents(folder / "card.png"), "old");
  EXPECT_EQ(filesInFolder(), 1U);
}

}  // namespace
}  // namespace lanternfold
