// The consent inside a sandbox as two programs of one user have it: on a private bus, with the real
// permission store.
#include <array>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <future>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include "PlatformLinux/Location/BusLocationPortal.h"
#include "PlatformLinux/Location/PortalLocationConsent.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/PosixFileSystem.h"
#include "Tests/PlatformLinux/ChildProcess.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;

constexpr const char* application = "net.quernaple.LanternfoldTest";
constexpr const char* storeName = "org.freedesktop.impl.portal.PermissionStore";
// To the second program: the world's folder, and the pipe through which it tells how far it is.
constexpr const char* folderVariable = "LANTERNFOLD_TEST_FOLDER";
constexpr const char* pipeVariable = "LANTERNFOLD_TEST_PIPE";

std::string busAddressIn(const fs::path& folder) {
  return "unix:path=" + (folder / "bus").string();
}
fs::path dataFolderIn(const fs::path& folder) { return folder / "data"; }

/// Replaces the calling process, which is a child's.
int become(std::vector<std::string> words) {
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  ::execvp(arguments.front(), arguments.data());
  return 127;
}

/// A program inside the sandbox that holds a manager. The test's thread is its main thread.
class SandboxedProgram {
 public:
  SandboxedProgram(const fs::path& data, const std::string& busAddress)
      : directory_(data), busAddress_(busAddress) {}

  [[nodiscard]] std::int32_t status() const { return consent_.authorizationStatus(); }
  [[nodiscard]] const RecordingDiagnosticLog& log() const { return log_; }

  /// Waits for a call of the handler that finds this status; false when it takes longer than any
  /// machine should need.
  [[nodiscard]] bool runUntilSeen(std::int32_t status) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (seen_ != status && std::chrono::steady_clock::now() < limit) {
      static_cast<void>(
          dispatch_.runMainUntil(std::chrono::steady_clock::now() + std::chrono::milliseconds(2)));
    }
    return seen_ == status;
  }

 private:
  DataDirectory directory_;
  const std::string busAddress_;
  PosixFileSystem files_;
  RecordingDiagnosticLog log_;
  ConsentRecord record_{consentPlaceIn(directory_, ConsentKeeper::portal), files_, log_};
  std::int32_t seen_ = -1;
  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  PortalLocationConsent consent_{
      {.record = record_, .loop = loop_, .dispatch = dispatch_, .log = log_},
      record_,
      std::make_unique<BusLocationPortal>(PortalSurroundings{
          .busAddress = busAddress_,
          .applicationId = application,
          .limits = {.look = std::chrono::seconds(30), .reply = std::chrono::seconds(30)}})};
  std::unique_ptr<LocationManager> manager_ =
      consent_.makeLocationManager([this] { seen_ = status(); });
};

/// The session of one user, in a folder of its own.
class PortalSessionWorld {
 public:
  PortalSessionWorld() {
    folder_.write(
        "bus.conf",
        "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\""
        " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\"><busconfig>"
        "<listen>" +
            address_ +
            "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
            "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
            "<allow own=\"*\"/></policy></busconfig>");
    processes_.push_back(serve({"dbus-daemon", "--nofork", "--nosyslog",
                                "--config-file=" + (folder_ / "bus.conf").string()}));
    processes_.push_back(serve({"/usr/libexec/xdg-permission-store"}));
    processes_.push_back(serve({"/usr/bin/python3", "-B",
                                LANTERNFOLD_SOURCE_DIR "/Tests/System/odd_portal.py", "patient"}));
  }

  PortalSessionWorld(const PortalSessionWorld&) = delete;
  PortalSessionWorld& operator=(const PortalSessionWorld&) = delete;

  [[nodiscard]] const fs::path& folder() const { return folder_.path(); }
  void waitForServices() const {
    ASSERT_TRUE(waitForOwner(storeName));
    ASSERT_TRUE(waitForOwner("org.freedesktop.portal.Desktop"));
  }
  /// As the system's settings do.
  void setPermission(const std::string& accuracy) const {
    ASSERT_TRUE(call(std::string(storeName) + " /org/freedesktop/impl/portal/PermissionStore " +
                     storeName +
                     ".SetPermission string:location boolean:true string:location "
                     "string:" +
                     application + " array:string:" + accuracy + ",0"));
  }
  void decideBefore(ConsentDecision decision) const {
    const DataDirectory directory(dataFolderIn(folder_.path()));
    PosixFileSystem files;
    RecordingDiagnosticLog log;
    ASSERT_TRUE(ConsentRecord(consentPlaceIn(directory, ConsentKeeper::portal), files, log)
                    .record(decision));
  }

 private:
  [[nodiscard]] std::unique_ptr<ChildProcess> serve(const std::vector<std::string>& words) const {
    return std::make_unique<ChildProcess>([&] {
      ::setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), 1);
      ::setenv("XDG_DATA_HOME", folder_.path().c_str(), 1);
      // Whoever is to serve on the bus waits for it.
      const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
      while (words.front() != "dbus-daemon" && !fs::exists(folder_ / "bus") &&
             std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
      }
      return become(words);
    });
  }
  [[nodiscard]] bool call(const std::string& words) const {
    const std::string command = "dbus-send --print-reply --bus='" + address_ + "' --dest=" + words +
                                " >'" + (folder_ / "answer").string() + "' 2>&1";
    return std::system(command.c_str()) == 0;  // NOLINT(concurrency-mt-unsafe): one thread
  }
  [[nodiscard]] bool waitForOwner(const std::string& name) const {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < limit) {
      if (call("org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner string:" + name) &&
          folder_.bytesOf("answer").contains("true")) {
        return true;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
  }

  TemporaryFolder folder_;
  const std::string address_ = busAddressIn(folder_.path());
  std::vector<std::unique_ptr<ChildProcess>> processes_;
};

/// What the second program does: 0, or how far it came.
int watchAsSecondProgram(const fs::path& folder, int pipe) {
  SandboxedProgram program(dataFolderIn(folder), busAddressIn(folder));
  const auto tell = [&] { return ::write(pipe, "x", 1) == 1; };
  if (program.status() != 4 || !tell()) return 1;
  if (!program.runUntilSeen(2) || !tell()) return 2;
  return program.runUntilSeen(4) ? 0 : 3;
}

/// This test once more, in a program started anew: a mere copy of the process would lack the
/// threads that GLib keeps from the first connection on.
int becomeSecondProgram(const fs::path& folder, int pipe) {
  ::setenv(folderVariable, folder.c_str(), 1);
  ::setenv(pipeVariable, std::to_string(pipe).c_str(), 1);
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  return become({"/proc/self/exe", "--gtest_brief=1",
                 std::string("--gtest_filter=") + test->test_suite_name() + "." + test->name()});
}

TEST(BusLocationPortalTest, WhatIsDecidedInTheStoreIsHeardOfByEveryProgram) {
  // NOLINTBEGIN(concurrency-mt-unsafe): nobody writes the environment of the test's process
  if (const char* folder = std::getenv(folderVariable); folder != nullptr) {
    const std::string_view text = std::getenv(pipeVariable);
    // NOLINTEND(concurrency-mt-unsafe)
    int pipe = -1;
    ASSERT_EQ(std::from_chars(text.begin(), text.end(), pipe).ec, std::errc());
    ASSERT_EQ(watchAsSecondProgram(folder, pipe), 0);
    return;
  }
  const PortalSessionWorld world;
  ASSERT_NO_FATAL_FAILURE(world.waitForServices());
  world.setPermission("EXACT");
  world.decideBefore(ConsentDecision::authorizedWhenInUse);
  std::array<int, 2> told{};
  ASSERT_EQ(::pipe(told.data()), 0);
  ChildProcess other([&] { return becomeSecondProgram(world.folder(), told[1]); });
  ::close(told[1]);
  const auto otherHasTold = [&] {
    char byte = 0;
    return ::read(told[0], &byte, 1) == 1;
  };
  SandboxedProgram program(dataFolderIn(world.folder()), busAddressIn(world.folder()));
  EXPECT_EQ(program.status(), 4);
  EXPECT_TRUE(otherHasTold());
  world.setPermission("NONE");
  EXPECT_TRUE(program.runUntilSeen(2));
  EXPECT_TRUE(otherHasTold());
  world.setPermission("CITY");
  EXPECT_TRUE(program.runUntilSeen(4));
  EXPECT_EQ(other.wait(), 0);
  ::close(told[0]);
  EXPECT_THAT(program.log().lines(), IsEmpty());
}

/// Takes connections and never says a word.
class SilentBus {
 public:
  SilentBus() : listener_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = folder_ / "bus";
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(listener_, 8), 0);
  }
  ~SilentBus() { ::close(listener_); }
  SilentBus(const SilentBus&) = delete;
  SilentBus& operator=(const SilentBus&) = delete;

  [[nodiscard]] std::string address() const { return busAddressIn(folder_.path()); }

 private:
  TemporaryFolder folder_;
  const int listener_;
};

TEST(BusLocationPortalTest, WhoAsksOverABusThatHangsIsToldSo) {
  const SilentBus bus;
  std::promise<PortalOutcome> told;
  std::future<PortalOutcome> outcome = told.get_future();
  BusLocationPortal portal({.busAddress = bus.address(),
                            .applicationId = application,
                            .limits = {.reply = std::chrono::milliseconds(50)}});
  portal.ask([&](PortalOutcome given) { told.set_value(given); });
  ASSERT_EQ(outcome.wait_for(std::chrono::seconds(60)), std::future_status::ready);
  EXPECT_EQ(outcome.get(), PortalOutcome::noBus);
}

TEST(BusLocationPortalTest, WhoLooksAtABusThatHangsIsNotKeptWaiting) {
  const SilentBus bus;
  BusLocationPortal portal(
      {.busAddress = bus.address(),
       .applicationId = application,
       .limits = {.look = std::chrono::milliseconds(50), .reply = std::chrono::hours(1)}});
  EXPECT_EQ(portal.knowledge().portal, PortalOutcome::silent);
}

TEST(BusLocationPortalTest, ALookThatEndsLateIsHeardOfAsAChange) {
  const SilentBus bus;
  std::promise<void> changed;
  std::future<void> change = changed.get_future();
  BusLocationPortal portal(
      {.busAddress = bus.address(),
       .applicationId = application,
       .limits = {.look = std::chrono::milliseconds(1), .reply = std::chrono::milliseconds(500)}});
  portal.setChangeHandler([&] { changed.set_value(); });
  (void)portal.knowledge();
  ASSERT_EQ(change.wait_for(std::chrono::seconds(60)), std::future_status::ready);
  EXPECT_EQ(portal.knowledge().portal, PortalOutcome::noBus);
}

}  // namespace
}  // namespace lanternfold
