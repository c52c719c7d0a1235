// Lets a machine's traffic change, and its interfaces come and go.
#pragma once

#include <string>
#include <vector>

#include "Tests/Simulation/Installation.h"
#include "Tests/Simulation/Profile.h"

namespace lanternfold::simulation {

class TrafficScript {
 public:
  /// Both outlive it. The first interfaces come at once.
  TrafficScript(Installation& installation, const Profile& profile);

 private:
  void addInterface(const std::string& name);
  void changeTraffic();
  void setRate(const std::string& name, TrafficRate rate);
  void changeInterfaces();
  void changeMtu();
  void jumpCounter();
  [[nodiscard]] std::uint64_t drawRate();
  [[nodiscard]] const std::string* drawPresent();

  Installation& installation_;
  RunContext& run_;
  const Profile& profile_;
  std::vector<std::string> names_;
};

}  // namespace lanternfold::simulation
