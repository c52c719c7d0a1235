#include "HostProgram/Menu/MenuWidgets.h"

#include <gtkmm/checkmenuitem.h>
#include <gtkmm/menuitem.h>
#include <gtkmm/radiomenuitem.h>
#include <gtkmm/separatormenuitem.h>

namespace lanternfold {
namespace {

using Take = std::function<void(const CardMenuAction&)>;

void fill(Gtk::Menu& menu, const std::vector<CardMenuEntry>& entries, const Take& take);

Gtk::MenuItem* makeCommand(const CardMenuEntry& entry, const Take& take) {
  auto* const item = Gtk::make_managed<Gtk::MenuItem>(entry.label);
  item->signal_activate().connect([action = entry.action, take] { take(action); });
  return item;
}

Gtk::MenuItem* makeCheck(const CardMenuEntry& entry, const Take& take) {
  auto* const item = Gtk::make_managed<Gtk::CheckMenuItem>(entry.label);
  item->set_active(entry.isChosen);
  item->signal_activate().connect([action = entry.action, take] { take(action); });
  return item;
}

/// The toolkit also tells of the choice that is left; only what becomes chosen is taken.
Gtk::MenuItem* makeChoice(const CardMenuEntry& entry, Gtk::RadioMenuItem::Group& group,
                          const Take& take) {
  auto* const item = Gtk::make_managed<Gtk::RadioMenuItem>(group, entry.label);
  item->set_active(entry.isChosen);
  item->signal_toggled().connect([item, action = entry.action, take] {
    if (item->get_active()) take(action);
  });
  return item;
}

Gtk::MenuItem* makeSubmenu(const CardMenuEntry& entry, const Take& take) {
  auto* const item = Gtk::make_managed<Gtk::MenuItem>(entry.label);
  auto* const children = Gtk::make_managed<Gtk::Menu>();
  fill(*children, entry.children, take);
  item->set_submenu(*children);
  return item;
}

Gtk::MenuItem* makeItem(const CardMenuEntry& entry, Gtk::RadioMenuItem::Group& group,
                        const Take& take) {
  switch (entry.kind) {
    case CardMenuEntry::Kind::command:
      break;
    case CardMenuEntry::Kind::choice:
      return makeChoice(entry, group, take);
    case CardMenuEntry::Kind::check:
      return makeCheck(entry, take);
    case CardMenuEntry::Kind::submenu:
      return makeSubmenu(entry, take);
    case CardMenuEntry::Kind::separator:
      return Gtk::make_managed<Gtk::SeparatorMenuItem>();
  }
  return makeCommand(entry, take);
}

void fill(Gtk::Menu& menu, const std::vector<CardMenuEntry>& entries, const Take& take) {
  Gtk::RadioMenuItem::Group group;
  for (const CardMenuEntry& entry : entries) {
    Gtk::MenuItem* const item = makeItem(entry, group, take);
    item->show();
    menu.append(*item);
  }
}

}  // namespace

std::unique_ptr<Gtk::Menu> makeMenu(const std::vector<CardMenuEntry>& entries, const Take& take) {
  auto menu = std::make_unique<Gtk::Menu>();
  fill(*menu, entries, take);
  return menu;
}

}  // namespace lanternfold
