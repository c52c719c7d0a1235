#include "Tests/Simulation/Happenings.h"

#include "Support/FatalError.h"

namespace lanternfold::simulation {
namespace {

constexpr std::array<std::string_view, happeningCount> words{
    "the machine boots",
    "the wall clock goes back",
    "the wall clock goes forward",
    "the wall clock goes back while a lock is waited for",
    "an interface comes",
    "an interface leaves",
    "an interface comes back with zero counters",
    "an MTU changes",
    "traffic changes",
    "a counter jumps",
    "a 32-bit counter has wrapped",
    "a 32-bit counter has wrapped unseen",
    "the counters cannot be read",
    "the disk is full",
    "the disk has room again",
    "permission is lost",
    "permission is given back",
    "the disk becomes slow",
    "the disk is as fast as before",
    "a write is refused",
    "one step of the disk outlasts a lease",
    "the data file is corrupted",
    "the data file is deleted",
    "the data file is restored from an older copy",
    "a lock of the past is left behind",
    "a lock of the far future is left behind",
    "a lock file with text is left behind",
    "a left lock is removed by hand",
    "the program starts",
    "the program ends",
    "the program is killed",
    "the program is killed inside of a save",
    "the program is killed while it holds the lock",
    "takes a sample",
    "a sample fails",
    "takes the lock",
    "gives up waiting for the lock",
    "finds the lock held",
    "takes over an expired lock",
    "two programs hold the lock",
    "a sample is disturbed by another program",
    "saves",
    "cannot save",
    "notices a reboot",
    "takes a step of the clock for a reboot",
    "the bandwidth class changes",
    "the interval is set by hand",
    "is read by its user",
    "the recorder is stopped",
    "the recorder is started",
};

}  // namespace

std::string_view describe(Happening happening) {
  const std::string_view text = words[static_cast<std::size_t>(happening)];
  if (text.empty()) fatalError("a happening of the simulation has no words");
  return text;
}

}  // namespace lanternfold::simulation
