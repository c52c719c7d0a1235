// The language that the program speaks.
//
// Made by: `LinuxMachine`, first of all. Read by: the string tables, and whoever writes dates or
// draws.
#pragma once

#include <string>

#include "Support/UserLanguage.h"

namespace lanternfold {

/// The name of the program's catalogues, of its modules and of the program as a whole alike.
[[nodiscard]] std::string catalogueDomain();

/// Of the environment and of the catalogues at hand. Reads LANGUAGE, LC_ALL, LC_MESSAGES, LC_TIME,
/// LC_NUMERIC and LANG, and settles LANGUAGE; before any thread is started.
[[nodiscard]] UserLanguage chooseUserLanguage();

}  // namespace lanternfold
