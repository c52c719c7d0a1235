// Tells the desk's observer of changes, later and no more than is needed.
//
// Made by: the desk. Main queue.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Dispatch.h"
#include "WidgetHost/Desk/WidgetDesk.h"

namespace lanternfold {

/// A change that is told of already is not told of twice, and a card that has come and gone not at
/// all. The observer may do anything while it is told, even end the desk's life.
class DeskAnnouncements {
 public:
  explicit DeskAnnouncements(DispatchQueue& queue);
  ~DeskAnnouncements();
  DeskAnnouncements(const DeskAnnouncements&) = delete;
  DeskAnnouncements& operator=(const DeskAnnouncements&) = delete;

  void setObserver(WidgetDeskObserver* observer);

  void added(const std::string& id);
  void changed(const std::string& id);
  void removed(const std::string& id);
  void catalogueChanged();

 private:
  enum class Event { added, changed, removed, catalogue };
  struct Announcement {
    Event event;
    std::string id;
  };
  struct Shared {
    WidgetDeskObserver* observer = nullptr;
    std::vector<Announcement> pending;
  };

  void announce(Event event, const std::string& id);
  [[nodiscard]] bool isPending(Event event, std::string_view id) const;
  static void tell(Shared& shared);
  static void tell(WidgetDeskObserver& observer, const Announcement& announcement);

  DispatchQueue& queue_;
  std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
};

}  // namespace lanternfold
