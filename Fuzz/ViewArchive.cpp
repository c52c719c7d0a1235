// Feeds any text to the decoder of view archives: what it accepts keeps to the limits, is the same
// view after going there and back, and can be laid out; what it refuses comes with a sentence that
// a terminal may show.
#include "ViewTree/ViewArchive.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "ViewTree/Layout.h"
#include "ViewTree/PlainText.h"

namespace {

/// Layouts of more take longer than a fuzzer waits.
constexpr std::size_t mostNodesLaidOut = 300;

/// Every letter is a square.
class SquareLetters final : public lanternfold::TextMeasurer {
 public:
  [[nodiscard]] lanternfold::Size measure(std::string_view text,
                                          const lanternfold::Font& font) const override {
    return {static_cast<double>(text.size()) * font.size, font.size};
  }
};

std::size_t nodesOf(const lanternfold::View& view, std::size_t depth) {
  if (depth > lanternfold::deepestArchivedNode) std::abort();
  std::size_t count = 1;
  for (const lanternfold::View& child : view.children) count += nodesOf(child, depth + 1);
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view json(reinterpret_cast<const char*>(data), size);
  const auto view = lanternfold::viewOfArchive(json);
  if (!view) {
    const lanternfold::ViewArchiveFault& fault = view.error();
    if (fault.sentence.empty()) std::abort();
    if (fault.path.find_first_of("\n\x1b\x7f") != std::string_view::npos) std::abort();
    return 0;
  }
  const std::size_t nodes = nodesOf(*view, 1);
  if (nodes > lanternfold::mostArchivedNodes) std::abort();
  if (lanternfold::viewOfArchive(lanternfold::archiveJson(*view)) != *view) std::abort();
  (void)lanternfold::plainTextRows(*view, "10:30");
  if (nodes <= mostNodesLaidOut) {
    const SquareLetters measurer;
    (void)lanternfold::layOut(*view, {364, 170}, {measurer, "10:30"});
  }
  return 0;
}
