// Programs in memory: the test is the program that was started last.
#pragma once

#include <chrono>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "Platform/ChildProgram.h"
#include "Platform/Dispatch.h"
#include "Support/FatalError.h"
#include "Tests/Support/FakeByteStream.h"

namespace lanternfold {

/// What the program does takes effect on the queue, as works of it, in the order of the calls. It
/// leaves by itself when it is let go, unless it is stubborn.
class FakeChildPrograms final : public ChildProgramLauncher {
 public:
  /// `queue` outlives this and the programs.
  explicit FakeChildPrograms(DispatchQueue& queue) : queue_(queue) {}

  // The program, or the system.

  /// The next launches fail so; an empty error brings back success.
  void setLaunchError(std::error_code error) { launchError_ = error; }
  /// All that were tried.
  [[nodiscard]] int launches() const { return launches_; }
  /// Whether the last one has not ended.
  [[nodiscard]] bool isRunning() const { return process_ && !process_->end; }
  [[nodiscard]] bool wasKilled() const { return process_ && process_->end == killed; }
  /// Whether somebody holds it.
  [[nodiscard]] bool isHeld() const { return process_ && process_->stream != nullptr; }

  void deliver(std::string bytes) {
    if (isHeld()) process_->stream->deliver(std::move(bytes));
  }
  void say(const std::string& line) { deliver(line + '\n'); }
  /// The whole lines that it was told since the last call.
  [[nodiscard]] std::vector<std::string> takeLines() {
    std::vector<std::string> lines;
    if (isHeld()) process_->unread += process_->stream->take();
    if (!process_) return lines;
    for (std::size_t end = 0; (end = process_->unread.find('\n')) != std::string::npos;) {
      lines.push_back(process_->unread.substr(0, end));
      process_->unread.erase(0, end + 1);
    }
    return lines;
  }
  void setReading(bool reading) {
    if (isHeld()) process_->stream->setReading(reading);
  }
  /// It runs on, and nothing comes from it any more.
  void closeSocket() {
    if (isHeld()) process_->stream->end(ByteStream::End::gone);
  }
  void end(ChildEnd end) { endProcess(process_, end); }
  /// The last one does not leave when it is let go.
  void setStubborn() { process_->isStubborn = true; }

  // The host.

  [[nodiscard]] std::expected<std::unique_ptr<ChildProgram>, std::error_code> launch() override {
    ++launches_;
    if (launchError_) return std::unexpected(launchError_);
    process_ = std::make_shared<Process>();
    return std::make_unique<Program>(*this, process_);
  }

 private:
  static constexpr ChildEnd killed{.exitStatus = std::nullopt, .signal = 9};

  struct Process {
    FakeByteStream* stream = nullptr;  ///< null when nobody holds it
    std::string unread;
    std::optional<ChildEnd> end;
    std::function<void(ChildEnd)> ended;
    bool isStubborn = false;
  };

  class Program final : public ChildProgram {
   public:
    Program(FakeChildPrograms& programs, std::shared_ptr<Process> process)
        : programs_(programs), process_(std::move(process)), stream_(programs.queue_) {
      process_->stream = &stream_;
    }
    ~Program() override {
      (void)process_->unread.append(stream_.take());
      process_->stream = nullptr;
      process_->ended = nullptr;
      programs_.letGo(process_);
    }

    [[nodiscard]] ByteStream& stream() override { return stream_; }
    void setEndHandler(std::function<void(ChildEnd)> ended) override {
      if (process_->ended) fatalError("a child program was given a second end handler");
      process_->ended = std::move(ended);
      if (process_->end) programs_.tellEnd(process_);
    }
    void kill() override { programs_.endProcess(process_, killed); }

   private:
    FakeChildPrograms& programs_;
    std::shared_ptr<Process> process_;
    FakeByteStream stream_;
  };

  void endProcess(const std::shared_ptr<Process>& process, ChildEnd end) {
    if (!process || process->end) return;
    process->end = end;
    if (process->stream != nullptr) process->stream->end(ByteStream::End::gone);
    if (process->ended) tellEnd(process);
  }
  void tellEnd(const std::shared_ptr<Process>& process) {
    queue_.async([process] {
      const auto ended = process->ended;
      if (ended) ended(*process->end);
    });
  }
  void letGo(const std::shared_ptr<Process>& process) {
    if (!process->isStubborn) return endProcess(process, {.exitStatus = 0});
    queue_.after(std::chrono::seconds(2), [process] {
      if (!process->end) process->end = killed;
    });
  }

  DispatchQueue& queue_;
  std::error_code launchError_;
  int launches_ = 0;
  std::shared_ptr<Process> process_;
};

}  // namespace lanternfold
