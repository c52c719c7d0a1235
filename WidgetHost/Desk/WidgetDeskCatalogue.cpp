// The desk's inside as far as the catalogue says which widgets there are.
#include <utility>

#include "WidgetHost/Desk/CatalogueRules.h"
#include "WidgetHost/Desk/WidgetDeskState.h"
#include "WidgetService/QuotedText.h"
#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {
namespace {

std::vector<WidgetKind> kindsOf(const std::vector<WidgetDescription>& catalogue) {
  std::vector<WidgetKind> kinds;
  kinds.reserve(catalogue.size());
  for (const WidgetDescription& widget : catalogue) {
    kinds.push_back({.kind = widget.kind, .families = widget.supportedFamilies});
  }
  return kinds;
}

}  // namespace

void WidgetDesk::State::askCatalogue() {
  catalogueQuestion_ = extension_.list([weak = weak_from_this()](auto answer) {
    if (const auto state = weak.lock()) state->receiveCatalogue(std::move(answer));
  });
}

void WidgetDesk::State::receiveCatalogue(
    std::expected<std::vector<WidgetDescription>, Failure> answer) {
  if (!answer) return missCatalogue(answer.error());
  std::erase_if(*answer, [](const auto& widget) { return widget.supportedFamilies.empty(); });
  // Whoever has no widgets is broken; to believe it would clear the desktop.
  if (answer->empty()) return missCatalogue(Failure::refused);
  takeCatalogue(*std::move(answer));
}

void WidgetDesk::State::missCatalogue(Failure failure) {
  schedule_.failed(catalogueId, failure, now());
  for (Item& item : items_) {
    if (failure != Failure::cancelled) awaitNoMore(item);
    tellWhenFaceHasChanged(item);
  }
  leftAloneChanged();
}

void WidgetDesk::State::takeCatalogue(std::vector<WidgetDescription> catalogue) {
  schedule_.remove(catalogueId);
  catalogue_ = std::move(catalogue);
  announcements_.catalogueChanged();
  removeStandIns();
  showWhatIsOffered();
  placeDefaultSet();
  proceed();
}

void WidgetDesk::State::showWhatIsOffered() {
  for (Item& item : items_) {
    const bool wasShown = std::exchange(item.isShown, isOffered(catalogue_, item.placed));
    if (item.isShown) {
      beginSchedule(item);
      tellWhenFaceHasChanged(item);
    } else {
      announcements_.removed(item.placed.id);
      if (wasShown) tellNotOffered(item.placed);
    }
  }
}

void WidgetDesk::State::tellNotOffered(const PlacedWidget& widget) {
  log_.line("widget " + quotedText(widget.id) + " is not shown, since there is no " +
            quotedText(widget.kind) + " in " + std::string(widgetFamilyName(widget.family)) +
            "; it stays in the file of the widgets");
}

void WidgetDesk::State::placeDefaultSet() {
  if (!wantsDefaultSet_ || monitors_.empty()) return;
  if (!catalogue_.empty()) {
    wantsDefaultSet_ = false;
    if (!std::exchange(areStandIns_, false)) place(kindsOf(catalogue_));
    save();
  } else if (items_.empty() && (schedule_.hasMissed(catalogueId) || isLeftAlone())) {
    areStandIns_ = !knownWidgets_.empty();
    place(knownWidgets_);
  }
}

void WidgetDesk::State::place(const std::vector<WidgetKind>& widgets) {
  std::vector<Size> sizes;
  sizes.reserve(widgets.size());
  for (const WidgetKind& widget : widgets) sizes.push_back(widgetSize(widget.families.back()));
  const auto positions = firstPositions(sizes, monitors_);
  for (std::size_t index = 0; index < widgets.size(); ++index) {
    insert({.id = {},
            .kind = widgets[index].kind,
            .family = widgets[index].families.back(),
            .configuration = {},
            .position = positions[index].value_or(MonitorPosition{})});
  }
}

/// Those that are right become the default set.
void WidgetDesk::State::removeStandIns() {
  if (!areStandIns_ || kindsOf(catalogue_) == knownWidgets_) return;
  areStandIns_ = false;
  while (!items_.empty()) erase(std::string(items_.back().placed.id));
}

}  // namespace lanternfold
