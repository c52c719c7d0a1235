#include "CommandLine/CommandChoice.h"

#include <utility>

namespace lanternfold {

ChosenCommand chosenCommand(const CommonChoice& common, bool json, CommandRun run) {
  return {.run = [run = std::move(run), authorities = common.certificateAuthoritiesFile](
                     const Machine& machine,
                     const Console& console) -> std::expected<void, CommandFailure> {
            auto readable = requireCertificateAuthorities(authorities);
            return readable ? run(machine, console) : readable;
          },
          .machine = {.diagnostics = json ? DiagnosticsTarget::standardError
                                          : DiagnosticsTarget::standardOutput,
                      .texts = json ? TextLanguage::english : TextLanguage::users,
                      .dataFolder = common.dataFolder,
                      .certificateAuthoritiesFile = common.certificateAuthoritiesFile}};
}

}  // namespace lanternfold
