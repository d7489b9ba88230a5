#include "platform/single_instance.h"

#include <fcntl.h>
#include <sys/file.h>

#include "platform/user_folders.h"

namespace skv {

std::optional<SingleInstance> SingleInstance::acquire(const std::string& folder) {
  if (!makePrivateFolder(folder)) return std::nullopt;
  const std::string file = folder + "/running";
  Descriptor lock(retried(
      [&] { return ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600); }));
  if (!lock.valid() || retried([&] { return ::flock(lock.get(), LOCK_EX | LOCK_NB); }) != 0)
    return std::nullopt;
  return SingleInstance(std::move(lock));
}

std::optional<SingleInstance> SingleInstance::acquire() {
  const std::string runtime = environmentValue("XDG_RUNTIME_DIR");
  return acquire(runtime.starts_with('/') ? runtime + "/FSSkyvault" : configFolder());
}

}  // namespace skv
