// `pidfd_open` and what belongs to it.
//
// Included by: whoever waits for a process by a descriptor.
#pragma once

// The header of glibc 2.36 leaves this out.
extern "C" {
#include <sys/pidfd.h>
}
