// How much of anything the service lets its peers have.
//
// Made by: `echo-service`, whose options set some of it. Read by: the server and its connections.
#pragma once

#include <chrono>
#include <cstddef>

namespace lanternfold {

/// The size of a request is bounded by its parser.
struct EchoLimits {
  std::size_t connections = 512;  ///< at once; further ones are told to come back
  /// Further ones that are being told so; beyond these they are closed without a word.
  std::size_t refusals = 64;
  int requestsPerConnection = 100;
  /// From the first byte of a request (or the connection's beginning) to the end of its header.
  std::chrono::milliseconds headerTime{10'000};
  std::chrono::milliseconds idleTime{15'000};   ///< between two requests
  std::chrono::milliseconds writeTime{10'000};  ///< until an answer is taken
  /// For the peer to read the last answer and to end its side.
  std::chrono::milliseconds lingerTime{2'000};
  std::size_t lingerBytes = 64 * 1024;  ///< read and dropped meanwhile
};

}  // namespace lanternfold
