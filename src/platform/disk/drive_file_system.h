// The disk behind drive links. Knows nothing of Wine but the form in which it keeps its drives.
//
// What is where in this folder, from the outside in:
//   drive_file_system.cpp  looks, attributes, folders, renaming, free space, flushing
//   drive_listing.cpp      list()
//   drive_content.cpp      reading, writing, copying and moving files
//   drive_batches.cpp      copyFiles() and deleteFiles() by two threads
//   disk_paths             from a Windows path to the place on disk, in whatever letters it stands
//   folder_index           the names in a folder without regard to case, kept current
//   windows_names          Windows paths taken apart; which names there can be
//   drives, user_folders   where the drive links are, and a user's own folders
//   dos_attributes         hidden, system, archive and read-only on a disk that has none of them
//   file_writer            a file that has no name until it is whole
//   hidden_files           the hidden names of such files elsewhere, and what a killed run left
//   file_copy              the content of one open file into another
//   native_calls, os_error the system's calls, and their failures as outcomes
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/disk/disk_paths.h"
#include "platform/disk/file_writer.h"
#include "platform/file_system.h"

namespace skv {

class DriveFileSystem : public FileSystem {
 public:
  // The native folder of drive links, as findDrivesFolder (drives.h) gives it. The current
  // folder is C:\ at first.
  explicit DriveFileSystem(std::string driveFolder);
  // The letter of the drive that only the program has, in lower case; 0 when it has none.
  char ownDrive() const { return paths_.drives().own(); }

  Result<Attributes> attributes(std::string_view path) const override;
  Outcome setAttributes(std::string_view path, Attributes attributes) override;
  Result<std::vector<FolderEntry>> list(std::string_view folder,
                                        Entries entries = Entries::plain) const override;
  bool isLink(std::string_view path) const override;
  std::string identity(std::string_view folder) const override;
  Result<std::string> canonicalPath(std::string_view folder) const override;
  Outcome copyFile(std::string_view from, std::string_view to) override;
  Outcome copyFileDurably(std::string_view from, std::string_view to) override;
  void copyFiles(const std::vector<FileCopy>& copies,
                 const std::function<bool(const Outcome&)>& copied) override;
  Outcome moveFile(std::string_view from, std::string_view to) override;
  Outcome rename(std::string_view from, std::string_view to) override;
  Outcome deleteFile(std::string_view path) override;
  void deleteFiles(const std::vector<std::string>& paths,
                   const std::function<bool(const Outcome&)>& deleted) override;
  Outcome makeFolder(std::string_view path) override;
  Outcome removeFolder(std::string_view path) override;
  Result<std::uint64_t> fileLength(std::string_view path) const override;
  Result<FileTime> modified(std::string_view path) const override;
  Result<FileState> fileState(std::string_view path) const override;
  Result<std::string> readFile(std::string_view path) const override;
  Outcome replaceFile(std::string_view path, std::string_view content) override;
  Outcome replaceContent(std::string_view path, std::string_view content) override;
  // The writer must not outlive this file system.
  Result<std::unique_ptr<FileWriter>> createFile(std::string_view path) override;
  Outcome writeFiles(const std::string& folder, std::span<const NewFile> files,
                     std::size_t& made) override;
  Result<double> freeBytes(std::string_view path) const override;
  Outcome flushDisk(std::string_view path) override;
  std::string currentFolder() const override;
  Outcome setCurrentFolder(std::string_view path) override;
  Result<std::string> nativePath(std::string_view path) const override;
  std::string windowsPath(std::string_view native) const override;

 private:
  class Writer;

  // What stands at a path; `ofLink`: a link itself rather than what it leads to.
  struct Standing {
    std::string native;
    struct stat status {};
  };
  Result<Standing> standing(std::string_view path, bool ofLink = false) const;
  static Result<Attributes> attributesBehind(const Standing& found, std::string_view path);
  // A plain file, open for reading, with its state.
  struct Source {
    Descriptor fd;
    struct stat status {};
  };
  Result<Source> openSource(std::string_view path) const;
  Result<DiskPlace> placeFor(std::string_view path) const;

  // How a finished file takes its name.
  struct Publishing {
    bool keepPermissions = false;  // of a file that is replaced
    bool keepStamps = false;       // its times too, and it may be read-only
    bool durable = false;          // content and name are on the disk when the call returns
    std::optional<FileTime> modified = {};
    const struct stat* source = nullptr;  // of a copy: must not be the target itself
  };
  // `source` is what the new file is a copy of, nullptr for none.
  Result<PendingFile> begin(std::string_view path, const struct stat* source,
                            bool overReadOnly = false);
  Outcome replace(std::string_view path, std::string_view content, bool keepStamps);
  Outcome publish(PendingFile& file, std::string_view path, const Publishing& how);
  // Its part under the lock.
  Outcome giveName(PendingFile& file, std::string_view path, const Publishing& how);
  Outcome copy(std::string_view from, std::string_view to, bool durable);
  Outcome copyAndDelete(std::string_view from, const std::string& native, std::string_view to);

  mutable DiskPaths paths_;
  // Held from the look for a name in other letters until the new name stands, so that no two
  // threads make a pair that differs in case alone.
  std::mutex naming_;
};

}  // namespace skv
