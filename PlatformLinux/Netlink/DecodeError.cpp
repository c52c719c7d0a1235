#include "PlatformLinux/Netlink/DecodeError.h"

namespace lanternfold {

namespace {

std::string_view problemText(DecodeProblem problem) {
  switch (problem) {
    case DecodeProblem::truncated:
      return "truncated";
    case DecodeProblem::badLength:
      return "bad length";
    case DecodeProblem::wrongMessage:
      return "wrong message";
    case DecodeProblem::missing:
      return "missing";
    case DecodeProblem::duplicate:
      return "duplicate";
    case DecodeProblem::wrongSize:
      return "wrong size";
    case DecodeProblem::badValue:
      return "bad value";
  }
  return "unknown problem";
}

}  // namespace

std::string description(const DecodeError& error) {
  return std::string(error.subject) + ": " + std::string(problemText(error.problem));
}

}  // namespace lanternfold
