#include "Wiring/ProcessSetup.h"

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string_view>
#include <unistd.h>

namespace lanternfold {
namespace {

bool environmentHas(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

/// A standard descriptor that is closed would be taken by the first socket or file that is opened,
/// and every line printed would go there. Opened the wrong way round, so that using it fails still.
void reserveStandardDescriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) >= 0) continue;
    // The lowest free number is taken: this one. Without /dev/null there is nothing to be done.
    (void)::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

/// A file that may not grow (a limit) is an error of the write, which is reported and cleaned up
/// after, and not a signal that ends the program in the middle of it.
void reportFileSizeLimitsAsErrors() { (void)std::signal(SIGXFSZ, SIG_IGN); }

/// Output that nobody reads any more is an error of the write too: what is under way is finished
/// before the program ends.
void reportClosedPipesAsErrors() { (void)std::signal(SIGPIPE, SIG_IGN); }

}  // namespace

void setUpProcess() {
  reserveStandardDescriptors();
  reportFileSizeLimitsAsErrors();
  reportClosedPipesAsErrors();
  std::setlocale(LC_ALL, "");
  std::setlocale(LC_NUMERIC, "C");
  std::setlocale(LC_MESSAGES, "C");
}

TextStyle styleOfStandardOutput() {
  const char* terminal = std::getenv("TERM");
  const bool plainTerminal = terminal == nullptr || std::string_view(terminal) == "dumb";
  const bool coloured =
      ::isatty(STDOUT_FILENO) == 1 && !plainTerminal && !environmentHas("NO_COLOR");
  return coloured ? TextStyle::coloured : TextStyle::plain;
}

bool isReaderOfStandardOutputGone() {
  pollfd output{.fd = STDOUT_FILENO, .events = 0, .revents = 0};
  return ::poll(&output, 1, 0) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

}  // namespace lanternfold
