// Which interface names from outside are believed.
//
// Made by: the kernel, or whoever may name a link. Read by: the decoders, and the command line.
#pragma once

#include <string_view>

namespace lanternfold {

/// Whether a link or an alias of one ("eth0:1") can have this name, of whatever bytes: 1 to 15, no
/// slash, no ASCII control character or white space, not "." or "..".
[[nodiscard]] bool isKernelInterfaceName(std::string_view name);

/// Whether the kernel would accept `name` (1 to 15 bytes, no slash, colon or white space, not "."
/// or "..") and it can be shown: UTF-8 without control characters. The kernel itself takes any
/// other byte, and a name ends up in terminals, JSON and markup.
[[nodiscard]] bool isTrustworthyInterfaceName(std::string_view name);

}  // namespace lanternfold
