#include "ViewTree/ArchivePlace.h"

#include <utility>

namespace lanternfold {

ArchivePlace::Step::Step(ArchivePlace& place, std::string_view name)
    : place_(place), lengthBefore_(place.path_.size()) {
  if (lengthBefore_ > 0) place.path_ += '.';
  place.path_ += name;
}

ArchivePlace::Step::~Step() { place_.path_.resize(lengthBefore_); }

void ArchivePlace::fail(std::string_view name, const char* sentence) {
  if (fault_) return;
  std::string path = path_;
  if (!path.empty() && !name.empty()) path += '.';
  path += name;
  fault_ = ViewArchiveFault{std::move(path), sentence};
}

}  // namespace lanternfold
