#include "NetworkWidgetVexExtension/Views/SentenceView.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace lanternfold {
namespace {

constexpr std::ptrdiff_t fewestWordsOfASentence = 4;
constexpr std::size_t mostLines = 4;

/// The lines of `sentence`, none longer than `most` bytes unless a single word is.
std::vector<std::string> linesOf(std::string_view sentence, std::size_t most) {
  std::vector<std::string> lines(1);
  while (!sentence.empty()) {
    const std::string_view word = sentence.substr(0, sentence.find(' '));
    sentence.remove_prefix(std::min(word.size() + 1, sentence.size()));
    std::string& line = lines.back();
    if (line.empty()) {
      line = word;
    } else if (line.size() + 1 + word.size() <= most) {
      line.append(1, ' ').append(word);
    } else {
      lines.emplace_back(word);
    }
  }
  return lines;
}

/// With the shortest lines that make `count` of them at the most.
std::vector<std::string> brokenInto(std::string_view sentence, std::size_t count) {
  std::size_t most = sentence.size() / count;
  while (linesOf(sentence, most).size() > count) ++most;
  return linesOf(sentence, most);
}

}  // namespace

bool isSentence(std::string_view value) {
  return std::ranges::count(value, ' ') + 1 >= fewestWordsOfASentence;
}

View SentenceView::body() const {
  std::vector<View> choices;
  for (std::size_t count = 1; count <= mostLines; ++count) {
    std::vector<View> lines;
    for (const std::string& line : brokenInto(sentence, count)) lines.push_back(text(line, style));
    choices.push_back(vstack(HorizontalAlignment::leading, 0, std::move(lines)));
  }
  return firstThatFits(FitAxes::horizontal, std::move(choices)).accessible(sentence);
}

}  // namespace lanternfold
