#include "platform/disk/drives.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "base/text.h"
#include "platform/disk/native_calls.h"
#include "platform/disk/user_folders.h"
#include "platform/disk/windows_names.h"

namespace skv {

namespace {

// Whether no folder stands there for certain. A link on the way that leads nowhere may be a disk
// that is away, and then another prefix would be somebody else's drives.
bool isAbsent(const std::string& native) {
  struct stat status {};
  if (::stat(native.c_str(), &status) == 0) return !S_ISDIR(status.st_mode);
  if (!isMissing(errno)) return false;
  for (std::filesystem::path way = native; way.has_relative_path(); way = way.parent_path())
    if (::lstat(way.c_str(), &status) == 0)
      return !S_ISLNK(status.st_mode) || ::stat(way.c_str(), &status) == 0;
  return true;
}

std::string realPath(const std::string& native) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(native.c_str(), nullptr),
                                                         &std::free);
  return real != nullptr ? real.get() : "";
}

std::string ownDrives() {
  const std::string own = dataFolder();
  std::string drives = own + "/dosdevices";
  std::error_code error;  // what could not be made is missing when it is asked for
  std::filesystem::create_directories(own + "/drive_c", error);
  std::filesystem::create_directories(drives, error);
  std::filesystem::create_directory_symlink("../drive_c", drives + "/c:", error);
  std::filesystem::create_directory_symlink("/", drives + "/z:", error);
  return drives;
}

// The letter for the whole machine where drives stand and none of them is it, else 0. Looks at no
// more of what is behind the links than it takes to find one that stands.
char letterOfItsOwn(const std::string& folder) {
  namespace fs = std::filesystem;
  bool stands = false;
  char last = 0;
  for (char drive = 'z'; drive >= 'a'; --drive) {  // it is nearly always the first of them
    const fs::path link = folder + "/" + drive + ":";
    std::error_code error;
    const fs::path target = fs::read_symlink(link, error);
    if (!error && (fs::path(folder) / target).lexically_normal() == "/") return 0;
    if (fs::symlink_status(link, error).type() == fs::file_type::not_found)
      last = std::max(last, drive);
    else
      stands = stands || fs::is_directory(link, error);
  }
  return stands ? last : '\0';
}

// What follows `root` in `path`, both without doubled slashes; nothing when the path does not lie
// below it.
std::optional<std::string> below(std::string_view root, std::string_view path) {
  if (!path.starts_with(root)) return {};
  path.remove_prefix(root.size());
  if (!path.empty() && !root.ends_with('/') && path[0] != '/') return {};
  while (path.starts_with('/')) path.remove_prefix(1);
  while (path.ends_with('/')) path.remove_suffix(1);
  return std::string(path);
}

bool isReachable(const std::string& elements) {
  return elements.empty() || std::ranges::all_of(split(elements, '/'), isWindowsName);
}

std::size_t countElements(const std::string& elements) {
  return elements.empty() ? 0 : 1 + std::ranges::count(elements, '/');
}

}  // namespace

std::string findDrivesFolder() {
  if (std::string told = environmentValue("SKYVAULT_DRIVES"); !told.empty()) return told;
  for (const std::string& prefix : {environmentValue("WINEPREFIX"), homeFolder() + "/.wine"})
    if (!prefix.empty() && !isAbsent(prefix + "/dosdevices")) return prefix + "/dosdevices";
  return ownDrives();
}

Drives::Drives(std::string folder) : folder_(std::move(folder)), own_(letterOfItsOwn(folder_)) {}

std::string Drives::realRoot(char drive) const { return realPath(root(drive)); }

std::string Drives::windowsPath(std::string_view native) const {
  std::error_code error;
  std::filesystem::path entry =
      std::filesystem::absolute(std::filesystem::path(native), error).lexically_normal();
  if (error || native.empty()) return {};
  if (!entry.has_filename()) entry = entry.parent_path();
  // A place may be reached by a shorter way than the one that was taken to it. Only the folder is
  // looked at: an entry that is a link itself keeps its own name.
  std::vector<std::string> ways = {entry.string()};
  if (const std::string real = realPath(entry.parent_path().string()); !real.empty())
    ways.push_back((real == "/" ? real : real + "/") + entry.filename().string());

  std::optional<DrivePath> best;
  for (char drive = 'a'; drive <= 'z'; ++drive) {
    const std::string real = realRoot(drive);
    if (real.empty()) continue;
    for (const std::string& way : ways) {
      auto elements = below(real, way);
      if (!elements || !isReachable(*elements)) continue;
      if (!best || countElements(*elements) < countElements(best->below))
        best = DrivePath{drive, std::move(*elements)};
    }
  }
  return best ? best->text() : std::string();
}

}  // namespace skv
