// The file system over a folder of drive links in Wine's form: "c:" -> a folder, "z:" -> "/".
#pragma once

#include <mutex>
#include <string>

#include "platform/file_system.h"
#include "platform/folder_index.h"
#include "platform/windows_names.h"

namespace skv {

// The folder of drives of this user: $SKYVAULT_DRIVES, $WINEPREFIX/dosdevices, ~/.wine/dosdevices,
// else one of our own below $XDG_DATA_HOME/FSSkyvault/, made on first use with an empty drive C:
// and Z: as the whole machine.
std::string findDrivesFolder();

class DriveFileSystem : public FileSystem {
 public:
  // `drives`: native path of the folder of links. A link that is not there is a drive that does not
  // exist.
  explicit DriveFileSystem(std::string drives);

  Result<Attributes> attributes(std::string_view path) const override;
  Outcome setAttributes(std::string_view path, Attributes attributes) override;
  Result<std::vector<FolderEntry>> list(std::string_view folder, Entries entries) const override;
  using FileSystem::list;
  bool isLink(std::string_view path) const override;
  std::string identity(std::string_view folder) const override;
  Outcome copyFile(std::string_view from, std::string_view to) override;
  Outcome moveFile(std::string_view from, std::string_view to) override;
  Outcome rename(std::string_view from, std::string_view to) override;
  Outcome deleteFile(std::string_view path) override;
  Outcome makeFolder(std::string_view path) override;
  Outcome removeFolder(std::string_view path) override;
  Result<std::uint64_t> fileLength(std::string_view path) const override;
  Result<FileTime> modified(std::string_view path) const override;
  Result<std::string> readFile(std::string_view path) const override;
  Outcome replaceFile(std::string_view path, std::string_view content) override;
  Result<std::unique_ptr<FileWriter>> createFile(std::string_view path) override;
  Result<double> freeBytes(std::string_view path) const override;
  std::string currentFolder() const override;
  Outcome setCurrentFolder(std::string_view path) override;
  Result<std::string> nativePath(std::string_view path) const override;
  std::string windowsPath(std::string_view native) const override;

 private:
  // Where a path leads on disk. What is missing has the spelling that was asked for.
  struct Place {
    std::string native;
    bool exists = false;
    bool parentExists = false;
  };
  Result<Place> locate(std::string_view path) const;
  Place search(const std::string& root, const std::vector<std::string>& elements) const;
  std::string driveLink(char drive) const;

  const std::string drives_;
  mutable FolderIndex index_;
  mutable std::mutex mutex_;  // of the current folder
  WindowsPath current_;
};

}  // namespace skv
