// The widgets of a desktop without the desktop: which there are, what each of them shows, and when
// the extension is asked anew.
//
// Made by: the host's composition. Seen by: the windows, which are told of changes, and the verbs
// that come over the message bus.
#pragma once

#include <chrono>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "NetworkWidgetVexExtension/Bundle/WidgetKinds.h"
#include "Platform/Clock.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/Dispatch.h"
#include "Platform/StringTable.h"
#include "Support/RelativeDateText.h"
#include "WidgetHost/Placement/MonitorLayout.h"
#include "WidgetHost/Service/WidgetExtension.h"
#include "WidgetHost/Store/PlacedWidget.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

class WidgetStore;

/// What the windows draw of one widget.
struct Card {
  PlacedWidget placed;
  /// Where it stands, inside of the work area of a monitor that is there; none without a monitor.
  /// Of one that is remembered elsewhere it changes only with the monitors, or by the user.
  std::optional<MonitorPosition> shownAt = std::nullopt;
  /// What the extension has answered last, or a card of the host's own (`CardContent::Face`). Never
  /// trusted beyond what the archive of views checks.
  View view;
  /// When what `view` shows was true; none before the first answer.
  std::optional<std::chrono::system_clock::time_point> date = std::nullopt;
  bool isSample = false;   ///< a placeholder: no timeline has come yet
  bool isStale = false;    ///< two reloads in a row have failed; `view` says so
  bool isAwaited = false;  ///< the user has asked for something newer, which is not there yet
  friend bool operator==(const Card&, const Card&) = default;
};

/// Hears of what changes; on the main queue, never inside of the call that changes it.
class WidgetDeskObserver {
 public:
  virtual ~WidgetDeskObserver() = default;
  /// It stands in `cards()`, which may have changed further.
  virtual void cardAdded(const std::string& id) = 0;
  /// Its view, size or place.
  virtual void cardChanged(const std::string& id) = 0;
  /// It is not in `cards()` any more.
  virtual void cardRemoved(const std::string& id) = 0;
  /// The extension's catalogue has become known.
  virtual void catalogueChanged() = 0;
};

/// Everything on the main queue.
class WidgetDesk {
 public:
  struct Surroundings {
    WidgetExtension& extension;
    WidgetStore& store;
    DispatchQueue& mainQueue;
    const Clock& clock;
    const StringTable& strings;
    DiagnosticLog& log;
  };
  struct Options {
    /// Between two questions for a timeline that ends, at the least.
    std::chrono::nanoseconds refreshInterval = std::chrono::minutes(5);
    /// Those of the extension as far as they are known without it.
    std::vector<WidgetKind> knownWidgets = {};
    /// By which the cards say when their content was made.
    DateHabits dates = {};
  };

  /// Everything in `surroundings` outlives the desk.
  WidgetDesk(const Surroundings& surroundings, const Options& options);
  ~WidgetDesk();
  WidgetDesk(const WidgetDesk&) = delete;
  WidgetDesk& operator=(const WidgetDesk&) = delete;

  /// Null for none; outlives the desk or is set to null before.
  void setObserver(WidgetDeskObserver* observer);

  /// Reads the store, and asks the extension for its catalogue and then for what to show. Without
  /// a store, or with a damaged one, each kind of the catalogue stands on the desktop once, as soon
  /// as there is a monitor. While the extension fails to say its catalogue the known widgets stand
  /// there, which are not remembered before the user changes one of them. Once.
  void start();

  /// In the store's order. A widget of a kind that the extension does not have is remembered, and
  /// is no card.
  [[nodiscard]] std::vector<Card> cards() const;
  [[nodiscard]] std::optional<Card> card(std::string_view id) const;
  /// In the order of a gallery; empty before it is known, not empty from then on.
  [[nodiscard]] const std::vector<WidgetDescription>& catalogue() const;
  /// Whether a first set of cards is still to come, on a desktop that nobody has begun.
  [[nodiscard]] bool awaitsDefaultSet() const;

  /// What the user does. The error is one sentence for the user, without its full stop. Whatever
  /// succeeds is on the disk, or the log says why not.
  /// Adds a widget with its largest size, or `family`, at `position`, or where there is room; its
  /// id.
  [[nodiscard]] std::expected<std::string, std::string> add(
      const std::string& kind, std::optional<WidgetFamily> family,
      ConfigurationParameters configuration, std::optional<MonitorPosition> position);
  [[nodiscard]] std::expected<void, std::string> remove(std::string_view id);
  [[nodiscard]] std::expected<void, std::string> resize(std::string_view id, WidgetFamily family);
  [[nodiscard]] std::expected<void, std::string> configure(std::string_view id,
                                                           ConfigurationParameters configuration);
  [[nodiscard]] std::expected<void, std::string> move(std::string_view id,
                                                      const MonitorPosition& position);
  /// Asks anew at once, whatever the schedule says, unless the session is locked; lets an extension
  /// that is left alone be started again.
  [[nodiscard]] std::expected<void, std::string> reload(std::string_view id);
  void reloadAll();
  /// The same, when what is shown may be shown no longer: until it is answered each card is as it
  /// was before its first answer, and no answer counts that is under way.
  void forgetAll();
  /// A button of a card was pressed: has the extension perform its intent and asks anew; the button
  /// of the host's own cards lets the extension be started again, and asks anew.
  void press(std::string_view id, const std::string& intent);

  /// What the machine does.
  void monitorsChanged(std::vector<MonitorArea> monitors);
  void networkPathChanged();
  void resumed();
  void setLocked(bool isLocked);

 private:
  class State;
  std::shared_ptr<State> state_;
};

}  // namespace lanternfold
