// What the previews of a gallery ask the extension, and in which order.
//
// Pure, but for the extension. Made by: the gallery's window, for each catalogue that it shows.
// Main thread.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "WidgetHost/Desk/WidgetDesk.h"
#include "WidgetHost/Service/WidgetExtension.h"

namespace lanternfold {

/// What a widget of that kind and family shows of this machine, as one on the desktop has it from
/// the extension already, with nothing chosen by the user; none when no such one is up to date.
[[nodiscard]] std::optional<ViewEntry> previewOnDesktop(const std::vector<Card>& cards,
                                                        const std::string& kind,
                                                        WidgetFamily family);

/// Samples at once. What is shown of this machine is asked for one after the other: each question
/// may have the public services asked, of whose answers the extension keeps what the next one
/// needs.
class PreviewQuestions {
 public:
  using OnDesktop =
      std::function<std::optional<ViewEntry>(const std::string& kind, WidgetFamily family)>;
  using Show = std::function<void(const ViewEntry& entry)>;

  /// What `onDesktop` knows is not asked for. Everything outlives this.
  PreviewQuestions(WidgetExtension& extension, OnDesktop onDesktop);
  /// Takes back what is not answered; nothing is shown any more.
  ~PreviewQuestions();
  PreviewQuestions(const PreviewQuestions&) = delete;
  PreviewQuestions& operator=(const PreviewQuestions&) = delete;

  /// `show` is called with each entry that is better than the one before, perhaps inside of the
  /// call; never with a failure, after which the former one stands.
  void ask(const std::string& kind, WidgetFamily family, Show show);

 private:
  struct Preview {
    std::string kind;
    WidgetFamily family = WidgetFamily::small;
    Show show;
  };

  void askForSample(const Preview& preview);
  void askNext();

  WidgetExtension& extension_;
  OnDesktop onDesktop_;
  std::vector<WidgetExtension::Question> samples_;
  std::deque<Preview> waiting_;  ///< the first one's timeline is asked for
  WidgetExtension::Question timeline_ = 0;
  /// What answers look at that may come when this is gone.
  std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

}  // namespace lanternfold
