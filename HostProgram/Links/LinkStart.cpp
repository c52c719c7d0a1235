#include "HostProgram/Links/LinkStart.h"

#include <vector>

#include "Wiring/ProgramName.h"

namespace lanternfold {

void runFromLink(Gio::Application& application, const std::optional<std::string>& link) {
  std::vector<std::string> words{hostProgramName};
  if (link) words.push_back(*link);
  std::vector<char*> arguments;
  arguments.reserve(words.size());
  for (std::string& word : words) arguments.push_back(word.data());
  application.run(static_cast<int>(arguments.size()), arguments.data());
}

}  // namespace lanternfold
