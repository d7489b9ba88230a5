#include "platform/desktop/wine_simulator_finder.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <unordered_map>

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

// Below a drive: where the setup puts it, and where people do. Each may have either name.
constexpr const char* usualFolders[] = {
    R"(Program Files\Microsoft Games\)",
    R"(Program Files (x86)\Microsoft Games\)",
    R"(Microsoft Games\)",
    R"(Games\)",
    "",
};
constexpr const char* usualNames[] = {R"(FS2002\)", R"(Flight Simulator 2002\)"};

// A start waits no longer for what does not answer.
constexpr std::chrono::seconds patience{3};

struct Simulator {
  std::string folder;  // a path of the program's drives
  bool registered = false;
};

// Tells of the simulators found.
class Found {
 public:
  Found(const FileSystem& files, const Tell<Simulator>& tell) : files_(files), tell_(tell) {}
  // `folder` is a path of `drives`, with or without trailing backslash.
  void look(const FileSystem& drives, const std::string& folder, bool registered = false) {
    if (!drives.attributes(withBackslash(folder) + mark).ok()) return;
    const auto place = drives.nativePath(withBackslash(folder) + mark);
    if (!place.ok()) return;
    std::error_code error;
    const auto native = std::filesystem::canonical(place.value(), error);
    if (error) return;
    const auto [known, fresh] = seen_.try_emplace(native.string());
    if (fresh) known->second = folderAbove(files_.windowsPath(place.value()));
    if (!known->second.empty() && (fresh || registered)) tell_({known->second, registered});
  }

 private:
  const FileSystem& files_;
  const Tell<Simulator>& tell_;
  std::unordered_map<std::string, std::string> seen_;  // the folders by their native paths
};

void lookAtUsualFolders(Found& found, const FileSystem& drives) {
  for (char drive = 'C'; drive <= 'Z'; ++drive) {
    const std::string root = {drive, ':', '\\'};
    if (!drives.attributes(root).ok()) continue;
    for (const std::string folder : usualFolders) {
      if (!drives.attributes(root + folder).ok()) continue;
      for (const char* name : usualNames) found.look(drives, root + folder + name);
    }
  }
}

// Values name the folder, or the program in it.
void lookWhereTheRegistrySays(Found& found, const std::string& prefix) {
  const WineRegistry registry(prefix + "/system.reg");
  for (const char* key : registryKeys) {
    const auto text = registry.text(key, registryName);
    if (!text || text->empty()) continue;
    found.look(DriveFileSystem(prefix + "/dosdevices"),
               lowerAscii(*text).ends_with(".exe") ? folderAbove(*text) : *text, true);
  }
}

}  // namespace

// The registries come last: a player with many prefixes has hundreds of megabytes of them, and what
// lies at its usual place is to be found in the time that a slow disk needs for those.
std::vector<std::string> WineSimulatorFinder::find() const {
  const auto all =
      foundInTime<Simulator>(patience, [drivesFolder = drivesFolder_](const Tell<Simulator>& tell) {
        const DriveFileSystem files(drivesFolder);
        Found found(files, tell);
        lookAtUsualFolders(found, files);
        const std::vector<std::string> prefixes = winePrefixes();
        for (const std::string& prefix : prefixes)
          lookAtUsualFolders(found, DriveFileSystem(prefix + "/dosdevices"));
        for (const std::string& prefix : prefixes) lookWhereTheRegistrySays(found, prefix);
      });
  std::vector<std::string> folders;
  for (const bool registered : {true, false})
    for (const Simulator& each : all)
      if (each.registered == registered && std::ranges::find(folders, each.folder) == folders.end())
        folders.push_back(each.folder);
  return folders;
}

}  // namespace skv
