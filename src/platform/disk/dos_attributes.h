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

// What is stored with one file or folder, or the system's error number when it cannot be told. A
// disk that has none to give, a file that may not be read and a value of another kind have none
// stored: whoever works on such a file meets its own failure. Listing and attributes() go by this
// one answer, so that both see the same.
struct StoredBits {
  unsigned bits = 0;
  int error = 0;
};

// Of what stands at a native path, links followed.
StoredBits storedDosBits(const std::string& native);

// Of one entry after the other of an open folder, as cheaply as the system allows.
class StoredDosBits {
 public:
  // `native` is the folder's path, with trailing slash.
  StoredDosBits(int folder, std::string native);
  StoredBits of(const char* name);

 private:
  int folder_;
  std::string path_;
  std::size_t prefix_;
  bool stored_ = true;    // false on a disk that cannot store any
  bool byFolder_ = true;  // false on a system without the call that saves the way to the folder
};

bool isReadOnly(const struct stat& status);
Attributes attributesOf(unsigned stored, std::string_view name, const struct stat& status);

// Gives a file or folder, no link, the attributes; 0 or the system's error number. Archive is
// dropped on a disk that cannot store it, since nothing depends on it.
int applyAttributes(const std::string& native, std::string_view name, const struct stat& status,
                    Attributes attributes);

// Gives an open file what another one has stored beside its content: for a copy the attributes, for
// a file that is replaced (given by its native path) its access list as well. What the disk cannot
// take is left out. The copy's answers 0 or the system's error number, when what is stored cannot
// be told.
int copyStoredAttributes(int from, int to);
void copyStoredAttributes(const std::string& replaced, int to);

// Gives an open file the time of creation of the one at a native path, on disks that let it be set.
// Those that keep it with the attributes have it from copyStoredAttributes.
void copyStoredCreation(const std::string& replaced, int to);

}  // namespace skv
