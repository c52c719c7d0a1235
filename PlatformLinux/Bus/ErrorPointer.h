// Holds an error of the library that speaks to the buses.
//
// Used by: whoever takes such an error from one of its functions.
#pragma once

#include <gio/gio.h>
#include <memory>

namespace lanternfold {

struct ErrorCloser {
  void operator()(GError* error) const { g_error_free(error); }
};
using ErrorPointer = std::unique_ptr<GError, ErrorCloser>;

}  // namespace lanternfold
