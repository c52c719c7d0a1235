// Searches bytes for the names of a network, in every form in which they could get out.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Tests/CommandLine/WifiScenes.h"

namespace lanternfold {

/// Names that stand in nothing by chance.
inline const NetworkNames marker{.ssid = "Quill-Zanzibar 7391?~",
                                 .bssid = {0x06, 0x5E, 0xC4, 0x9A, 0x7B, 0x31},
                                 .secondBssid = {0x06, 0x5E, 0xC4, 0x9A, 0x7B, 0xD2},
                                 .peer = {0x0A, 0xB1, 0xF6, 0x27, 0x93, 0xEC}};
using Form = std::pair<std::string, std::string>;  ///< what it is, and the bytes

/// Every form to search for, in lower case: what is searched is lowered as well.
[[nodiscard]] std::vector<Form> formsOf(const NetworkNames& names);

/// Each form of the marker that stands in the bytes: "the SSID raw in PLACE".
[[nodiscard]] std::vector<std::string> findings(const std::string& place, const std::string& bytes);

}  // namespace lanternfold
