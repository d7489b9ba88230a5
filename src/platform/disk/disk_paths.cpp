#include "platform/disk/disk_paths.h"

#include <sys/stat.h>
#include <unistd.h>

namespace skv {

namespace {

constexpr std::size_t maxRemembered = 256;

// 0, or the system's error number of what stands in the way: ENOTDIR of a file.
int folderError(const std::string& native) {
  struct stat status {};
  if (::stat(native.c_str(), &status) != 0) return errno;
  return S_ISDIR(status.st_mode) ? 0 : ENOTDIR;
}

// A failure at a place on disk, told by the path that was asked for.
Outcome failureAt(const DrivePath& path, const Outcome& failure) {
  return Outcome::failure(failure.number(), path.text());
}

// 0 when something stands there, a link itself included.
int entryError(const std::string& native) {
  struct stat status {};
  return ::lstat(native.c_str(), &status) == 0 ? 0 : errno;
}

std::string joined(std::string folder, std::string_view name) {
  if (!folder.ends_with('/')) folder += '/';
  return folder.append(name);
}

}  // namespace

DrivePath DiskPaths::currentFolder() const {
  const std::lock_guard lock(currentMutex_);
  return current_;
}

void DiskPaths::setCurrentFolder(DrivePath folder) {
  const std::lock_guard lock(currentMutex_);
  current_ = std::move(folder);
}

Result<DrivePath> DiskPaths::parse(std::string_view path) const {
  return parseWindowsPath(path, isFullPath(path) ? DrivePath() : currentFolder());
}

std::string DiskPaths::spelled(const DrivePath& path) const {
  return drives_.root(path.drive) + path.below;
}

Outcome DiskPaths::notFoundAt(const std::string& native, int error, std::string_view path) {
  struct stat status {};
  if (::lstat(native.c_str(), &status) != 0)
    return systemFailure(isMissing(errno) ? error : errno, path);
  if (S_ISLNK(status.st_mode) && ::stat(native.c_str(), &status) != 0)
    return isMissing(errno) ? Outcome::failure(err::deviceUnavailable, path)
                            : systemFailure(errno, path);
  return systemFailure(error, path);
}

Outcome DiskPaths::noDrive(const DrivePath& root) const {
  std::string link = drives_.root(root.drive);
  link.pop_back();
  return notFoundAt(link, ENOTDIR, root.text());
}

std::string DiskPaths::remembered(const std::string& given) {
  const std::uint64_t generation = indexes_.generation();
  std::string folder;
  {
    const std::lock_guard lock(folderMutex_);
    if (generation != foldersGeneration_) folders_.clear();
    foldersGeneration_ = generation;
    const auto found = folders_.find(given);
    if (found == folders_.end()) return {};
    folder = found->second;
  }
  return folderError(folder) == 0 ? folder : std::string();
}

// `lasting` becomes false when the answer may change without the indexes' generation.
Result<std::string> DiskPaths::standingFolder(const DrivePath& folder, bool& lasting) {
  std::string given = spelled(folder);
  int error = folderError(given);
  if (error == 0) return given;
  if (!isMissing(error)) return systemFailure(error, folder.text());
  if (folder.isRoot()) return noDrive(folder);
  if (std::string known = remembered(given); !known.empty()) return known;

  const std::uint64_t generation = indexes_.generation();
  auto above = standingFolder(folder.folder(), lasting);
  if (!above.ok()) return above;
  std::string native = joined(above.value(), folder.name());
  error = folderError(native);
  if (isMissing(error)) {
    bool lastingName = false;
    auto spelling = indexes_.spelling(above.value(), folder.name(), &lastingName);
    if (!spelling.ok()) return failureAt(folder, spelling.outcome());
    native = joined(above.value(), spelling.value());
    lasting = lasting && lastingName;
    if (spelling.value().empty()) return systemFailure(ENOTDIR, folder.text());
    error = folderError(native);
    if (isMissing(error)) return notFoundAt(native, ENOTDIR, folder.text());
  }
  if (error != 0) return systemFailure(error, folder.text());
  if (lasting) {
    const std::lock_guard lock(folderMutex_);
    if (folders_.size() >= maxRemembered) folders_.clear();
    if (generation == foldersGeneration_) folders_[given] = native;
  }
  return native;
}

// The native path of what stands there, when the letters given have led to nothing.
Result<std::string> DiskPaths::standingPlace(const DrivePath& path) {
  if (path.isRoot()) return noDrive(path);
  bool lasting = true;
  auto folder = standingFolder(path.folder(), lasting);
  if (!folder.ok()) return folder;
  std::string native = joined(folder.value(), path.name());
  const int error = entryError(native);
  if (error == 0) return native;
  if (!isMissing(error)) return systemFailure(error, path.text());
  auto spelling = indexes_.spelling(folder.value(), path.name());
  if (!spelling.ok()) return failureAt(path, spelling.outcome());
  if (spelling.value().empty()) return Outcome::failure(err::fileNotFound, path.text());
  return joined(folder.value(), spelling.value());
}

Result<DiskPlace> DiskPaths::place(const DrivePath& path) {
  if (path.isRoot()) return Outcome::failure(err::pathFileAccess, path.text());
  DiskPlace place;
  place.name = path.name();
  place.folder = spelled(path.folder());
  auto spelling = indexes_.spelling(place.folder, place.name);
  const int number = spelling.outcome().number();
  if (number == err::fileNotFound || number == err::pathNotFound) {
    bool lasting = true;
    auto folder = standingFolder(path.folder(), lasting);
    if (!folder.ok()) return folder.outcome();
    place.folder = std::move(folder).value();
    spelling = indexes_.spelling(place.folder, place.name);
  }
  while (place.folder.ends_with('/')) place.folder.pop_back();
  // In a folder that may be entered but not read a name that stands as it is spelled is certain.
  if (!spelling.ok() && entryError(place.native()) == 0) spelling = place.name;
  if (!spelling.ok()) return failureAt(path, spelling.outcome());
  place.taken = !spelling.value().empty();
  if (place.taken) place.name = spelling.value();
  return place;
}

Result<std::string> DiskPaths::nativePath(const DrivePath& path) {
  if (path.isRoot()) {
    std::string root = drives_.realRoot(path.drive);
    if (root.empty()) return noDrive(path);
    return root;
  }
  auto above = nativePath(path.folder());
  if (!above.ok()) return above;
  std::string native = joined(above.value(), path.name());
  if (entryError(native) == 0) return native;
  const auto spelling = indexes_.spelling(above.value(), path.name());
  const bool inOtherLetters = spelling.ok() && !spelling.value().empty();
  return inOtherLetters ? joined(above.value(), spelling.value()) : native;
}

}  // namespace skv
