#include "WidgetHost/Desk/DeskAnnouncements.h"

#include <algorithm>
#include <utility>

namespace lanternfold {

DeskAnnouncements::DeskAnnouncements(DispatchQueue& queue) : queue_(queue) {}

DeskAnnouncements::~DeskAnnouncements() { shared_->observer = nullptr; }

void DeskAnnouncements::setObserver(WidgetDeskObserver* observer) { shared_->observer = observer; }

void DeskAnnouncements::added(const std::string& id) { announce(Event::added, id); }

void DeskAnnouncements::changed(const std::string& id) {
  if (isPending(Event::added, id) || isPending(Event::changed, id)) return;
  announce(Event::changed, id);
}

void DeskAnnouncements::removed(const std::string& id) {
  const bool wasNeverTold = isPending(Event::added, id);
  std::erase_if(shared_->pending, [&](const Announcement& pending) {
    return pending.id == id && pending.event != Event::removed;
  });
  if (!wasNeverTold) announce(Event::removed, id);
}

void DeskAnnouncements::catalogueChanged() { announce(Event::catalogue, {}); }

void DeskAnnouncements::announce(Event event, const std::string& id) {
  shared_->pending.push_back({.event = event, .id = id});
  if (shared_->pending.size() > 1) return;  // the work for the first one tells this, too
  queue_.async([weak = std::weak_ptr(shared_)] {
    if (const auto shared = weak.lock()) tell(*shared);
  });
}

bool DeskAnnouncements::isPending(Event event, std::string_view id) const {
  return std::ranges::any_of(shared_->pending, [&](const Announcement& pending) {
    return pending.event == event && pending.id == id;
  });
}

void DeskAnnouncements::tell(Shared& shared) {
  // One by one, since what the observer does may call off what is still to be told.
  while (!shared.pending.empty()) {
    const Announcement announcement = std::move(shared.pending.front());
    shared.pending.erase(shared.pending.begin());
    if (shared.observer != nullptr) tell(*shared.observer, announcement);
  }
}

void DeskAnnouncements::tell(WidgetDeskObserver& observer, const Announcement& announcement) {
  switch (announcement.event) {
    case Event::added:
      return observer.cardAdded(announcement.id);
    case Event::changed:
      return observer.cardChanged(announcement.id);
    case Event::removed:
      return observer.cardRemoved(announcement.id);
    case Event::catalogue:
      return observer.catalogueChanged();
  }
}

}  // namespace lanternfold
