#include "HostProgram/Cards/CardSpeech.h"

#include "ViewTree/LinkUrl.h"
#include "ViewTree/PlainText.h"

namespace lanternfold {
namespace {

std::string textOf(const PlainTextRow& row) {
  std::string text;
  for (const std::string& cell : row) {
    if (!text.empty()) text += ' ';
    text += cell;
  }
  return text;
}

/// The row that stands below a link, of use to whoever reads a terminal only.
bool isUrl(const PlainTextRow& row) {
  return row.size() == 1 && row.front().find("://") != std::string::npos && isLinkUrl(row.front());
}

}  // namespace

std::string cardSpeech(const View& card, const std::string& drawingTime) {
  std::string speech;
  for (const PlainTextRow& row : plainTextRows(card, drawingTime)) {
    if (isUrl(row)) continue;
    const std::string text = textOf(row);
    if (speech.size() + text.size() + 2 > longestAccessibleDescription) continue;
    if (!speech.empty()) speech += ", ";
    speech += text;
  }
  return speech;
}

}  // namespace lanternfold
