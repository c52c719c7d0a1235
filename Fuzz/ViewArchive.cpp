// Feeds any text to the decoder of view archives: what it accepts keeps to the limits, is the same
// view after going there and back; what it refuses comes with a sentence that a terminal may show.
#include "ViewTree/ViewArchive.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "ViewTree/PlainText.h"

namespace {

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
  return 0;
}
