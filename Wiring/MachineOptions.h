// What a command line says of the machine that its program is to run on.
//
// Made by: the parsers. Read by: `LinuxMachine`.
#pragma once

#include <filesystem>
#include <optional>

namespace lanternfold {

/// Where the one-line diagnostics of background paths go: to standard output, unless that holds
/// JSON only.
enum class DiagnosticsTarget { standardOutput, standardError };

/// What a program does while nobody reads its diagnostics and no more of them can be kept.
enum class WhenDiagnosticsStall { wait, loseLine };

/// In which language records hold their texts: what a script reads is the same for every user.
enum class TextLanguage { users, english };

/// What becomes of a line of diagnostics that says what an earlier one has said.
enum class RepeatedDiagnostics { written, dropped };

struct MachineOptions {
  DiagnosticsTarget diagnostics = DiagnosticsTarget::standardOutput;
  WhenDiagnosticsStall whenDiagnosticsStall = WhenDiagnosticsStall::wait;
  TextLanguage texts = TextLanguage::users;
  RepeatedDiagnostics repeatedDiagnostics = RepeatedDiagnostics::written;
  /// Where everything is kept; the user's own data folder when it is not given.
  std::optional<std::filesystem::path> dataFolder;
  /// Certificates in PEM to trust; the system's when it is not given.
  std::optional<std::filesystem::path> certificateAuthoritiesFile;
};

}  // namespace lanternfold
