// From a Windows path to the place on disk, in whatever letters it stands there.
#pragma once

#include <cerrno>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/disk/drives.h"
#include "platform/disk/folder_index.h"
#include "platform/disk/os_error.h"
#include "platform/disk/windows_names.h"

namespace skv {

// A name in an existing folder, for something that is made or replaced.
struct DiskPlace {
  std::string folder;  // native, without trailing slash
  std::string name;    // as it stands there, else as it was asked for
  bool taken = false;

  std::string native() const { return folder + "/" + name; }
};

// May be asked from several threads.
class DiskPaths {
 public:
  explicit DiskPaths(std::string driveFolder) : drives_(std::move(driveFolder)) {}

  const Drives& drives() const { return drives_; }
  DrivePath currentFolder() const;
  void setCurrentFolder(DrivePath folder);

  Result<DrivePath> parse(std::string_view path) const;
  // Fails with pathNotFound when the folder is missing, with pathFileAccess on a root. Here and in
  // at(), whatever keeps the answer from being known is its own failure: a folder that cannot be
  // read, a link whose end is missing (deviceUnavailable), a circle of links.
  Result<DiskPlace> place(const DrivePath& path);
  // The native path of the folder in which `path` lies, in the letters given, whether it stands or
  // not.
  std::string folderAsSpelled(const DrivePath& path) const { return spelled(path.folder()); }
  // The native path that something has or would have, its folders in the letters in which they
  // stand. Fails with pathNotFound when there is no such drive.
  Result<std::string> nativePath(const DrivePath& path);

  // Runs `call` on the native path; it answers 0 or a system's error number. The letters given come
  // first, which is all it takes for a name that is spelled as it stands. Fails with fileNotFound,
  // or with pathNotFound when the folder is missing as well.
  template <class Call>
  Outcome at(std::string_view path, Call call) {
    const auto parsed = parse(path);
    if (!parsed.ok()) return parsed.outcome();
    const std::string given = spelled(parsed.value());
    int error = call(given);
    if (isMissing(error)) {
      const auto place = standingPlace(parsed.value());
      if (!place.ok()) return place.outcome();
      if (place.value() != given) error = call(place.value());
      if (isMissing(error)) return notFoundAt(place.value(), error, path);
    }
    return error == 0 ? Outcome() : systemFailure(error, path);
  }

 private:
  // The native path in the letters given.
  std::string spelled(const DrivePath& path) const;
  // The failure where a call has answered that nothing is at a native path. A link that stands
  // there and leads nowhere tells nothing of what is behind it, as with a disk that is not mounted.
  static Outcome notFoundAt(const std::string& native, int error, std::string_view path);
  Outcome noDrive(const DrivePath& root) const;
  Result<std::string> standingPlace(const DrivePath& path);
  Result<std::string> standingFolder(const DrivePath& folder, bool& lasting);
  std::string remembered(const std::string& given);

  Drives drives_;
  FolderIndexes indexes_;
  mutable std::mutex currentMutex_;
  DrivePath current_;

  // Folders that stand in other letters than they are asked for, native path by native path: a
  // simulator's folder that was typed in other letters is asked for with every file.
  std::mutex folderMutex_;
  std::unordered_map<std::string, std::string> folders_;
  std::uint64_t foldersGeneration_ = 0;
};

}  // namespace skv
