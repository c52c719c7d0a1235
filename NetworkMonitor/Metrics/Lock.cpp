#include "NetworkMonitor/Metrics/Lock.h"

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

std::string reasonOf(const LockError& error) {
  return error.underlying ? ": " + error.underlying->message() : "";
}

}  // namespace

std::string describe(const LockError& error) {
  switch (error.value) {
    case LockError::Case::lockFailed:
      return "the lock file could not be written" + reasonOf(error) +
             "; see whether its folder is there and can be written to";
    case LockError::Case::unlockFailed:
      return "the lock file could not be removed" + reasonOf(error) + "; it lapses by itself";
    case LockError::Case::lockTimeout:
      return "another program kept the lock for longer than was waited";
    case LockError::Case::alreadyUnlocked:
      return "there was no lock file to remove";
  }
  fatalError("the case of a lock error is none of the known ones");
}

}  // namespace lanternfold
