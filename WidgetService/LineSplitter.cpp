#include "WidgetService/LineSplitter.h"

#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {

LineSplitter::LineSplitter(std::size_t longestLine, Handlers handlers)
    : longestLine_(longestLine), handlers_(std::move(handlers)) {
  if (!handlers_.line || !handlers_.tooLong) fatalError("a line splitter lacks a handler");
}

void LineSplitter::take(std::string_view bytes) {
  if (isTaking_) fatalError("a handler of a line splitter gave it more bytes");
  isTaking_ = true;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    if (end == std::string_view::npos) {
      keepUnfinished(bytes);
      break;
    }
    finishLine(bytes.substr(0, end));
    bytes.remove_prefix(end + 1);
  }
  isTaking_ = false;
}

/// `rest` is what stands between the bytes kept so far and the line's end.
void LineSplitter::finishLine(std::string_view rest) {
  // What is kept is let go of before the handler runs, so that an idle connection holds no memory.
  std::string line = std::exchange(unfinished_, {});
  if (std::exchange(isSkipping_, false)) return;
  if (rest.size() > longestLine_ - line.size()) return handlers_.tooLong();
  if (line.empty()) return deliver(rest);
  deliver(line.append(rest));
}

void LineSplitter::keepUnfinished(std::string_view rest) {
  if (isSkipping_) return;
  if (rest.size() <= longestLine_ - unfinished_.size()) {
    unfinished_ += rest;
    return;
  }
  std::exchange(unfinished_, {}).clear();
  isSkipping_ = true;
  handlers_.tooLong();
}

void LineSplitter::deliver(std::string_view line) const {
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (line.find_first_not_of(" \t\r") != std::string_view::npos) handlers_.line(line);
}

}  // namespace lanternfold
