#include "PlatformLinux/Bus/BusThread.h"

#include <algorithm>
#include <future>
#include <limits>
#include <utility>

#include "PlatformLinux/System/ThreadTraits.h"

namespace lanternfold {
namespace {

gboolean runWork(gpointer work) {
  (*static_cast<BusThread::Work*>(work))();
  return G_SOURCE_REMOVE;
}

void destroyWork(gpointer work) { delete static_cast<BusThread::Work*>(work); }

void attach(GSource* source, BusThread::Work work, GMainContext* context) {
  g_source_set_callback(source, runWork, new BusThread::Work(std::move(work)), destroyWork);
  g_source_attach(source, context);
}

}  // namespace

BusThread::BusThread()
    : context_(g_main_context_new()),
      loop_(g_main_loop_new(context_.get(), FALSE)),
      thread_([this] {
        nameCurrentThread("session-bus");
        g_main_context_push_thread_default(context_.get());
        g_main_loop_run(loop_.get());
        g_main_context_pop_thread_default(context_.get());
      }) {}

BusThread::~BusThread() {
  post([this] { g_main_loop_quit(loop_.get()); });
  thread_.join();
}

void BusThread::post(Work work) {
  GSource* const source = g_idle_source_new();
  g_source_set_priority(source, G_PRIORITY_DEFAULT);
  attach(source, std::move(work), context_.get());
  g_source_unref(source);
}

void BusThread::runAndWait(Work work) {
  std::promise<void> done;
  post([&work, &done] {
    work();
    done.set_value();
  });
  done.get_future().wait();
}

BusTimer BusThread::after(std::chrono::milliseconds delay, Work work) {
  const auto milliseconds = std::clamp<std::chrono::milliseconds::rep>(
      delay.count(), 0, std::numeric_limits<guint>::max());
  BusTimer timer(g_timeout_source_new(static_cast<guint>(milliseconds)));
  attach(timer.get(), std::move(work), context_.get());
  return timer;
}

void BusThread::finishWhatIsDue() {
  while (g_main_context_iteration(context_.get(), FALSE) != FALSE) {
  }
}

void BusThread::waitForNext() { g_main_context_iteration(context_.get(), TRUE); }

}  // namespace lanternfold
