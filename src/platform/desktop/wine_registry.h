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

class WineRegistry {
 public:
  // Reads the whole file. Empty when it cannot be read or is no registry file.
  explicit WineRegistry(const std::string& nativeFile);

  // The text value `name` of the section `key`, both compared without regard to case; `key` has
  // single backslashes.
  std::optional<std::string> text(std::string_view key, std::string_view name) const;

 private:
  std::string bytes_;
};

}  // namespace skv
