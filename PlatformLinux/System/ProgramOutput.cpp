#include "PlatformLinux/System/ProgramOutput.h"

#include <algorithm>
#include <utility>

#include <asio/buffer.hpp>
#include <asio/io_context.hpp>

#include "PlatformLinux/System/EventLoop.h"

namespace lanternfold {

ProgramOutput::ProgramOutput(FileDescriptor reading, EventLoop& loop, DiagnosticLog& log)
    : reading_(std::move(reading)), loop_(loop), log_(log), pipe_(loop.context()) {}

ProgramOutput::~ProgramOutput() {
  if (pipe_.is_open()) pipe_.release();
}

std::error_code ProgramOutput::watch() {
  std::error_code error;
  static_cast<void>(pipe_.assign(reading_.get(), error));
  // Asio's own kind of error is equal to none of the standard's.
  return {error.value(), std::generic_category()};
}

void ProgramOutput::start() {
  loop_.post([self = shared_from_this()] { self->read(); });
}

void ProgramOutput::read() {
  pipe_.async_read_some(asio::buffer(piece_), [self = shared_from_this()](
                                                  const std::error_code& error, std::size_t size) {
    if (error) return self->finishLine();
    self->take(std::string_view(self->piece_.data(), size));
    self->read();
  });
}

void ProgramOutput::take(std::string_view bytes) {
  if (taken_ == mostBytes) return;
  bytes = bytes.substr(0, mostBytes - taken_);
  taken_ += bytes.size();
  for (const char byte : bytes) {
    if (byte != '\n') {
      line_ += byte;
    } else {
      log_.line(std::exchange(line_, {}));
    }
  }
  if (taken_ < mostBytes) return;
  finishLine();
  log_.line("a program that the widgets have started goes on talking, which is not kept");
}

void ProgramOutput::finishLine() {
  if (!line_.empty()) log_.line(std::exchange(line_, {}));
}

}  // namespace lanternfold
