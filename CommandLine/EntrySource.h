// Which of a widget's entries to show.
#pragma once

namespace lanternfold {

enum class EntrySource {
  placeholder,  ///< sample content, an empty configuration
  snapshot,     ///< sample content with the configuration given
  timeline,     ///< this machine
};

}  // namespace lanternfold
