// The file attributes of the DOS family on a disk that has none: read-only is a missing write
// permission of the owner, hidden a leading dot, and what these cannot tell stands in the extended
// attribute that Wine and Samba keep for it.
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace skv {

// The bits of the extended attribute that count here; all others of a stored value are passed over.
namespace dos {
inline constexpr unsigned hidden = 0x02, system = 0x04, archive = 0x20;
}

// The bits that a stored value tells: Wine's text ("0x22") or Samba's records of version 3 and
// later, with or without such a text before them. 0 for anything else.
unsigned dosBitsOf(std::string_view stored);

// The stored bits of what stands at a native path, links followed.
unsigned storedDosBits(const std::string& native);

// The stored bits of one entry after the other of an open folder, as cheaply as the system allows.
class StoredDosBits {
 public:
  // `native` is the folder's path, with trailing slash.
  StoredDosBits(int folder, std::string native);
  unsigned of(const char* name);

 private:
  int folder_;
  std::string path_;
  std::size_t prefix_;
  bool stored_ = true;    // false on a disk that cannot store any
  bool byFolder_ = true;  // false on a system without the call that saves the way to the folder
};

bool isReadOnly(const struct stat& status);
Attributes attributesOf(const std::string& native, std::string_view name,
                        const struct stat& status);

// Gives a file or folder, no link, the attributes; 0 or the system's error number. Archive is
// dropped on a disk that cannot store it, since nothing depends on it.
int applyAttributes(const std::string& native, std::string_view name, const struct stat& status,
                    Attributes attributes);

// Gives an open file what another one has stored beside its content: for a copy the attributes, for
// a file that is replaced (given by its native path) its access list as well. What the disk cannot
// take is left out.
void copyStoredAttributes(int from, int to);
void copyStoredAttributes(const std::string& replaced, int to);

}  // namespace skv
