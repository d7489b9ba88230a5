// From a Windows path to the place on disk, in whatever letters it stands there.
#pragma once

#include <cerrno>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/drives.h"
#include "platform/folder_index.h"
#include "platform/os_error.h"
#include "platform/windows_names.h"

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
  // The native path in the letters given.
  std::string spelled(const DrivePath& path) const;
  // The native path of what stands there. Fails with fileNotFound, or pathNotFound when the folder
  // is missing as well.
  Result<std::string> find(const DrivePath& path);
  // Fails with pathNotFound when the folder is missing, with pathFileAccess on a root.
  Result<DiskPlace> place(const DrivePath& path);
  // The native path that something would have, as far as its folders stand in the letters that they
  // have. Fails with pathNotFound when there is no such drive.
  Result<std::string> nativePath(const DrivePath& path);

  // Runs `call` on the native path; it answers 0 or a system's error number. The letters given come
  // first, which is all it takes for a name that is spelled as it stands.
  template <class Call>
  Outcome at(std::string_view path, Call call) {
    const auto parsed = parse(path);
    if (!parsed.ok()) return parsed.outcome();
    const std::string given = spelled(parsed.value());
    int error = call(given);
    if (error == ENOENT || error == ENOTDIR) {
      const auto found = find(parsed.value());
      if (!found.ok()) return found.outcome();
      if (found.value() != given) error = call(found.value());
    }
    return error == 0 ? Outcome() : systemFailure(error, path);
  }

 private:
  // As far as the path stands: its native path, and how many elements that takes in.
  struct Reached {
    std::string native;
    std::size_t elements = 0;
  };
  Result<Reached> reach(const DrivePath& path);

  Drives drives_;
  FolderIndexes indexes_;
  mutable std::mutex currentMutex_;
  DrivePath current_;
};

}  // namespace skv
