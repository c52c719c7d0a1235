// Whether a test against the real system may stand aside: as root never, so that it fails where it
// cannot run; elsewhere it may, and says in one line what it lacks.
#pragma once

#include <unistd.h>

#include <gtest/gtest.h>

/// For SetUp and for the beginning of a test: what follows runs as root only. `purpose` is a text
/// such as "to make a network namespace".
#define REQUIRE_ROOT(purpose)                                      \
  do {                                                             \
    if (geteuid() != 0) GTEST_SKIP() << "needs root, " << purpose; \
  } while (false)
