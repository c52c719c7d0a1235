#include "Support/FatalError.h"

#include <cstdio>
#include <cstdlib>

namespace lanternfold {

void fatalError(std::string_view message, std::source_location where) {
  std::fprintf(stderr, "Fatal error: %.*s (%s:%u)\n", static_cast<int>(message.size()),
               message.data(), where.file_name(), static_cast<unsigned>(where.line()));
  std::fflush(stderr);
  std::abort();
}

void fatalErrorAt(std::string_view location) {
  std::fprintf(stderr, "Fatal error (%.*s)\n", static_cast<int>(location.size()), location.data());
  std::fflush(stderr);
  std::abort();
}

}  // namespace lanternfold
