// The prefix rule of Linux: the literal one, widened for the two prefixes that stand for a family
// of links.
//
// Made by: the composition. Read by: `SNUtils`.
#pragma once

#include "Platform/InterfaceNaming.h"
#include "PlatformLinux/System/LinkSurvey.h"

namespace lanternfold {

/// "en" also takes every link that is an adapter, "pdp_ip" every modem (`classifyLink` says which);
/// all other prefixes are literal. Any thread may make matchers; one matcher is for one thread.
class LinuxInterfaceNaming final : public InterfaceNaming {
 public:
  explicit LinuxInterfaceNaming(LinkSurvey survey = LinkSurvey()) : survey_(std::move(survey)) {}

  [[nodiscard]] std::function<bool(std::string_view name)> matcher(
      std::string_view prefix) const override;

 private:
  LinkSurvey survey_;
};

}  // namespace lanternfold
