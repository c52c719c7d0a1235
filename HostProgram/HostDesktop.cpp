#include "HostProgram/HostDesktop.h"

#include <utility>

#include "HostProgram/BandwidthMonitor.h"
#include "HostProgram/Cards/DesktopWindows.h"
#include "HostProgram/Consent/ConsentQuestion.h"
#include "HostProgram/Consent/WifiNames.h"
#include "HostProgram/Dialogs/Dialogs.h"
#include "HostProgram/Dialogs/Removals.h"
#include "HostProgram/Display/SchemeWatch.h"
#include "HostProgram/Gallery/Gallery.h"
#include "HostProgram/Links/LinkOpener.h"
#include "HostProgram/Menu/CardMenus.h"
#include "Support/RelativeDateText.h"
#include "Wiring/DistinctDiagnosticLog.h"
#include "Wiring/DrawingLanguage.h"

namespace lanternfold {
namespace {

constexpr const char* consentSubject = "consent to Wi-Fi names";
/// Whoever waits for the widgets waits no longer, also for an extension that never answers.
constexpr unsigned shownLimitSeconds = 10;
constexpr std::string_view notThereYet =
    "the widgets are not there yet: the program that reads the network does not answer; they come "
    "when it does";
constexpr std::string_view noWidgets =
    "there are no widgets on the desktop; \"lanternfold-widgets show\" once more opens "
    "\"Add widget\"";

}  // namespace

/// In the order of construction: windows go before what they draw with and tell of.
class HostDesktop::Parts {
 public:
  Parts(WindowKind kind, const HostServices& services, Handlers handlers);
  ~Parts() { shownLimit_.disconnect(); }
  Parts(const Parts&) = delete;
  Parts& operator=(const Parts&) = delete;

  void raise();
  void openLink(const std::string& url);
  void openLinkFromOutside(const std::string& url);

 private:
  [[nodiscard]] std::string timeText(std::chrono::system_clock::time_point time) const;
  [[nodiscard]] CardMenus::Surroundings menuSurroundings(std::function<void()> quit);
  [[nodiscard]] DesktopWindows::Handlers windowHandlers();
  void listen();
  void openGallery();
  void askForConsent();
  void consentChanged(bool isRevoked);
  void cardRemoved(const std::string& id);
  void setScheme(ColourScheme scheme);
  void reveal();
  void catalogueChanged();
  void tellShown();

  HostServices services_;
  std::function<void()> shown_;  ///< null once it has been called
  sigc::connection shownLimit_;
  DistinctDiagnosticLog drawingLog_;
  PictureRenderer renderer_;
  CardDrawing drawing_;
  std::unique_ptr<WindowPlacer> placer_;
  Dialogs dialogs_;
  Removals removals_;
  Gallery gallery_;
  BandwidthMonitor bandwidth_;
  LinkOpener links_;
  WifiNames wifiNames_;
  CardMenus menus_;
  DesktopWindows windows_;
  std::unique_ptr<PathMonitor> paths_;
  bool hasHeardOfPath_ = false;
  SchemeWatch schemes_;
};

HostDesktop::Parts::Parts(WindowKind kind, const HostServices& services, Handlers handlers)
    : services_(services),
      shown_(std::move(handlers.shown)),
      drawingLog_(services.log),
      renderer_({.assetFolder = services.assets,
                 .report = [this](std::string_view line) { drawingLog_.line(line); },
                 .language = languageTag(services.language)}),
      drawing_{.renderer = renderer_,
               .report = [this](std::string_view line) { drawingLog_.line(line); },
               .direction = layoutDirection(services.language),
               .timeText = [this](auto time) { return timeText(time); }},
      placer_(makeWindowPlacer(kind)),
      dialogs_(services.strings, [this] { windows_.lowerAll(); }),
      removals_(services.desk, dialogs_, services.strings),
      gallery_(services_, drawing_,
               [this](const std::string& sentence) { dialogs_.tell(sentence); }),
      bandwidth_(services_, drawing_),
      links_(services.log, services.givenVariables,
             [this](const std::string& url) { bandwidth_.open(url); }),
      wifiNames_({.consent = services.locationConsent,
                  .record = services.consentRecord,
                  .authority = services.consentAuthority,
                  .extension = services.extension,
                  .hasWifi = services.hasWifi,
                  .askUser = [this] { askForConsent(); },
                  .changed = [this](bool isRevoked) { consentChanged(isRevoked); }}),
      menus_(menuSurroundings(std::move(handlers.quit))),
      windows_({.desk = services.desk,
                .drawing = drawing_,
                .placer = *placer_,
                .clock = services.clock,
                .log = services.log},
               windowHandlers()),
      paths_(services.pathMonitors.makePathMonitor(std::nullopt)),
      schemes_(services.appearance, services.forcedTheme,
               {.changed = [this](ColourScheme scheme) { setScheme(scheme); },
                .settled = [this] { reveal(); }}) {
  drawing_.scheme = schemes_.scheme();
  listen();
  services_.desk.start();
}

CardMenus::Surroundings HostDesktop::Parts::menuSurroundings(std::function<void()> quit) {
  return {.desk = services_.desk,
          .adapters = services_.adapters,
          .wifiNames = wifiNames_,
          .strings = services_.strings,
          .window = [this](const std::string& id) { return windows_.window(id); },
          .tell = [this](const std::string& sentence) { dialogs_.tell(sentence); },
          .addWidget = [this] { openGallery(); },
          .remove = [this](const std::string& id) { removals_.fromMenu(id); },
          .quit = std::move(quit)};
}

DesktopWindows::Handlers HostDesktop::Parts::windowHandlers() {
  return {
      .openLink = [this](const std::string& url) { openLink(url); },
      .openMenu = [this](const std::string& id, const GdkEvent& event) { menus_.open(id, event); },
      .removalAsked = [this](const std::string& id) { removals_.ask(id); },
      .cardAdded = [this] { removals_.cardAdded(); },
      .cardRemoved = [this](const std::string& id) { cardRemoved(id); },
      .catalogueChanged = [this] { catalogueChanged(); },
      .shown = [this] { tellShown(); }};
}

void HostDesktop::Parts::listen() {
  shownLimit_ = Glib::signal_timeout().connect_seconds(
      [this] {
        if (services_.desk.catalogue().empty()) services_.log.line(notThereYet);
        tellShown();
        return false;
      },
      shownLimitSeconds);
  paths_->setPathUpdateHandler([this](const NetworkPath&) {
    // The first one says how things are, not that they have changed.
    if (!std::exchange(hasHeardOfPath_, true)) return;
    services_.desk.networkPathChanged();
    bandwidth_.networkPathChanged();
    wifiNames_.networkPathChanged();
  });
  paths_->start(services_.mainQueue);
  services_.loginSession.start({.lockChanged =
                                    [this](bool isLocked) {
                                      services_.desk.setLocked(isLocked);
                                      bandwidth_.setLocked(isLocked);
                                    },
                                .resumed =
                                    [this] {
                                      services_.desk.resumed();
                                      bandwidth_.resumed();
                                    }});
}

std::string HostDesktop::Parts::timeText(std::chrono::system_clock::time_point time) const {
  return relativeDateText(time, services_.clock.now(),
                          {.locale = services_.language.dateLocale, .timeZone = {}});
}

void HostDesktop::Parts::setScheme(ColourScheme scheme) {
  windows_.setScheme(scheme);
  bandwidth_.refreshScheme();
  gallery_.refreshScheme();
}

/// Without a widget there is none whose menu has the gallery, which also says when no widgets are
/// known yet. The first ones of all come by themselves.
void HostDesktop::Parts::raise() {
  if (services_.desk.cards().empty() && !services_.desk.awaitsDefaultSet()) {
    openGallery();
  } else {
    windows_.raiseAll();
  }
}

/// Whoever opens it may have a window, which the widgets are not to cover.
void HostDesktop::Parts::openLink(const std::string& url) {
  windows_.lowerAll();
  links_.open(url);
}

void HostDesktop::Parts::openLinkFromOutside(const std::string& url) {
  windows_.lowerAll();
  links_.openFromOutside(url);
}

void HostDesktop::Parts::cardRemoved(const std::string& id) {
  menus_.cardRemoved(id);
  removals_.cardRemoved(id);
}

void HostDesktop::Parts::reveal() {
  windows_.reveal();
  if (!windows_.hasMonitors()) tellShown();
}

void HostDesktop::Parts::catalogueChanged() {
  gallery_.catalogueChanged();
  // The user has taken all of them off the desktop.
  if (services_.desk.cards().empty() && windows_.hasMonitors()) {
    services_.log.line(noWidgets);
    tellShown();
  }
}

void HostDesktop::Parts::tellShown() {
  shownLimit_.disconnect();
  if (const auto shown = std::exchange(shown_, nullptr)) shown();
}

/// Raised cards are not to cover it.
void HostDesktop::Parts::openGallery() {
  windows_.lowerAll();
  gallery_.open();
}

void HostDesktop::Parts::askForConsent() {
  dialogs_.ask(consentSubject, consentQuestion(services_.strings), [this](std::size_t answer) {
    wifiNames_.decide(consentOfAnswer(answer), [this](const auto& decided) {
      if (!decided) dialogs_.tell(decided.error());
    });
  });
}

/// It may have been decided elsewhere, and the question be open still.
void HostDesktop::Parts::consentChanged(bool isRevoked) {
  if (wifiNames_.decision() != ConsentDecision::notDetermined) dialogs_.withdraw(consentSubject);
  if (isRevoked) {
    services_.desk.forgetAll();
    gallery_.forgetAll();
  } else {
    services_.desk.reloadAll();
  }
}

HostDesktop::HostDesktop(WindowKind kind, const HostServices& services, Handlers handlers)
    : parts_(std::make_unique<Parts>(kind, services, std::move(handlers))) {}

HostDesktop::~HostDesktop() = default;

void HostDesktop::raise() { parts_->raise(); }

void HostDesktop::openLink(const std::string& url) { parts_->openLinkFromOutside(url); }

}  // namespace lanternfold
