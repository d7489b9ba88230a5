#include "platform/desktop/process_environment.h"

#include <filesystem>

#include "platform/disk/user_folders.h"

namespace skv {

namespace {

std::string programFolder() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

}  // namespace

Environment processEnvironment(const FileSystem& files) {
  Environment environment;
  environment.programFolder = files.windowsPath(programFolder());
  environment.home = files.windowsPath(homeFolder());
  environment.TEMP = environmentValue("TEMP");
  if (environment.TEMP.starts_with('/')) environment.TEMP = files.windowsPath(environment.TEMP);
  if (environment.TEMP.empty() && makePrivateFolder(cacheFolder()))
    environment.TEMP = files.windowsPath(cacheFolder());
  return environment;
}

}  // namespace skv
