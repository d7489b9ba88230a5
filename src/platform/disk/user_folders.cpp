#include "platform/disk/user_folders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace skv {

namespace {

constexpr const char* programName = "FSSkyvault";

// Only an absolute path counts, as the base directory rules have it.
std::string baseFolder(const char* variable, const char* fallback) {
  std::string base = environmentValue(variable);
  if (!base.starts_with('/')) base = homeFolder() + fallback;
  return base + "/" + programName;
}

}  // namespace

std::string environmentValue(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

std::string homeFolder() {
  if (std::string home = environmentValue("HOME"); home.starts_with('/')) return home;
  const passwd* user = ::getpwuid(::getuid());
  return user == nullptr ? std::string("/") : std::string(user->pw_dir);
}

std::string configFolder() { return baseFolder("XDG_CONFIG_HOME", "/.config"); }
std::string dataFolder() { return baseFolder("XDG_DATA_HOME", "/.local/share"); }
std::string cacheFolder() { return baseFolder("XDG_CACHE_HOME", "/.cache"); }

bool makePrivateFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(folder).parent_path(), error);
  ::mkdir(folder.c_str(), 0700);
  // A link is the user's own choice when it is the user's own link.
  struct stat status {
  }, link{};
  if (::stat(folder.c_str(), &status) != 0 || ::lstat(folder.c_str(), &link) != 0 ||
      !S_ISDIR(status.st_mode) || status.st_uid != ::getuid() || link.st_uid != ::getuid())
    return false;
  return (status.st_mode & 0077U) == 0 || ::chmod(folder.c_str(), 0700) == 0;
}

}  // namespace skv
