#include "PlatformLinux/System/SocketChildProgram.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "PlatformLinux/System/ProgramOutput.h"
#include "PlatformLinux/System/ProgramSupervision.h"
#include "PlatformLinux/System/SocketByteStream.h"
#include "PlatformLinux/System/SpawnedProcess.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

/// A stream that knows whether more can come from it.
class WatchedStream final : public ByteStream {
 public:
  WatchedStream(std::unique_ptr<ByteStream> stream, std::function<void()> silent)
      : stream_(std::move(stream)), silent_(std::move(silent)) {}

  void start(Handlers handlers) override {
    isOpen_ = true;
    stream_->start({.received = std::move(handlers.received),
                    .ended = [this, ended = std::move(handlers.ended)](End end) {
                      isOpen_ = false;
                      if (ended) ended(end);
                      silent_();
                    }});
  }
  void send(std::string bytes) override { stream_->send(std::move(bytes)); }
  void flush(std::function<void()> done) override { stream_->flush(std::move(done)); }

  /// Whether it has been started and has not come to its end.
  [[nodiscard]] bool isOpen() const { return isOpen_; }

 private:
  std::unique_ptr<ByteStream> stream_;
  std::function<void()> silent_;
  bool isOpen_ = false;
};

class SocketChildProgram final : public ChildProgram {
 public:
  SocketChildProgram(std::unique_ptr<ByteStream> stream, int socket,
                     std::shared_ptr<ProgramSupervision> supervision, DispatchQueue& mainQueue)
      : socket_(socket),
        supervision_(std::move(supervision)),
        mainQueue_(mainQueue),
        stream_(std::move(stream), [this] { tellWhenAllIsHeard(); }) {
    supervision_->start([this](ChildEnd end) { processEnded(end); });
  }
  ~SocketChildProgram() override { supervision_->letGo(); }

  [[nodiscard]] ByteStream& stream() override { return stream_; }
  void setEndHandler(std::function<void(ChildEnd)> ended) override {
    if (ended_) fatalError("a child program was given a second end handler");
    ended_ = std::move(ended);
    tellWhenAllIsHeard();
  }
  void kill() override { supervision_->kill(); }

 private:
  void processEnded(ChildEnd end) {
    end_ = end;
    // What it has said waits in the socket, and is read to its end; whoever has inherited the
    // socket from it says nothing more.
    (void)::shutdown(socket_, SHUT_RDWR);
    tellWhenAllIsHeard();
  }

  /// Later, since a handler may destroy this, which none of the stream's may.
  void tellWhenAllIsHeard() {
    if (!end_ || !ended_ || stream_.isOpen() || std::exchange(isTelling_, true)) return;
    mainQueue_.async([living = std::weak_ptr(self_)] {
      const auto self = living.lock();
      if (!self) return;
      const auto ended = (*self)->ended_;
      ended(*(*self)->end_);
    });
  }

  const int socket_;  ///< that of the stream, which owns it
  std::shared_ptr<ProgramSupervision> supervision_;
  DispatchQueue& mainQueue_;
  std::function<void(ChildEnd)> ended_;
  std::optional<ChildEnd> end_;
  bool isTelling_ = false;
  /// Expires with this.
  std::shared_ptr<SocketChildProgram*> self_ = std::make_shared<SocketChildProgram*>(this);
  WatchedStream stream_;
};

}  // namespace

SocketChildProgramLauncher::SocketChildProgramLauncher(std::filesystem::path program,
                                                       std::vector<std::string> arguments,
                                                       EventLoop& loop, DispatchQueue& mainQueue,
                                                       OutputOfNext outputOfNext)
    : program_(std::move(program)),
      arguments_(std::move(arguments)),
      loop_(loop),
      mainQueue_(mainQueue),
      outputOfNext_(std::move(outputOfNext)),
      running_(std::make_shared<RunningPrograms>()) {
  arguments_.emplace_back("--service-fd");
  arguments_.push_back(std::to_string(SpawnedProcess::socketNumber));
}

SocketChildProgramLauncher::~SocketChildProgramLauncher() {
  // One that is killed may take a moment to go, and for ever when a device does not let it.
  (void)running_->waitUntilAllEnded(ProgramSupervision::farewell + 500ms);
}

std::expected<SpawnedProcess, std::error_code> SocketChildProgramLauncher::startOn(
    int socket) const {
  DiagnosticLog* const log = outputOfNext_();
  if (log == nullptr) return SpawnedProcess::start(program_, arguments_, socket);
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    return std::unexpected(std::error_code(errno, std::generic_category()));
  }
  FileDescriptor ours(ends[0]);
  const FileDescriptor theirs(ends[1]);
  const auto output = std::make_shared<ProgramOutput>(std::move(ours), loop_, *log);
  if (const std::error_code fault = output->watch()) return std::unexpected(fault);
  auto process = SpawnedProcess::start(program_, arguments_, socket, theirs.get());
  if (process) output->start();
  return process;
}

std::expected<std::unique_ptr<ChildProgram>, std::error_code> SocketChildProgramLauncher::launch() {
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    return std::unexpected(std::error_code(errno, std::generic_category()));
  }
  const FileDescriptor theirs(ends[1]);
  auto stream = SocketByteStream::adopt(ends[0], loop_, mainQueue_);
  if (!stream) {
    (void)::close(ends[0]);
    return std::unexpected(stream.error());
  }
  auto process = startOn(theirs.get());
  if (!process) return std::unexpected(process.error());
  auto supervision =
      std::make_shared<ProgramSupervision>(*std::move(process), loop_, mainQueue_, running_);
  if (const std::error_code fault = supervision->watch()) return std::unexpected(fault);
  return std::make_unique<SocketChildProgram>(*std::move(stream), ends[0], std::move(supervision),
                                              mainQueue_);
}

}  // namespace lanternfold
