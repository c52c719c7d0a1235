#include "Wiring/LanguageChoice.h"

#include "PlatformLinux/System/GettextStringTable.h"
#include "Wiring/DataFolders.h"

namespace lanternfold {

std::string catalogueDomain() { return "lanternfold"; }

UserLanguage chooseUserLanguage() {
  const auto folder = translationsFolder();
  UserLanguage language =
      userLanguage(localeEnvironmentOfProcess(), [&folder](const std::string& name) {
        return hasGettextCatalogue(folder, catalogueDomain(), name);
      });
  makeGettextSpeak(language);
  return language;
}

}  // namespace lanternfold
