// `SNUtils` and `NetUtils` over fakes, with the library's own rule of names.
#pragma once

#include "NetBase/LiteralInterfaceNaming.h"
#include "NetBase/NetUtils.h"
#include "NetBase/SNUtils.h"
#include "Tests/Support/FakeNetworkKernel.h"
#include "Tests/Support/FakeResolverConfiguration.h"
#include "Tests/Support/RecordingDiagnosticLog.h"

namespace lanternfold {

struct NetBaseEnvironment {
  FakeNetworkKernel kernel;
  FakeResolverConfiguration resolver;
  LiteralInterfaceNaming naming;
  RecordingDiagnosticLog log;
  const SNUtils snUtils{kernel, resolver, naming, log};
  const NetUtils netUtils{snUtils};
};

}  // namespace lanternfold
