#include "platform/desktop/single_instance.h"

#include <fcntl.h>
#include <sys/file.h>

#include "platform/disk/native_calls.h"
#include "platform/disk/user_folders.h"

namespace skv {

Result<SingleInstance> SingleInstance::acquire(const std::string& folder) {
  if (!makePrivateFolder(folder)) return Outcome::failure(err::pathFileAccess, folder);
  const std::string file = folder + "/running";
  Descriptor lock = openFile(file, O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
  if (!lock.valid()) return systemFailure(errno, file);
  const int error = errorOf([&] { return ::flock(lock.get(), LOCK_EX | LOCK_NB); });
  if (error == EWOULDBLOCK)
    return Outcome::withText(err::permissionDenied, "FS Skyvault is already running.");
  if (error != 0) return systemFailure(error, file);
  return SingleInstance(std::move(lock));
}

Result<SingleInstance> SingleInstance::acquire() {
  const std::string runtime = environmentValue("XDG_RUNTIME_DIR");
  if (runtime.starts_with('/')) {
    auto run = acquire(runtime + "/FSSkyvault");
    // A runtime folder that is gone, or another user's, is as good as none.
    if (run.ok() || run.outcome().number() != err::pathFileAccess) return run;
  }
  return acquire(configFolder());
}

}  // namespace skv
