#include "PlatformLinux/System/GlibMainRunner.h"

#include <deque>
#include <glib.h>
#include <mutex>

namespace lanternfold {
namespace {

/// After input, and after the layout and the drawing of windows, for which the toolkit takes the
/// priorities up to this one.
constexpr gint afterDrawing = G_PRIORITY_HIGH_IDLE + 30;
constexpr gint64 atOnce = 0;
constexpr gint64 never = -1;

struct SourceCloser {
  void operator()(GSource* source) const {
    g_source_destroy(source);
    g_source_unref(source);
  }
};

/// The source has no descriptor and no time of its own: whoever schedules makes it ready.
GSourceFuncs callAndGoOn{
    .prepare = nullptr,
    .check = nullptr,
    .dispatch = [](GSource* /*source*/, GSourceFunc call, gpointer data) { return call(data); },
    .finalize = nullptr,
    .closure_callback = nullptr,
    .closure_marshal = nullptr};

}  // namespace

struct GlibMainRunner::Turns {
  Turns() : source(g_source_new(&callAndGoOn, sizeof(GSource))) {
    g_source_set_static_name(source.get(), "main queue");
    g_source_set_priority(source.get(), afterDrawing);
    g_source_set_callback(source.get(), &giveNext, this, /*notify=*/nullptr);
    g_source_attach(source.get(), /*context=*/nullptr);
  }

  void add(WorkQueue& queue) {
    const std::lock_guard lock(mutex);
    waiting.push_back(&queue);
    g_source_set_ready_time(source.get(), atOnce);
  }

  WorkQueue* takeNext() {
    const std::lock_guard lock(mutex);
    if (waiting.empty()) return nullptr;
    WorkQueue* const next = waiting.front();
    waiting.pop_front();
    if (waiting.empty()) g_source_set_ready_time(source.get(), never);
    return next;
  }

  static gboolean giveNext(gpointer turns) {
    auto& own = *static_cast<Turns*>(turns);
    WorkQueue* const queue = own.takeNext();
    if (queue != nullptr && queue->takeTurn()) own.add(*queue);
    return G_SOURCE_CONTINUE;
  }

  const std::unique_ptr<GSource, SourceCloser> source;
  std::mutex mutex;
  std::deque<WorkQueue*> waiting;  // guarded by mutex
};

GlibMainRunner::GlibMainRunner() : turns_(std::make_unique<Turns>()) {}

GlibMainRunner::~GlibMainRunner() = default;

void GlibMainRunner::schedule(WorkQueue& queue) { turns_->add(queue); }

}  // namespace lanternfold
