// Everything of the host that the user sees, and how it hangs together.
//
// Made by: `HostApplication`, when it is activated first. Main thread.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "HostProgram/Display/DisplayChoice.h"
#include "HostProgram/HostServices.h"

namespace lanternfold {

class HostDesktop {
 public:
  struct Handlers {
    /// Ends the program, later.
    std::function<void()> quit;
    /// Called once, never inside of the construction: when the first widget is on the screen, when
    /// it is known that there is none to show, and after ten seconds in any case.
    std::function<void()> shown;
  };

  /// Shows the widgets. The services outlive this.
  HostDesktop(WindowKind kind, const HostServices& services, Handlers handlers);
  ~HostDesktop();
  HostDesktop(const HostDesktop&) = delete;
  HostDesktop& operator=(const HostDesktop&) = delete;

  /// To the front for a while, so that the user finds the widgets.
  void raise();

  /// A link of the product's own that the system has handed over.
  void openLink(const std::string& url);

 private:
  class Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace lanternfold
