// Which bandwidth class two records stand for, worked out apart from the product's analyzer.
#pragma once

#include <chrono>

#include "Tests/Simulation/ExpectedMetrics.h"

namespace lanternfold::simulation {

/// The raw value of a class: 0, 10, 20 or 30.
using BandwidthClassValue = int;

[[nodiscard]] BandwidthClassValue expectedClass(const ConnectionMetrics& old,
                                                const ConnectionMetrics& now,
                                                std::chrono::duration<double> interval);

/// The highest class among the interfaces of a reading that were remembered before.
[[nodiscard]] BandwidthClassValue expectedClass(const RememberedInterfaces& before,
                                                const RememberedInterfaces& after,
                                                const MachineReading& reading,
                                                std::chrono::duration<double> interval);

/// The seconds between samples that belong to a class.
[[nodiscard]] std::chrono::seconds expectedInterval(BandwidthClassValue value);

}  // namespace lanternfold::simulation
