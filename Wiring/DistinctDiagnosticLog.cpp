#include "Wiring/DistinctDiagnosticLog.h"

namespace lanternfold {

void DistinctDiagnosticLog::line(std::string_view text) {
  if (isNew(text)) log_.line(text);
}

bool DistinctDiagnosticLog::isNew(std::string_view text) {
  const std::scoped_lock lock(mutex_);
  if (written_.contains(text)) return false;
  if (written_.size() < mostRemembered) written_.emplace(text);
  return true;
}

}  // namespace lanternfold
