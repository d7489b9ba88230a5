// A registry file of Wine, as "system.reg" in a prefix:
//
//   WINE REGISTRY Version 2
//
//   [Software\\Microsoft\\Microsoft Games\\Flight Simulator\\8.0] 1043420000
//   #time=1d6a0b5c0a0f3e0
//   "EXE Path"="C:\\Program Files\\Microsoft Games\\FS2002\\"
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace skv {

// The text value `name` of the section `key`, both compared without regard to case; `key` has
// single backslashes. Nothing when the file cannot be read, is not a registry file, or has no such
// text. Reads the file once from its start to the section, and keeps nothing of it.
std::optional<std::string> registryText(const std::string& nativeFile, std::string_view key,
                                        std::string_view name);

}  // namespace skv
