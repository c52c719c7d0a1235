// A machine whose kernel knows the names of a network, and what all commands leave on it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "CommandLine/Program.h"
#include "NetworkWidgetVexExtension/Bundle/WidgetKinds.h"
#include "PlatformLinux/Defaults/DataDirectory.h"
#include "PlatformLinux/Defaults/LinuxGroupContainer.h"
#include "PlatformLinux/Defaults/SqliteUserDefaults.h"
#include "PlatformLinux/System/PosixFileSystem.h"
#include "Tests/CommandLine/WifiScenes.h"
#include "Tests/Support/TemporaryFolder.h"
#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {

/// Everything that a run of all commands leaves: what was written where, by name.
using Traces = std::map<std::string, std::string>;

/// A machine whose kernel knows the names, and which keeps what it keeps on a real disk.
class KnowingMachine {
 public:
  KnowingMachine(const WifiFacts& facts, std::int32_t status) {
    fake_.addEthernet("en0", {192, 0, 2, 20});
    addWifiLink(fake_);
    fake_.wifi.setFacts(facts);
    fake_.locationConsent.setAuthorizationStatus(status);
    fake_.mainLoop.interruptedAfter = std::chrono::minutes(5);
  }

  Traces runEverything() {
    for (const auto& arguments : commands()) run(arguments);
    for (const std::string& line : fake_.diagnostics.lines()) {
      traces_["diagnostics"] += withoutFolder(line) + '\n';
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_.path())) {
      const std::string name = std::filesystem::relative(entry.path(), folder_.path()).string();
      traces_["names of files"] += name + '\n';
      if (entry.is_regular_file()) traces_[name] = bytesOf(entry.path());
    }
    return traces_;
  }

  /// Every command that ends by itself or by an interruption, in every form.
  [[nodiscard]] std::vector<std::vector<std::string>> commands() const {
    std::vector<std::vector<std::string>> all{
        {"interfaces"},
        {"interfaces", "--json"},
        {"state"},
        {"state", "--json"},
        {"state", "--categories", "wlan"},
        {"state", "--categories", "internet,wlan,cellular,other", "--json"},
        {"state", "--categories", "internet,wlan,cellular,other", "--watch"},
        {"state", "--watch", "--json"},
        {"wifi"},
        {"wifi", "--json"},
        {"record", "--once"},
        {"record", "--once", "--json"},
        {"record"},
        {"record", "--json"},
        {"location", "status"},
        {"location", "status", "--json"},
        {"location", "deny"},
        {"show"},
        {"show", "--detach"},
        {"ctl", "add", "WlanNetworkStateWidget"},
        {"ctl", "list"},
        {"ctl", "list", "--json"},
        {"ctl", "reload"},
        {"ctl", "quit"},
        {"wifi", "--bogus"},
    };
    constexpr const char* entries[] = {"timeline", "snapshot", "placeholder"};
    for (const char* entry : entries) {
      for (const char* ending : {".svg", ".png"}) {
        all.push_back({"gallery", "--entry", entry, "--scale", "0.5", "--output",
                       folder_ / ("gallery-" + std::string(entry) + ending)});
      }
    }
    for (const auto& [kind, family] : widgets()) {
      all.push_back({"timeline", kind, "--family", family});
      all.push_back({"timeline", kind, "--family", family, "--show-timestamp", "--json"});
      for (const char* entry : entries) {
        for (const char* ending : {".svg", ".png"}) {
          const std::string picture = kind + "-" + family + "-" + entry + ending;
          all.push_back({"render", kind, "--family", family, "--entry", entry, "--scale", "1",
                         "--output", folder_ / picture});
        }
      }
    }
    return all;
  }

  static std::vector<std::pair<std::string, std::string>> widgets() {
    std::vector<std::pair<std::string, std::string>> widgets;
    for (const WidgetKind& widget : widgetKinds()) {
      for (const WidgetFamily family : widget.families) {
        widgets.emplace_back(widget.kind, widgetFamilyName(family));
      }
    }
    return widgets;
  }

 private:
  static std::string bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  void run(const std::vector<std::string>& arguments) {
    std::ostringstream output;
    std::ostringstream errors;
    const ExitStatus status =
        runProgram(arguments, {.output = output, .errors = errors},
                   [this](const MachineOptions&) -> const Machine& { return machine_; });
    std::string command;
    for (const std::string& argument : arguments) command += withoutFolder(argument) + ' ';
    traces_[command + "status"] = std::to_string(static_cast<int>(status));
    traces_[command + "output"] = withoutFolder(output.str());
    traces_[command + "errors"] = withoutFolder(errors.str());
  }

  /// The folder is called otherwise each time.
  [[nodiscard]] std::string withoutFolder(std::string text) const {
    const std::string folder = folder_.path().string();
    for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder)) {
      text.replace(at, folder.size(), "FOLDER");
    }
    return text;
  }

  FakeMachine fake_;
  const TemporaryFolder folder_;
  PosixFileSystem files_;
  const DataDirectory directory_{folder_ / "data"};
  LinuxGroupContainer groupContainer_{directory_};
  SqliteUserDefaultsSuites userDefaults_{directory_, fake_.diagnostics};
  ConsentRecord consentRecord_{consentPlaceIn(directory_), files_, fake_.diagnostics};
  const Platform& fakes_ = fake_.machine.platform;
  const Machine machine_{.platform = {.kernel = fakes_.kernel,
                                      .resolverConfiguration = fakes_.resolverConfiguration,
                                      .networkConfiguration = fakes_.networkConfiguration,
                                      .interfaceNaming = fakes_.interfaceNaming,
                                      .pathMonitors = fakes_.pathMonitors,
                                      .dispatch = fakes_.dispatch,
                                      .clock = fakes_.clock,
                                      .strings = fakes_.strings,
                                      .diagnostics = fakes_.diagnostics,
                                      .fileSystem = files_,
                                      .userDefaults = userDefaults_,
                                      .groupContainer = groupContainer_,
                                      .urlSessions = fakes_.urlSessions,
                                      .locationConsent = fakes_.locationConsent,
                                      .wifiClient = fakes_.wifiClient,
                                      .hostLookup = fake_.hostLookup,
                                      .connections = fake_.connections},
                         .mainBundleStrings = fakes_.strings,
                         .metricsReader = fake_.machine.metricsReader,
                         .soleRecorder = fake_.soleRecorder,
                         .readWifi = fake_.machine.readWifi,
                         .consentRecord = consentRecord_,
                         .mainLoop = fake_.mainLoop,
                         .widgetControl = fake_.widgetControl,
                         .hostStarter = fake_.hostStarter,
                         .assets = fake_.machine.assets};
  Traces traces_;
};

}  // namespace lanternfold
