// The drives: a folder of links in Wine's own form, "c:" to a folder, "z:" to "/".
#pragma once

#include <string>
#include <string_view>

namespace skv {

// The folder of drive links of this user: $SKYVAULT_DRIVES, $WINEPREFIX/dosdevices,
// ~/.wine/dosdevices, else one of our own below $XDG_DATA_HOME/FSSkyvault/, made on first use with
// an empty drive C: and Z: as the whole machine. One that cannot be made has no drives.
std::string findDrivesFolder();

// A prefix that is shut off from the rest of the machine has no drive for all of it. The program
// has one of its own there, the last letter that is free: what it came with, its working folder and
// the simulators of other prefixes lie outside.
class Drives {
 public:
  explicit Drives(std::string folder);

  // Native path of a drive's root, with trailing slash; whether or not there is such a drive.
  std::string root(char drive) const { return drive == own_ ? "/" : folder_ + "/" + drive + ":/"; }
  // The same with all links resolved; "" when there is no such drive.
  std::string realRoot(char drive) const;
  // The letter of the program's own drive, in lower case; 0 when it has none.
  char own() const { return own_; }
  // The Windows path of a native one, by the drive that reaches it with the fewest elements, the
  // first of equals; "" when no drive reaches it.
  std::string windowsPath(std::string_view native) const;

 private:
  std::string folder_;
  char own_;  // the drive that only the program has, 0 for none
};

}  // namespace skv
