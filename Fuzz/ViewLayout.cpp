// Lays out any view that an archive may hold, in any size: the first line of the input is the
// width, the height and whether it runs from right to left ("364 170 r"), the rest the archive.
// Whatever the view is, every frame is a place with numbers, clips begin and end in pairs, and the
// layout ends soon.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <variant>

#include "Fuzz/Support/ViewInput.h"
#include "ViewTree/DrawList.h"
#include "ViewTree/Layout.h"
#include "ViewTree/PlainText.h"
#include "ViewTree/TextDump.h"
#include "ViewTree/ViewArchive.h"

namespace {

/// Every letter is a square.
class SquareLetters final : public lanternfold::TextMeasurer {
 public:
  [[nodiscard]] lanternfold::Size measure(std::string_view text,
                                          const lanternfold::Font& font) const override {
    return {static_cast<double>(text.size()) * font.size, font.size};
  }
  [[nodiscard]] double baseline(const lanternfold::Font& font) const override { return font.size; }
};

struct Picture {
  lanternfold::Size size;
  lanternfold::LayoutDirection direction = lanternfold::LayoutDirection::leftToRight;
};

std::optional<Picture> pictureOf(std::string_view line) {
  constexpr double largest = lanternfold::largestArchivedLength;
  const std::optional<double> width = lanternfold::takeLength(line, largest);
  const std::optional<double> height =
      width ? lanternfold::takeLength(line, largest) : std::nullopt;
  if (!height) return std::nullopt;
  Picture picture{{*width, *height}};
  if (line.starts_with('r')) picture.direction = lanternfold::LayoutDirection::rightToLeft;
  return picture;
}

void check(bool holds) {
  if (!holds) std::abort();
}

void checkFrame(const lanternfold::Rect& frame) {
  check(std::isfinite(frame.left()) && std::isfinite(frame.top()));
  check(std::isfinite(frame.size.width) && std::isfinite(frame.size.height));
  check(frame.size.width >= 0 && frame.size.height >= 0);
}

void checkFrames(const lanternfold::LaidOutView& view) {
  checkFrame(view.frame);
  for (const lanternfold::ShownLine& line : view.shownLines) checkFrame(line.frame);
  for (const lanternfold::LaidOutView& child : view.children) checkFrames(child);
  check(view.accessibleDescription.size() <= lanternfold::longestAccessibleDescription);
}

void checkClips(const lanternfold::DrawList& list) {
  std::size_t open = 0;
  for (const lanternfold::DrawCommand& command : list) {
    if (std::holds_alternative<lanternfold::BeginClip>(command)) ++open;
    if (!std::holds_alternative<lanternfold::EndClip>(command)) continue;
    check(open > 0);
    --open;
  }
  check(open == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto [line, archive] = lanternfold::viewInput(data, size);
  const std::optional<Picture> picture = pictureOf(line);
  if (!picture) return 0;
  const auto view = lanternfold::viewOfArchive(archive);
  if (!view) return 0;
  const SquareLetters measurer;
  const lanternfold::LaidOutView laidOut =
      lanternfold::layOut(*view, picture->size, {measurer, "10:30", picture->direction});
  checkFrames(laidOut);
  const lanternfold::ColourPalette palette;
  const lanternfold::DrawList list =
      lanternfold::makeDrawList(laidOut, {palette, lanternfold::ColourScheme::dark, nullptr});
  checkClips(list);
  check(!lanternfold::textDump(laidOut).empty());
  check(lanternfold::textDump(list).empty() == list.empty());
  (void)lanternfold::plainTextRows(*view, "10:30");
  return 0;
}
