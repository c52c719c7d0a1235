// The groups of benchmarks, each of which returns the table of its ratios, and what they share.
//
// Read by: the program's main function.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Benchmarks/RatioTable.h"

namespace lanternfold {

// Each runs those of its benchmarks that are wanted, and prepares next to nothing when none is.

/// JSON of the metrics file against the JSON library.
[[nodiscard]] RatioTable::Table measureMetricsFile(RatioTable& reporter);

/// Sampling steps over each storage, whose files stand in a folder beside the program.
[[nodiscard]] RatioTable::Table measureSampling(RatioTable& reporter);

/// Counters, the interface walk and the resolver against the kernel's bare dumps. Leaves the
/// calling thread in a network namespace of its own; none, after a line on standard error, when
/// there can be none.
[[nodiscard]] std::optional<RatioTable::Table> measureInterfaces(RatioTable& reporter);

/// Widgets laid out and painted, against the same texts by bare pango.
[[nodiscard]] RatioTable::Table measureDrawing(RatioTable& reporter);

/// View archives and requests of the widget service against the JSON library.
[[nodiscard]] RatioTable::Table measureService(RatioTable& reporter);

/// Exchanges of messages against bare sockets.
[[nodiscard]] RatioTable::Table measureExchanges(RatioTable& reporter);

/// Readings of the Wi-Fi against the bare exchange, over a replayed kernel.
[[nodiscard]] RatioTable::Table measureWifi(RatioTable& reporter);

/// The same over this machine's kernel and its joined network, and beside the processes of `iw`; no
/// table on a machine that has joined none.
[[nodiscard]] std::vector<RatioTable::Table> measureJoinedWifi(RatioTable& reporter);

/// Whether the filter of the command line takes a benchmark of one of the rows.
[[nodiscard]] bool areWanted(const std::vector<RatioTable::Row>& rows);

/// Registers a benchmark that is repeated often enough for `RatioTable`.
benchmark::internal::Benchmark* addBenchmark(const std::string& name,
                                             std::function<void(benchmark::State&)> work);

/// Runs the registered benchmarks that are wanted, and forgets all of them.
void runBenchmarks(RatioTable& reporter);

}  // namespace lanternfold
