#include "platform/desktop/wine_simulator_finder.h"

#include <chrono>
#include <filesystem>
#include <unordered_set>

#include "base/paths.h"
#include "base/text.h"
#include "platform/desktop/timed_search.h"
#include "platform/desktop/wine_prefixes.h"
#include "platform/desktop/wine_registry.h"
#include "platform/disk/drive_file_system.h"

namespace skv {

namespace {

constexpr const char* mark = "Scenery.cfg";

// Where the simulator's setup notes its folder; the second is a 64-bit prefix's name of the first.
constexpr const char* registryKeys[] = {
    R"(Software\Microsoft\Microsoft Games\Flight Simulator\8.0)",
    R"(Software\Wow6432Node\Microsoft\Microsoft Games\Flight Simulator\8.0)",
};
constexpr const char* registryName = "EXE Path";

// Below a drive: where the setup puts it, and where people do.
constexpr const char* usualFolders[] = {
    R"(Program Files\Microsoft Games\FS2002\)",
    R"(Program Files (x86)\Microsoft Games\FS2002\)",
    R"(Microsoft Games\FS2002\)",
    R"(Games\FS2002\)",
    R"(FS2002\)",
};

// A start waits no longer for what does not answer.
constexpr std::chrono::seconds patience{3};

// Tells of the simulators found, as paths of the program's drives.
class Found {
 public:
  Found(const FileSystem& files, const Tell& tell) : files_(files), tell_(tell) {}
  // `folder` is a path of `drives`, with or without trailing backslash.
  void look(const FileSystem& drives, const std::string& folder) {
    if (!drives.attributes(withBackslash(folder) + mark).ok()) return;
    const auto place = drives.nativePath(withBackslash(folder) + mark);
    if (!place.ok()) return;
    std::error_code error;
    const auto native = std::filesystem::canonical(place.value(), error);
    if (error || !seen_.insert(native.string()).second) return;
    const std::string path = files_.windowsPath(place.value());
    if (!path.empty()) tell_(folderAbove(path));
  }

 private:
  const FileSystem& files_;
  const Tell& tell_;
  std::unordered_set<std::string> seen_;
};

// Values name the folder, or the program in it.
void lookWhereTheRegistrySays(Found& found, const std::string& prefix) {
  for (const char* key : registryKeys) {
    const auto text = registryText(prefix + "/system.reg", key, registryName);
    if (!text || text->empty()) continue;
    found.look(DriveFileSystem(prefix + "/dosdevices"),
               lowerAscii(*text).ends_with(".exe") ? folderAbove(*text) : *text);
  }
}

void lookAtUsualFolders(Found& found, const FileSystem& drives) {
  for (char drive = 'C'; drive <= 'Z'; ++drive) {
    const std::string root = {drive, ':', '\\'};
    if (!drives.attributes(root).ok()) continue;
    for (const char* folder : usualFolders) found.look(drives, root + folder);
  }
}

}  // namespace

std::vector<std::string> WineSimulatorFinder::find() const {
  return foundInTime(patience, [drivesFolder = drivesFolder_](const Tell& tell) {
    const DriveFileSystem files(drivesFolder);
    Found found(files, tell);
    const std::vector<std::string> prefixes = winePrefixes();
    for (const std::string& prefix : prefixes) lookWhereTheRegistrySays(found, prefix);
    lookAtUsualFolders(found, files);
    for (const std::string& prefix : prefixes)
      lookAtUsualFolders(found, DriveFileSystem(prefix + "/dosdevices"));
  });
}

}  // namespace skv
