// Which drives there are, and what the machine's paths are called on them.

#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "platform/drive_file_system.h"
#include "platform/user_folders.h"

namespace skv {

namespace {

namespace fs = std::filesystem;

// The folder behind a link, links in the path resolved as far as it exists; "" when nothing is
// there.
std::string realFolder(const std::string& native) {
  std::error_code error;
  const fs::path real = fs::weakly_canonical(native, error);
  return error ? std::string() : real.string();
}

// What follows `root` in `path`; none when `path` does not lie below it.
std::optional<std::string> below(const std::string& root, const std::string& path) {
  const std::string prefix = root.ends_with('/') ? root : root + "/";
  if (path == root) return std::string();
  if (!path.starts_with(prefix)) return std::nullopt;
  return path.substr(prefix.size());
}

}  // namespace

std::string findDrivesFolder() {
  if (const std::string given = environmentValue("SKYVAULT_DRIVES"); !given.empty()) return given;
  std::error_code error;
  for (const std::string& prefix : {environmentValue("WINEPREFIX"), homeFolder() + "/.wine"}) {
    if (!prefix.empty() && fs::is_directory(prefix + "/dosdevices", error))
      return prefix + "/dosdevices";
  }
  const fs::path own = dataFolder();
  const fs::path drives = own / "dosdevices";
  fs::create_directories(own / "drive_c", error);
  fs::create_directories(drives, error);
  fs::create_directory_symlink("../drive_c", drives / "c:", error);
  fs::create_directory_symlink("/", drives / "z:", error);
  return drives.string();
}

std::string DriveFileSystem::windowsPath(std::string_view native) const {
  const std::string given = fs::path(native).lexically_normal().string();
  std::string best;
  std::size_t shortest = std::string::npos;
  for (const std::string& path : {given, realFolder(given)}) {
    for (char drive = 'a'; drive <= 'z'; ++drive) {
      std::error_code error;
      if (!fs::exists(driveLink(drive), error)) continue;
      const auto rest = below(realFolder(driveLink(drive)), path);
      if (!rest || rest->size() >= shortest) continue;
      shortest = rest->size();
      best = std::string(1, static_cast<char>(drive - 'a' + 'A')) + ":\\" + *rest;
    }
  }
  for (char& c : best)
    if (c == '/') c = '\\';
  return best;
}

}  // namespace skv
