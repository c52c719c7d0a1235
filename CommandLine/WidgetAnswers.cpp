#include "CommandLine/WidgetAnswers.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <variant>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// Shared with answers that come after the limit.
struct Wait {
  std::vector<std::optional<WidgetResponder::Answer>> answers;
  std::size_t missing = 0;
  bool isLoopRunning = false;
};

std::expected<std::vector<ServiceResult>, CommandFailure> resultsOf(Wait& wait) {
  std::vector<ServiceResult> results;
  for (auto& answer : wait.answers) {
    if (answer && !*answer) return std::unexpected(workFailed(answer->error().message));
    if (answer) results.push_back(*std::move(*answer));
  }
  if (wait.missing == 0) return results;
  return std::unexpected(workFailed("this machine's state is not known after 30 s"));
}

}  // namespace

std::expected<std::vector<ServiceResult>, CommandFailure> widgetAnswers(
    std::span<const EntryCall> calls, const WidgetResponder& responder, const Machine& machine) {
  constexpr std::chrono::seconds limit{30};
  const auto wait = std::make_shared<Wait>();
  wait->answers.resize(calls.size());
  wait->missing = calls.size();
  for (std::size_t index = 0; index < calls.size(); ++index) {
    responder.respond(calls[index], [wait, index, loop = std::ref(machine.mainLoop)](
                                        WidgetResponder::Answer answer) {
      wait->answers[index] = std::move(answer);
      if (--wait->missing == 0 && wait->isLoopRunning) loop.get().stop();
    });
  }
  if (wait->missing > 0) {
    wait->isLoopRunning = true;
    machine.mainLoop.runFor(limit);
    wait->isLoopRunning = false;
  }
  return resultsOf(*wait);
}

const View& shownView(const ServiceResult& result) {
  if (const auto* entry = std::get_if<ViewEntry>(&result)) return entry->view;
  const auto* timeline = std::get_if<Timeline<ViewEntry>>(&result);
  if (timeline == nullptr || timeline->entries.empty()) {
    fatalError("a widget answered with neither an entry nor a timeline");
  }
  return timeline->entries.front().view;
}

}  // namespace lanternfold
