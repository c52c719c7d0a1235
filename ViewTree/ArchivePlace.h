// Where in an archive the reading stands, and the first fault that was found there.
//
// Used by: the decoder of archives and the members of its nodes.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "ViewTree/ViewArchive.h"

namespace lanternfold {

class ArchivePlace {
 public:
  /// Stands in a member while it lives; `name` has its number when it is one of a list.
  class Step {
   public:
    Step(ArchivePlace& place, std::string_view name);
    ~Step();
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

   private:
    ArchivePlace& place_;
    std::size_t lengthBefore_;
  };

  /// Something is wrong with the member `name`, or with the whole when it is empty. Only the first
  /// fault is kept.
  void fail(std::string_view name, const char* sentence);

  [[nodiscard]] const std::optional<ViewArchiveFault>& fault() const { return fault_; }

 private:
  std::string path_;
  std::optional<ViewArchiveFault> fault_;
};

}  // namespace lanternfold
