// What all connections of a server share.
//
// Made by: `echo-service`. Read by: `EchoServer` and its connections.
#pragma once

#include "EchoService/EchoLimits.h"
#include "EchoService/EchoResponder.h"
#include "Platform/Clock.h"

namespace lanternfold {

struct EchoConnectionSettings {
  EchoResponder responder;
  EchoLimits limits;
  const Clock& clock;  ///< for the date of the answers; outlives the server and its loop
};

}  // namespace lanternfold
