#include "PlatformLinux/System/EventLoop.h"

#include <future>
#include <string>
#include <utility>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>

#include "PlatformLinux/System/ThreadTraits.h"
#include "Support/FatalError.h"

namespace lanternfold {

EventLoop::EventLoop(std::string_view threadName)
    : context_(std::make_unique<asio::io_context>()),
      thread_([&context = *context_, name = std::string(threadName),
               guard = asio::make_work_guard(*context_)] {
        nameCurrentThread(name);
        context.run();
      }) {}

EventLoop::~EventLoop() {
  if (isCurrent()) fatalError("an event loop was destroyed by one of its own handlers");
  context_->stop();
  thread_.join();
}

void EventLoop::post(Work work) { asio::post(*context_, std::move(work)); }

void EventLoop::runAndWait(Work work) {
  if (isCurrent()) {
    work();
    return;
  }
  std::promise<void> done;
  post([&work, &done] {
    work();
    done.set_value();
  });
  done.get_future().wait();
}

bool EventLoop::isCurrent() const { return std::this_thread::get_id() == thread_.get_id(); }

}  // namespace lanternfold
