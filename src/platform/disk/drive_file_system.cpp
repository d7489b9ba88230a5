#include "platform/disk/drive_file_system.h"

#include <sys/statvfs.h>
#include <unistd.h>

#include <filesystem>

#include "platform/disk/dos_attributes.h"
#include "platform/disk/hidden_files.h"

namespace skv {

DriveFileSystem::DriveFileSystem(std::string driveFolder) : paths_(std::move(driveFolder)) {}

Result<DriveFileSystem::Standing> DriveFileSystem::standing(std::string_view path,
                                                            bool ofLink) const {
  Standing found;
  const Outcome outcome = paths_.at(path, [&](const std::string& native) {
    found.native = native;
    const int flags = ofLink ? AT_SYMLINK_NOFOLLOW : 0;
    return errorOf([&] { return ::fstatat(AT_FDCWD, native.c_str(), &found.status, flags); });
  });
  if (!outcome.ok()) return outcome;
  if (meansFolder(path) && S_ISREG(found.status.st_mode))
    return Outcome::failure(err::pathNotFound, path);
  return found;
}

Result<DiskPlace> DriveFileSystem::placeFor(std::string_view path) const {
  const auto parsed = paths_.parse(path);
  if (!parsed.ok()) return parsed.outcome();
  return paths_.place(parsed.value());
}

namespace {

// The failure of a look at what has to be a folder.
Outcome asFolder(const Outcome& look, std::string_view path) {
  return look.number() == err::fileNotFound ? Outcome::failure(err::pathNotFound, path) : look;
}

std::string_view lastElement(const std::string& native) {
  return std::string_view(native).substr(native.rfind('/') + 1);
}

}  // namespace

Result<Attributes> DriveFileSystem::attributesBehind(const Standing& found, std::string_view path) {
  const auto [stored, unknown] = storedDosBits(found.native);
  if (unknown != 0) return systemFailure(unknown, path);
  return attributesOf(stored, lastElement(found.native), found.status);
}

Result<Attributes> DriveFileSystem::attributes(std::string_view path) const {
  const auto found = standing(path);
  if (!found.ok()) return found.outcome();
  return attributesBehind(found.value(), path);
}

Result<FileState> DriveFileSystem::fileState(std::string_view path) const {
  const auto found = standing(path);
  if (!found.ok()) return found.outcome();
  const struct stat& status = found.value().status;
  if (!S_ISREG(status.st_mode)) return Outcome::failure(err::pathFileAccess, path);
  const auto attributes = attributesBehind(found.value(), path);
  if (!attributes.ok()) return attributes.outcome();
  return FileState{attributes.value(), static_cast<std::uint64_t>(status.st_size),
                   modifiedTime(status)};
}

Outcome DriveFileSystem::setAttributes(std::string_view path, Attributes attributes) {
  const auto found = standing(path, true);
  if (!found.ok()) return found.outcome();
  const auto& [native, status] = found.value();
  if (S_ISLNK(status.st_mode)) {
    // A link has none of its own: there is nothing to clear, and nothing can be set.
    const bool any = attributes.readOnly || attributes.system ||
                     (attributes.hidden && !lastElement(native).starts_with('.'));
    return any ? Outcome::failure(err::pathFileAccess, path) : Outcome();
  }
  if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode))
    return Outcome::failure(err::permissionDenied, path);
  const int error = applyAttributes(native, lastElement(native), status, attributes);
  return error == 0 ? Outcome() : systemFailure(error, path);
}

bool DriveFileSystem::isLink(std::string_view path) const {
  const auto found = standing(path, true);
  if (found.ok()) return S_ISLNK(found.value().status.st_mode);
  const int number = found.outcome().number();
  return number != err::fileNotFound && number != err::pathNotFound && number != err::badFileName;
}

std::string DriveFileSystem::identity(std::string_view folder) const {
  const auto found = standing(folder);
  if (!found.ok() || !S_ISDIR(found.value().status.st_mode)) return {};
  return std::to_string(found.value().status.st_dev) + ":" +
         std::to_string(found.value().status.st_ino);
}

Result<std::string> DriveFileSystem::canonicalPath(std::string_view folder) const {
  std::string canonical;
  const Outcome outcome = paths_.at(folder, [&](const std::string& native) {
    std::error_code error;
    canonical = std::filesystem::canonical(native, error).string();
    if (!error && !std::filesystem::is_directory(canonical, error) && !error) return ENOTDIR;
    return error.value();
  });
  if (!outcome.ok()) return outcome;
  return canonical.ends_with('/') ? canonical : canonical + "/";
}

Outcome DriveFileSystem::deleteFile(std::string_view path) {
  const auto found = standing(path, true);
  if (!found.ok()) return found.outcome();
  const struct stat& status = found.value().status;
  if (S_ISDIR(status.st_mode) || isReadOnly(status))
    return Outcome::failure(err::pathFileAccess, path);
  const int error = errorOf([&] { return ::unlink(found.value().native.c_str()); });
  return error == 0 ? Outcome() : systemFailure(error, path);
}

Outcome DriveFileSystem::makeFolder(std::string_view path) {
  const std::lock_guard lock(naming_);
  const auto place = placeFor(path);
  if (!place.ok()) return place.outcome();
  if (place.value().taken) return Outcome::failure(err::pathFileAccess, path);
  constexpr mode_t mode = 0777;
  const int error = errorOf([&] { return ::mkdir(place.value().native().c_str(), mode); });
  if (error == EEXIST) return Outcome::failure(err::pathFileAccess, path);
  if (error == ENOENT) return Outcome::failure(err::pathNotFound, path);
  return error == 0 ? Outcome() : systemFailure(error, path);
}

namespace {

// Unfinished files whose maker was killed would keep their folder for ever, and nobody sees them.
// Whether there was nothing else.
bool removeLeftovers(const std::string& native) {
  const Descriptor folder = openFile(native, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
  if (!folder.valid()) return false;
  std::vector<std::string> leftovers;
  FolderReader reader(folder.get());
  while (const dirent64* entry = reader.next()) {
    if (!isHiddenName(entry->d_name)) return false;
    leftovers.emplace_back(entry->d_name);
  }
  for (const std::string& name : leftovers)
    if (::unlinkat(folder.get(), name.c_str(), 0) != 0) return false;
  return !leftovers.empty() && reader.error() == 0;
}

}  // namespace

Outcome DriveFileSystem::removeFolder(std::string_view path) {
  const auto parsed = paths_.parse(path);
  if (!parsed.ok()) return parsed.outcome();
  if (parsed.value().isRoot()) return Outcome::failure(err::pathFileAccess, path);
  const auto found = standing(path, true);
  if (!found.ok()) return asFolder(found.outcome(), path);
  const std::string& native = found.value().native;
  if (S_ISLNK(found.value().status.st_mode)) {
    const auto target = standing(path);
    if (!target.ok() || !S_ISDIR(target.value().status.st_mode))
      return Outcome::failure(err::pathFileAccess, path);
    const int error = errorOf([&] { return ::unlink(native.c_str()); });
    return error == 0 ? Outcome() : systemFailure(error, path);
  }
  const auto remove = [&] { return errorOf([&] { return ::rmdir(native.c_str()); }); };
  int error = remove();
  if ((error == ENOTEMPTY || error == EEXIST) && removeLeftovers(native)) error = remove();
  if (error == ENOTEMPTY || error == EEXIST || error == ENOTDIR)
    return Outcome::failure(err::pathFileAccess, path);
  return error == 0 ? Outcome() : systemFailure(error, path);
}

Outcome DriveFileSystem::rename(std::string_view from, std::string_view to) {
  const auto target = paths_.parse(to);
  if (!target.ok()) return target.outcome();
  const auto source = standing(from, true);
  if (!source.ok()) return source.outcome();
  if (meansFolder(to) && S_ISREG(source.value().status.st_mode))
    return Outcome::failure(err::pathFileAccess, to);
  const std::lock_guard lock(naming_);
  const auto place = paths_.place(target.value());
  if (!place.ok()) return place.outcome();
  std::string native = place.value().native();
  if (place.value().taken) {
    // The file itself, found in other letters, may take the new ones. Another name of the same
    // content is another file.
    const auto old = placeFor(from);
    struct stat oldFolder {
    }, newFolder{};
    const bool itself = old.ok() && old.value().name == place.value().name &&
                        ::stat(old.value().folder.c_str(), &oldFolder) == 0 &&
                        ::stat(place.value().folder.c_str(), &newFolder) == 0 &&
                        sameFile(oldFolder, newFolder);
    if (!itself) return Outcome::failure(err::fileExists, to);
    if (place.value().name == target.value().name()) return {};
    native = place.value().folder + "/" + std::string(target.value().name());
  }
  const auto moved = [&](unsigned flags) {
    return errorOf([&] {
      return ::renameat2(AT_FDCWD, source.value().native.c_str(), AT_FDCWD, native.c_str(), flags);
    });
  };
  int error = moved(RENAME_NOREPLACE);
  // A disk without that flag, and one that takes both spellings for one name.
  if (error == EINVAL || (error == EEXIST && place.value().taken)) error = moved(0);
  if (error == EXDEV || error == EINVAL) return Outcome::failure(err::pathFileAccess, to);
  return error == 0 ? Outcome() : systemFailure(error, to);
}

Result<double> DriveFileSystem::freeBytes(std::string_view path) const {
  struct statvfs status {};
  const Outcome outcome = paths_.at(path, [&](const std::string& native) {
    return errorOf([&] { return ::statvfs(native.c_str(), &status); });
  });
  if (!outcome.ok())
    return outcome.number() == err::pathNotFound ? Outcome::failure(err::deviceUnavailable, path)
                                                 : outcome;
  const auto unit = status.f_frsize != 0 ? status.f_frsize : status.f_bsize;
  return static_cast<double>(status.f_bavail) * static_cast<double>(unit);
}

Outcome DriveFileSystem::flushDisk(std::string_view path) {
  return paths_.at(path, [](const std::string& native) {
    const Descriptor folder = openFile(native, O_RDONLY | O_DIRECTORY);
    if (!folder.valid()) return errno;
    const int error = errorOf([&] { return ::syncfs(folder.get()); });
    if (error != ENOSYS) return error;
    ::sync();  // a sandbox that does not know the call: every disk, then
    return 0;
  });
}

std::string DriveFileSystem::currentFolder() const {
  std::string text = paths_.currentFolder().text();
  if (!text.ends_with('\\')) text += '\\';
  return text;
}

Outcome DriveFileSystem::setCurrentFolder(std::string_view path) {
  const auto parsed = paths_.parse(path);
  if (!parsed.ok()) return parsed.outcome();
  const auto found = standing(path);
  if (!found.ok()) return asFolder(found.outcome(), path);
  if (!S_ISDIR(found.value().status.st_mode)) return Outcome::failure(err::pathNotFound, path);
  paths_.setCurrentFolder(parsed.value());
  return {};
}

Result<std::string> DriveFileSystem::nativePath(std::string_view path) const {
  const auto parsed = paths_.parse(path);
  if (!parsed.ok()) return parsed.outcome();
  return paths_.nativePath(parsed.value());
}

std::string DriveFileSystem::windowsPath(std::string_view native) const {
  return paths_.drives().windowsPath(native);
}

}  // namespace skv
