#include "HostProgram/Gallery/PreviewQuestions.h"

#include <algorithm>
#include <utility>

namespace lanternfold {
namespace {

WidgetRequest previewRequest(WidgetFamily family) {
  return {.family = family, .configuration = {}, .context = {.isPreview = true}};
}

}  // namespace

std::optional<ViewEntry> previewOnDesktop(const std::vector<Card>& cards, const std::string& kind,
                                          WidgetFamily family) {
  const auto card = std::ranges::find_if(cards, [&kind, family](const Card& each) {
    const bool isAlike = each.placed.kind == kind && each.placed.family == family &&
                         each.placed.configuration == ConfigurationParameters();
    return isAlike && each.date && !each.isSample && !each.isStale;
  });
  if (card == cards.end()) return std::nullopt;
  return ViewEntry{.date = *card->date, .view = card->view};
}

PreviewQuestions::PreviewQuestions(WidgetExtension& extension, OnDesktop onDesktop)
    : extension_(extension), onDesktop_(std::move(onDesktop)) {}

PreviewQuestions::~PreviewQuestions() {
  for (const WidgetExtension::Question sample : samples_) extension_.cancel(sample);
  extension_.cancel(timeline_);
}

void PreviewQuestions::ask(const std::string& kind, WidgetFamily family, Show show) {
  if (const auto known = onDesktop_(kind, family)) {
    show(*known);
    return;
  }
  waiting_.push_back({.kind = kind, .family = family, .show = std::move(show)});
  askForSample(waiting_.back());
  if (waiting_.size() == 1) askNext();
}

/// Asked for before the timeline of the same preview, and answered before it.
void PreviewQuestions::askForSample(const Preview& preview) {
  samples_.push_back(extension_.sample(
      WidgetExtension::SampleKind::snapshot, preview.kind, previewRequest(preview.family),
      [show = preview.show, alive = std::weak_ptr(isAlive_)](const auto& answer) {
        if (!alive.expired() && answer) show(*answer);
      }));
}

void PreviewQuestions::askNext() {
  if (waiting_.empty()) return;
  const Preview& preview = waiting_.front();
  timeline_ = extension_.timeline(preview.kind, previewRequest(preview.family),
                                  [this, alive = std::weak_ptr(isAlive_)](const auto& answer) {
                                    if (alive.expired()) return;
                                    const Preview answered = std::move(waiting_.front());
                                    waiting_.pop_front();
                                    if (answer && !answer->entries.empty())
                                      answered.show(answer->entries.front());
                                    askNext();
                                  });
}

}  // namespace lanternfold
