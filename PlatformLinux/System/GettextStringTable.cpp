#include "PlatformLinux/System/GettextStringTable.h"

#include <cstdlib>
#include <libintl.h>
#include <locale.h>
#include <system_error>
#include <utility>

namespace lanternfold {
namespace {

constexpr const char* languageVariable = "LANGUAGE";

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

}  // namespace

/// A locale in which gettext follows LANGUAGE; in plain C it does not.
class GettextStringTable::CatalogueLocale {
 public:
  CatalogueLocale() : locale_(newlocale(LC_MESSAGES_MASK | LC_CTYPE_MASK, "C.UTF-8", nullptr)) {}
  ~CatalogueLocale() {
    if (locale_ != nullptr) freelocale(locale_);
  }
  CatalogueLocale(const CatalogueLocale&) = delete;
  CatalogueLocale& operator=(const CatalogueLocale&) = delete;

  /// Puts the locale into effect for the calling thread, for as long as the object lives.
  class OnThisThread {
   public:
    explicit OnThisThread(const CatalogueLocale& locale) : before_(uselocale(locale.locale_)) {}
    ~OnThisThread() { uselocale(before_); }
    OnThisThread(const OnThisThread&) = delete;
    OnThisThread& operator=(const OnThisThread&) = delete;

   private:
    locale_t before_;
  };

 private:
  locale_t locale_;  // null leaves the thread's locale as it is
};

LocaleEnvironment localeEnvironmentOfProcess() {
  return {.language = variable(languageVariable),
          .all = variable("LC_ALL"),
          .messages = variable("LC_MESSAGES"),
          .time = variable("LC_TIME"),
          .numeric = variable("LC_NUMERIC"),
          .lang = variable("LANG")};
}

bool hasGettextCatalogue(const std::filesystem::path& directory, const std::string& domain,
                         const std::string& name) {
  std::error_code error;
  return std::filesystem::is_regular_file(directory / name / "LC_MESSAGES" / (domain + ".mo"),
                                          error);
}

void makeGettextSpeak(const UserLanguage& language) {
  if (!language.catalogue.empty()) ::setenv(languageVariable, language.catalogue.c_str(), 1);
}

GettextStringTable::GettextStringTable(std::string domain, const std::filesystem::path& directory,
                                       const UserLanguage& language)
    : domain_(std::move(domain)), decimals_(language.numberLocale) {
  if (language.catalogue.empty()) return;
  locale_ = std::make_unique<CatalogueLocale>();
  bindtextdomain(domain_.c_str(), directory.c_str());
  bind_textdomain_codeset(domain_.c_str(), "UTF-8");
}

GettextStringTable::~GettextStringTable() = default;

std::string GettextStringTable::localized(std::string_view key) const {
  // The text of the empty key is the catalogue's header; a key with a zero byte cannot be asked.
  if (locale_ == nullptr || key.empty() || key.contains('\0')) return std::string(key);
  const std::string terminated(key);
  const CatalogueLocale::OnThisThread scope(*locale_);
  return dgettext(domain_.c_str(), terminated.c_str());
}

std::string GettextStringTable::localizedDecimal(std::string_view digits) const {
  return decimals_.text(digits);
}

}  // namespace lanternfold
