// A menu's value as a menu of the toolkit.
#pragma once

#include <functional>
#include <gtkmm/menu.h>
#include <memory>
#include <vector>

#include "HostProgram/Menu/CardMenu.h"

namespace lanternfold {

/// `take` is called for what the user takes, after the menu has closed. Main thread.
[[nodiscard]] std::unique_ptr<Gtk::Menu> makeMenu(
    const std::vector<CardMenuEntry>& entries,
    const std::function<void(const CardMenuAction&)>& take);

}  // namespace lanternfold
