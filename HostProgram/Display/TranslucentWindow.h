// Windows through which what lies below can be seen.
//
// Called by: whoever makes such a window. Main thread.
#pragma once

#include <gtkmm/window.h>

namespace lanternfold {

/// All of the window is what its program paints. Where something composes the windows, what is not
/// painted shows what lies below. Before the window is realized.
void makeTranslucent(Gtk::Window& window);

}  // namespace lanternfold
