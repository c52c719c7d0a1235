#include "NetworkWidgetVexExtension/Views/InvalidatableContentViewModifierBackport.h"

#include <utility>

namespace lanternfold {

View InvalidatableContentViewModifierBackport::body(View content,
                                                    const WidgetEnvironment& environment) const {
  if (!invalidatable || !environment.supportsButtons) return content;
  return std::move(content).invalidatableContent();
}

}  // namespace lanternfold
