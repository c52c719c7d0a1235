#include <cstddef>
#include <variant>

#include "ViewTree/DumpFigures.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

struct CommandDescriber {
  std::string operator()(const DrawText& command) const {
    return "text " + dumped(command.frame) + ' ' + dumped(command.colour) + ' ' +
           dumped(command.font) + ' ' + quoted(command.text);
  }
  std::string operator()(const DrawSymbol& command) const {
    return "symbol " + dumped(command.frame) + ' ' + dumped(command.colour) + ' ' + command.name +
           dumpedStrength(command.strength);
  }
  std::string operator()(const DrawImage& command) const {
    return "image " + dumped(command.frame) + ' ' + command.name + " opacity " +
           dumped(command.opacity);
  }
  std::string operator()(const StrokeCircle& command) const {
    return "circle " + dumped(command.frame) + ' ' + dumped(command.colour) + " line " +
           dumped(command.lineWidth);
  }
  std::string operator()(const FillRoundedRectangle& command) const {
    return "rounded-rectangle " + dumped(command.frame) + ' ' + dumped(command.colour) +
           " radius " + dumped(command.cornerRadius);
  }
  std::string operator()(const FillLinearGradient& command) const {
    return "linear-gradient " + dumped(command.frame) + ' ' + dumped(command.start) + " to " +
           dumped(command.end);
  }
  std::string operator()(const BeginClip& command) const {
    return "clip " + dumped(command.frame) + " radius " + dumped(command.cornerRadius);
  }
  std::string operator()(const EndClip&) const { return "end-clip"; }
};

}  // namespace

std::string textDump(const DrawList& list) {
  std::string dump;
  std::size_t clips = 0;
  for (const DrawCommand& command : list) {
    if (std::holds_alternative<EndClip>(command) && clips > 0) --clips;
    dump += std::string(clips * 2, ' ') + std::visit(CommandDescriber{}, command) + '\n';
    if (std::holds_alternative<BeginClip>(command)) ++clips;
  }
  return dump;
}

}  // namespace lanternfold
