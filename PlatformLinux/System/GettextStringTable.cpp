#include "PlatformLinux/System/GettextStringTable.h"

#include <libintl.h>
#include <locale.h>
#include <utility>

namespace lanternfold {

/// The locale of the environment, or C.UTF-8 when it is not installed.
class GettextStringTable::UserLocale {
 public:
  UserLocale() : locale_(newlocale(categories, "", nullptr)) {
    if (locale_ == nullptr) locale_ = newlocale(categories, "C.UTF-8", nullptr);
  }
  ~UserLocale() {
    if (locale_ != nullptr) freelocale(locale_);
  }
  UserLocale(const UserLocale&) = delete;
  UserLocale& operator=(const UserLocale&) = delete;

  /// Puts the locale into effect for the calling thread, for as long as the object lives.
  class OnThisThread {
   public:
    explicit OnThisThread(const UserLocale& locale) : before_(uselocale(locale.locale_)) {}
    ~OnThisThread() { uselocale(before_); }
    OnThisThread(const OnThisThread&) = delete;
    OnThisThread& operator=(const OnThisThread&) = delete;

   private:
    locale_t before_;
  };

 private:
  static constexpr int categories = LC_MESSAGES_MASK | LC_CTYPE_MASK;

  locale_t locale_;  // null leaves the thread's locale as it is
};

GettextStringTable::GettextStringTable(std::string domain, const std::filesystem::path& directory)
    : domain_(std::move(domain)), locale_(std::make_unique<UserLocale>()) {
  bindtextdomain(domain_.c_str(), directory.c_str());
  bind_textdomain_codeset(domain_.c_str(), "UTF-8");
}

GettextStringTable::~GettextStringTable() = default;

std::string GettextStringTable::localized(std::string_view key) const {
  // The text of the empty key is the catalogue's header; a key with a zero byte cannot be asked.
  if (key.empty() || key.contains('\0')) return std::string(key);
  const std::string terminated(key);
  const UserLocale::OnThisThread scope(*locale_);
  return dgettext(domain_.c_str(), terminated.c_str());
}

}  // namespace lanternfold
