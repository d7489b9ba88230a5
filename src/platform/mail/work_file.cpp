#include "platform/mail/work_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/disk/user_folders.h"

namespace skv {

Result<Descriptor> makeWorkFile(const std::string& folder) {
  if (!makePrivateFolder(folder)) return Outcome::failure(err::pathFileAccess, folder);
  Descriptor unnamed(
      retried([&] { return ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600); }));
  if (unnamed.valid()) return unnamed;
  // A disk without such files.
  std::string name = folder + "/mail-XXXXXX";
  Descriptor named(::mkostemp(name.data(), O_CLOEXEC));
  if (!named.valid()) return systemFailure(errno, folder);
  ::unlink(name.c_str());
  return named;
}

}  // namespace skv
