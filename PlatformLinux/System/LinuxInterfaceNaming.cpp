#include "PlatformLinux/System/LinuxInterfaceNaming.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>

namespace lanternfold {

namespace {

/// The names of one family, read when the first one is asked for.
class FamilyNames {
 public:
  FamilyNames(LinkSurvey survey, LinkFamily family) : survey_(std::move(survey)), family_(family) {}

  [[nodiscard]] bool contains(std::string_view name) {
    if (!names_) names_ = read();
    return names_->contains(std::string(name));
  }

 private:
  [[nodiscard]] std::unordered_set<std::string> read() const {
    std::unordered_set<std::string> names;
    const auto links = survey_.allLinks();
    if (!links) return names;
    for (const SurveyedLink& each : *links) {
      if (each.linkClass.family == family_) names.insert(each.link.name);
    }
    return names;
  }

  LinkSurvey survey_;
  LinkFamily family_;
  std::optional<std::unordered_set<std::string>> names_;
};

}  // namespace

std::function<bool(std::string_view name)> LinuxInterfaceNaming::matcher(
    std::string_view prefix) const {
  const LinkFamily family = familyOfPrefix(prefix);
  if (family == LinkFamily::none) {
    return
        [prefix = std::string(prefix)](std::string_view name) { return name.starts_with(prefix); };
  }
  return [prefix = std::string(prefix), names = std::make_shared<FamilyNames>(survey_, family)](
             std::string_view name) { return name.starts_with(prefix) || names->contains(name); };
}

}  // namespace lanternfold
