// All widgets of the desktop as windows: follows what the desk says, and where monitors are.
//
// Made by: `HostDesktop`, once. Main thread.
#pragma once

#include <functional>
#include <glibmm/main.h>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "HostProgram/Cards/CardWindow.h"
#include "HostProgram/Display/Monitors.h"
#include "Platform/Clock.h"
#include "Platform/DiagnosticLog.h"
#include "WidgetHost/Desk/WidgetDesk.h"

namespace lanternfold {

class DesktopWindows final : public WidgetDeskObserver {
 public:
  struct Surroundings {
    WidgetDesk& desk;
    CardDrawing& drawing;
    WindowPlacer& placer;
    const Clock& clock;
    DiagnosticLog& log;
  };
  struct Handlers {
    std::function<void(const std::string& url)> openLink;
    /// `event` as of `CardWindow`.
    std::function<void(const std::string& id, const GdkEvent& event)> openMenu;
    std::function<void(const std::string& id)> removalAsked;
    /// Its window has come, or will when there is a monitor.
    std::function<void()> cardAdded;
    /// Its window is about to go.
    std::function<void(const std::string& id)> cardRemoved;
    std::function<void()> catalogueChanged;
    /// A card has come onto the screen.
    std::function<void()> shown;
  };

  /// Everything outlives the windows, none of which is on the screen yet. The desk is told of the
  /// monitors, and is to be started.
  DesktopWindows(const Surroundings& surroundings, Handlers handlers);
  ~DesktopWindows() override;
  DesktopWindows(const DesktopWindows&) = delete;
  DesktopWindows& operator=(const DesktopWindows&) = delete;

  void setScheme(ColourScheme scheme);

  /// From now on they are on the screen. Once.
  void reveal();
  [[nodiscard]] bool hasMonitors() const { return !monitors_.empty(); }

  /// That of the card `id`; null when there is none. For the turn of the main loop: nobody keeps it
  /// longer.
  [[nodiscard]] CardWindow* window(const std::string& id);

  /// Above all other windows for a while, so that a user finds them, with the keyboard's focus in
  /// the first one.
  void raiseAll();
  /// Back below the windows, before the while is over.
  void lowerAll();

  void cardAdded(const std::string& id) override;
  void cardChanged(const std::string& id) override;
  void cardRemoved(const std::string& id) override;
  void catalogueChanged() override;

 private:
  [[nodiscard]] CardWindow::Handlers handlersOf(const std::string& id);
  void show(CardWindow& window, const Card& card);
  void place(CardWindow& window, const Card& card);
  void countMonitors();
  void placeAll();
  [[nodiscard]] std::optional<CardWindow::Landing> landing(const std::string& id,
                                                           const CardDrag& drag) const;
  [[nodiscard]] std::vector<StandingWidget> standingBeside(const std::string& id) const;
  void step(const std::string& id, int right, int down);
  void move(const std::string& id, const MonitorPosition& position);
  void keepPlace(const std::string& id, const Rect& frame);
  [[nodiscard]] std::vector<std::string> shownCards();
  void focusNextTo(const std::string& id, bool isForward);
  void lowerLater();

  Surroundings surroundings_;
  Handlers handlers_;
  std::vector<PlacedMonitor> monitors_;
  std::vector<MonitorArea> areas_;  ///< of `monitors_`
  std::map<std::string, CardWindow> windows_;
  bool isRevealed_ = false;
  sigc::connection lowering_;
  std::unique_ptr<MonitorWatch> monitorWatch_;
};

}  // namespace lanternfold
