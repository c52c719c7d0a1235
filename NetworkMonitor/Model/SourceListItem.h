// One display row of a network source.
//
// Made by: the sources' list representations. Read by: the widget views.
#pragma once

#include <string>
#include <vector>

namespace lanternfold {

struct SourceListItem {
  std::string label;  ///< localised, or a raw interface name
  std::string value;  ///< formatted; may hold text from outside, never markup
  /// Whether the row means nothing without its label, so that a view short of room must keep it.
  bool labelRequired = false;

  friend bool operator==(const SourceListItem&, const SourceListItem&) = default;
};

using SourceList = std::vector<SourceListItem>;

}  // namespace lanternfold
