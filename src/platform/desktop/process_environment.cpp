#include "platform/desktop/process_environment.h"

#include <filesystem>
#include <utility>

#include "base/text.h"
#include "platform/disk/user_folders.h"

namespace skv {

namespace {

namespace fs = std::filesystem;

fs::path programFolder() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error).parent_path();
}

// "/usr/share/fsskyvault/" for the program "/usr/bin/fsskyvault".
std::string dataFolder(const FileSystem& files) {
  const fs::path folder = programFolder().parent_path() / "share" / "fsskyvault";
  std::error_code error;
  const std::string path =
      fs::is_directory(folder, error) ? files.windowsPath(folder.string()) : "";
  return path.empty() || path.ends_with('\\') ? path : path + '\\';
}

}  // namespace

Environment processEnvironment(const DriveFileSystem& files) {
  Environment environment;
  environment.programFolder = files.windowsPath(programFolder().string());
  environment.dataFolder = dataFolder(files);
  environment.home = files.windowsPath(homeFolder());
  if (const char own = files.ownDrive(); own != 0) environment.ownDrive = upper({&own, 1});
  environment.TEMP = environmentValue("TEMP");
  if (environment.TEMP.starts_with('/'))
    if (std::string path = files.windowsPath(environment.TEMP); !path.empty())
      environment.TEMP = std::move(path);
  environment.nativeCacheFolder = cacheFolder();
  if (makePrivateFolder(environment.nativeCacheFolder))
    environment.cacheFolder = files.windowsPath(environment.nativeCacheFolder);
  return environment;
}

}  // namespace skv
