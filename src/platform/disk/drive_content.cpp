// Reading, writing, copying and moving the content of files.
#include <fcntl.h>
#include <unistd.h>

#include <array>

#include "platform/disk/dos_attributes.h"
#include "platform/disk/drive_file_system.h"
#include "platform/disk/file_copy.h"

namespace skv {

Result<DriveFileSystem::Source> DriveFileSystem::openSource(std::string_view path) const {
  Source source;
  const Outcome outcome = paths_.at(path, [&](const std::string& native) {
    // Not waiting for the other end of a pipe.
    source.fd = openFile(native, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    return source.fd.valid() ? errorOf([&] { return ::fstat(source.fd.get(), &source.status); })
                             : errno;
  });
  if (!outcome.ok()) return outcome;
  if (!S_ISREG(source.status.st_mode)) return Outcome::failure(err::pathFileAccess, path);
  if (meansFolder(path)) return Outcome::failure(err::pathNotFound, path);
  return source;
}

Result<std::uint64_t> DriveFileSystem::fileLength(std::string_view path) const {
  const auto found = standing(path);
  if (!found.ok()) return found.outcome();
  if (!S_ISREG(found.value().status.st_mode)) return Outcome::failure(err::pathFileAccess, path);
  return static_cast<std::uint64_t>(found.value().status.st_size);
}

Result<FileTime> DriveFileSystem::modified(std::string_view path) const {
  const auto found = standing(path);
  if (!found.ok()) return found.outcome();
  return modifiedTime(found.value().status);
}

Result<std::string> DriveFileSystem::readFile(std::string_view path) const {
  const auto source = openSource(path);
  if (!source.ok()) return source.outcome();
  std::string content;
  const auto& [fd, status] = source.value();
  if (const int error = readAll(fd.get(), content, status.st_size))
    return systemFailure(error, path);
  return content;
}

namespace {

struct Replaced {
  bool stands = false;
  struct stat status {};  // of a link itself
};

// What a new file at a native path would replace, when it may. `source`, when given, is what the
// new file is a copy of: the same file in other letters or behind a link must not be harmed.
Result<Replaced> replaceable(const std::string& native, std::string_view path,
                             const struct stat* source, bool overReadOnly = false) {
  Replaced target;
  if (::lstat(native.c_str(), &target.status) != 0)
    return errno == ENOENT ? Result<Replaced>(target) : systemFailure(errno, path);
  target.stands = true;
  struct stat behind = target.status;
  if (S_ISLNK(behind.st_mode) && ::stat(native.c_str(), &behind) != 0)
    return isMissing(errno) || errno == ELOOP ? Result<Replaced>(target)
                                              : systemFailure(errno, path);
  if (source != nullptr && sameFile(*source, behind))
    return Outcome::failure(err::permissionDenied, path);
  if (S_ISDIR(behind.st_mode) || (isReadOnly(target.status) && !overReadOnly))
    return Outcome::failure(err::pathFileAccess, path);
  return target;
}

// 0 as well on a disk that has no permissions of its own to give.
int setPermissions(int fd, mode_t mode) {
  struct stat status {};
  if (::fstat(fd, &status) == 0 && (status.st_mode & 0777) == (mode & 0777)) return 0;
  const int error = errorOf([&] { return ::fchmod(fd, mode & 0777); });
  return error == EPERM || error == ENOTSUP || error == ENOSYS ? 0 : error;
}

// A new file takes over who may do what with the one that it replaces. What cannot be taken over
// (a user cannot give files away) is left as it is for a new file.
int takePermissions(int fd, const std::string& native, const struct stat& replaced) {
  if (!S_ISREG(replaced.st_mode)) return 0;
  if (::fchown(fd, replaced.st_uid, replaced.st_gid) != 0) {
    [[maybe_unused]] const int groupKept = ::fchown(fd, static_cast<uid_t>(-1), replaced.st_gid);
  }
  copyStoredAttributes(native, fd);
  return setPermissions(fd, replaced.st_mode);
}

int takeTimes(int fd, const std::string& native, const struct stat& replaced) {
  copyStoredCreation(native, fd);
  const std::array<timespec, 2> times = {replaced.st_atim, replaced.st_mtim};
  return errorOf([&] { return ::futimens(fd, times.data()); });
}

// Puts the content of a file at a native path on the disk.
int flushFile(const std::string& native) {
  constexpr int flags = O_NOFOLLOW | O_NONBLOCK;
  Descriptor file = openFile(native, O_RDONLY | flags);
  if (!file.valid() && errno == EACCES) file = openFile(native, O_WRONLY | flags);
  if (!file.valid()) return errno;
  return errorOf([&] { return ::fsync(file.get()); });
}

}  // namespace

Result<PendingFile> DriveFileSystem::begin(std::string_view path, const struct stat* source,
                                           bool overReadOnly) {
  const auto parsed = paths_.parse(path);
  if (!parsed.ok()) return parsed.outcome();
  // Making a small file costs less than asking about its target, which publish() does anyway.
  const bool small = source != nullptr && source->st_size <= smallFile;
  if (small && !parsed.value().isRoot() && !meansFolder(path)) {
    PendingFile file(paths_.folderAsSpelled(parsed.value()));
    if (file.ok()) return file;
  }
  const auto place = paths_.place(parsed.value());
  if (!place.ok()) return place.outcome();
  if (meansFolder(path)) return Outcome::failure(err::pathFileAccess, path);
  // Asked again when the file is complete; here it saves making one for nothing.
  if (place.value().taken) {
    const auto target = replaceable(place.value().native(), path, source, overReadOnly);
    if (!target.ok()) return target.outcome();
  }
  PendingFile file(place.value().folder);
  if (!file.ok()) return systemFailure(errno == ENOENT ? ENOTDIR : errno, path);
  return file;
}

namespace {

int setModified(int fd, const std::optional<FileTime>& modified) {
  if (!modified) return 0;
  const std::array<timespec, 2> times = {timespec{0, UTIME_OMIT},
                                         timespec{modified->seconds, modified->nanoseconds}};
  return errorOf([&] { return ::futimens(fd, times.data()); });
}

}  // namespace

Outcome DriveFileSystem::publish(PendingFile& file, std::string_view path, const Publishing& how) {
  if (const int error = setModified(file.fd(), how.modified)) return systemFailure(error, path);
  if (how.durable) {
    if (const int error = file.flush()) return systemFailure(error, path);
  }
  const std::lock_guard lock(naming_);
  return giveName(file, path, how);
}

Outcome DriveFileSystem::giveName(PendingFile& file, std::string_view path, const Publishing& how) {
  const auto place = placeFor(path);
  if (!place.ok()) return place.outcome();
  bool taken = place.value().taken;
  for (int attempt = 0;; ++attempt) {
    if (taken) {
      const std::string native = place.value().native();
      const auto target = replaceable(native, path, how.source, how.keepStamps);
      if (!target.ok()) return target.outcome();
      if (how.keepPermissions && target.value().stands) {
        if (const int error = takePermissions(file.fd(), native, target.value().status))
          return systemFailure(error, path);
      }
      if (how.keepStamps && S_ISREG(target.value().status.st_mode)) {
        if (const int error = takeTimes(file.fd(), native, target.value().status))
          return systemFailure(error, path);
      }
      if (const int error = how.durable ? 0 : file.flush()) return systemFailure(error, path);
    }
    const int error = file.publish(place.value().name, taken);
    if (error == 0) break;
    // Somebody else was faster.
    if (error != EEXIST || attempt > 0) return systemFailure(error, path);
    taken = true;
  }
  if (how.durable) {
    if (const int error = file.flushFolder()) return systemFailure(error, path);
  }
  return {};
}

Outcome DriveFileSystem::replace(std::string_view path, std::string_view content, bool keepStamps) {
  auto file = begin(path, nullptr, keepStamps);
  if (!file.ok()) return file.outcome();
  if (const int error = writeAll(file.value().fd(), content)) return systemFailure(error, path);
  return publish(file.value(), path,
                 {.keepPermissions = true, .keepStamps = keepStamps, .durable = true});
}

Outcome DriveFileSystem::replaceFile(std::string_view path, std::string_view content) {
  return replace(path, content, false);
}

Outcome DriveFileSystem::replaceContent(std::string_view path, std::string_view content) {
  return replace(path, content, true);
}

// After so many bytes the disk is asked to begin with them.
constexpr off_t sentAtOnce = off_t{8} << 20U;

class DriveFileSystem::Writer : public FileWriter {
 public:
  Writer(DriveFileSystem& files, std::string path, PendingFile file)
      : files_(files), path_(std::move(path)), file_(std::move(file)) {}

  Outcome write(std::span<const char> bytes) override {
    if (!failed_.ok()) return failed_;
    if (const int error = writeAll(file_.fd(), bytes)) failed_ = systemFailure(error, path_);
    unsent_ += static_cast<off_t>(bytes.size());
    if (unsent_ >= sentAtOnce) {
      // Lets the disk begin, so that a flush at the end finds little left. Waits only where the
      // disk has too much to do already.
      ::sync_file_range(file_.fd(), sent_, unsent_, SYNC_FILE_RANGE_WRITE);
      sent_ += std::exchange(unsent_, 0);
    }
    return failed_;
  }

  Outcome commit(std::optional<FileTime> modified) override {
    if (!failed_.ok()) return failed_;
    return files_.publish(file_, path_, {.keepPermissions = true, .modified = modified});
  }

 private:
  DriveFileSystem& files_;
  std::string path_;
  PendingFile file_;
  Outcome failed_;
  off_t sent_ = 0, unsent_ = 0;  // on its way to the disk; only with the system
};

Result<std::unique_ptr<FileWriter>> DriveFileSystem::createFile(std::string_view path) {
  // The full path: the current folder may be another one by the time of the commit.
  const auto parsed = paths_.parse(path);
  if (!parsed.ok()) return parsed.outcome();
  std::string full = parsed.value().text();
  auto file = begin(full, nullptr);
  if (!file.ok()) return file.outcome();
  return std::unique_ptr<FileWriter>(
      std::make_unique<Writer>(*this, std::move(full), std::move(file).value()));
}

// The contents come first and the names afterwards, so that threads that make files in different
// folders wait for each other once for many files.
Outcome DriveFileSystem::writeFiles(const std::string& folder, std::span<const NewFile> files,
                                    std::size_t& made) {
  made = 0;
  Outcome failure;
  std::vector<std::string> paths;
  std::vector<PendingFile> contents;
  std::string native;
  for (const NewFile& file : files) {
    paths.push_back(folder + "\\" + file.name);
    if (contents.empty()) {
      const auto place = placeFor(paths.back());
      if (!place.ok()) return place.outcome();
      native = place.value().folder;
    }
    PendingFile content(native);
    int error = content.ok() ? writeAll(content.fd(), file.content) : errno;
    if (error == 0) error = setModified(content.fd(), file.modified);
    if (error != 0) {
      failure = systemFailure(error == ENOENT ? ENOTDIR : error, paths.back());
      break;
    }
    contents.push_back(std::move(content));
  }
  const std::lock_guard lock(naming_);
  for (; made < contents.size(); ++made) {
    Outcome named = giveName(contents[made], paths[made], {.keepPermissions = true});
    if (!named.ok()) return named;
  }
  return failure;
}

Outcome DriveFileSystem::copy(std::string_view from, std::string_view to, bool durable) {
  const auto source = openSource(from);
  if (!source.ok()) return source.outcome();
  const auto& [fd, status] = source.value();
  auto begun = begin(to, &status);
  if (!begun.ok()) return begun.outcome();
  PendingFile& file = begun.value();
  if (const int error = copyContent(fd.get(), file.fd(), status.st_size))
    return systemFailure(error, to);
  // Before the permissions, which may forbid it.
  if (const int error = copyStoredAttributes(fd.get(), file.fd()))
    return systemFailure(error, from);
  if (const int error = setPermissions(file.fd(), status.st_mode)) return systemFailure(error, to);
  return publish(file, to,
                 {.durable = durable, .modified = modifiedTime(status), .source = &status});
}

Outcome DriveFileSystem::copyFile(std::string_view from, std::string_view to) {
  return copy(from, to, false);
}

Outcome DriveFileSystem::copyFileDurably(std::string_view from, std::string_view to) {
  return copy(from, to, true);
}

Outcome DriveFileSystem::moveFile(std::string_view from, std::string_view to) {
  const auto found = standing(from, true);
  if (!found.ok()) return found.outcome();
  const std::string& native = found.value().native;
  const struct stat& status = found.value().status;
  // The content moves, not the link: what it leads to may be out of reach from the new place.
  if (S_ISLNK(status.st_mode)) return copyAndDelete(from, native, to);
  if (!S_ISREG(status.st_mode) || isReadOnly(status))
    return Outcome::failure(err::pathFileAccess, from);
  if (meansFolder(to)) return Outcome::failure(err::pathFileAccess, to);

  int error = 0;
  {
    const std::lock_guard lock(naming_);
    const auto place = placeFor(to);
    if (!place.ok()) return place.outcome();
    const std::string target = place.value().native();
    // Where nothing stood a rename that replaces nothing needs no look at the target. Disks without
    // such a rename and names that have come meanwhile are left to the long way.
    error = place.value().taken ? EEXIST : errorOf([&] {
      return ::renameat2(AT_FDCWD, native.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE);
    });
    if (error == EEXIST || error == EINVAL || error == ENOSYS) {
      const auto replaced = replaceable(target, to, &status);
      if (!replaced.ok()) return replaced.outcome();
      // As of a copy: after a power cut the old file must not be lost for an empty one.
      const bool sameDisk =
          replaced.value().stands && status.st_dev == replaced.value().status.st_dev;
      error = sameDisk ? flushFile(native) : 0;
      if (error == 0) error = errorOf([&] { return ::rename(native.c_str(), target.c_str()); });
    }
  }
  if (error == EXDEV) return copyAndDelete(from, native, to);
  return error == 0 ? Outcome() : systemFailure(error, to);
}

Outcome DriveFileSystem::copyAndDelete(std::string_view from, const std::string& native,
                                       std::string_view to) {
  if (Outcome copied = copy(from, to, true); !copied.ok()) return copied;
  const int error = errorOf([&] { return ::unlink(native.c_str()); });
  return error == 0 ? Outcome() : systemFailure(error, from);
}

}  // namespace skv
