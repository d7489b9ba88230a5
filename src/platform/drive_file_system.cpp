#include "platform/drive_file_system.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <memory>

#include "base/text.h"
#include "platform/atomic_file.h"
#include "platform/dos_attributes.h"

namespace skv {

namespace {

using FolderHandle = std::unique_ptr<DIR, decltype([](DIR* folder) { ::closedir(folder); })>;

bool isReadOnly(const struct stat& status) {
  return S_ISREG(status.st_mode) && (status.st_mode & S_IWUSR) == 0;
}

bool sameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

FileTime timeOf(const struct stat& status) {
  return {status.st_mtim.tv_sec, static_cast<std::int32_t>(status.st_mtim.tv_nsec)};
}

// Why nothing may be put in the place of what stands at `native`; success when something may.
Outcome replaceable(const std::string& native, std::string_view shown) {
  struct stat status {};
  if (::lstat(native.c_str(), &status) != 0)
    return errno == ENOENT ? Outcome() : systemFailure(errno, shown);
  struct stat behind {};
  const bool folder =
      S_ISDIR(status.st_mode) || (::stat(native.c_str(), &behind) == 0 && S_ISDIR(behind.st_mode));
  if (folder || isReadOnly(status)) return Outcome::failure(err::pathFileAccess, shown);
  return {};
}

// Copies the content between two open files, inside the kernel where the disk can do it.
Outcome copyContent(int from, int to, std::string_view shownFrom, AtomicFile& target,
                    std::string_view shownTo) {
  if (::ioctl(to, FICLONE, from) == 0) return {};
  constexpr std::size_t piece = std::size_t{1} << 30U;
  for (bool first = true;; first = false) {
    const ssize_t copied =
        retried([&] { return ::copy_file_range(from, nullptr, to, nullptr, piece, 0); });
    if (copied > 0) continue;
    // An empty answer to the first call may be a file of /proc and its like, which has no length.
    if (copied == 0 && !first) return {};
    if (copied < 0 && (errno == ENOSPC || errno == EDQUOT)) return systemFailure(errno, shownTo);
    if (!first) return systemFailure(errno, shownFrom);
    break;
  }
  std::vector<char> buffer(std::size_t{256} * 1024);
  for (;;) {
    const ssize_t count = retried([&] { return ::read(from, buffer.data(), buffer.size()); });
    if (count < 0) return systemFailure(errno, shownFrom);
    if (count == 0) return {};
    const Outcome written = target.write({buffer.data(), static_cast<std::size_t>(count)});
    if (!written.ok()) return written;
  }
}

Outcome copyBytes(const std::string& from, std::string_view shownFrom, const std::string& to,
                  std::string_view shownTo) {
  const Descriptor source(
      retried([&] { return ::open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
  struct stat status {};
  if (!source.valid() || ::fstat(source.get(), &status) != 0)
    return systemFailure(errno, shownFrom);
  if (!S_ISREG(status.st_mode)) return Outcome::failure(err::pathFileAccess, shownFrom);
  AtomicFile target(to, std::string(shownTo));
  Outcome done = target.open();
  if (done.ok()) done = copyContent(source.get(), target.descriptor(), shownFrom, target, shownTo);
  if (!done.ok()) return done;
  target.setMode(status.st_mode & 07777U);
  target.setDosAttributes(readDosAttributes(from));
  return target.commit(timeOf(status));
}

// A folder entry as the simulator would see it, none for what it cannot see.
struct Seen {
  FolderEntry entry;
  std::string key;  // by which the listing is ordered
};

std::optional<bool> isFolderEntry(const std::string& native, unsigned char type) {
  if (type == DT_DIR) return true;
  if (type == DT_REG) return false;
  if (type != DT_LNK && type != DT_UNKNOWN) return std::nullopt;
  struct stat status {};
  if (::stat(native.c_str(), &status) != 0) return std::nullopt;
  if (S_ISDIR(status.st_mode)) return true;
  if (S_ISREG(status.st_mode)) return false;
  return std::nullopt;
}

}  // namespace

DriveFileSystem::DriveFileSystem(std::string drives) : drives_(std::move(drives)) {}

std::string DriveFileSystem::driveLink(char drive) const { return drives_ + "/" + drive + ":"; }

Result<DriveFileSystem::Place> DriveFileSystem::locate(std::string_view path) const {
  WindowsPath current;
  {
    const std::scoped_lock lock(mutex_);
    current = current_;
  }
  auto parsed = parseWindowsPath(path, current);
  if (!parsed.ok()) return parsed.outcome();
  const std::string root = driveLink(parsed.value().drive);
  Place place = search(root, parsed.value().elements);
  if (!place.exists && !place.parentExists && ::access(root.c_str(), F_OK) != 0)
    return Outcome::failure(err::deviceUnavailable, path);
  return place;
}

DriveFileSystem::Place DriveFileSystem::search(const std::string& root,
                                               const std::vector<std::string>& elements) const {
  Place place{root, true, true};
  for (const std::string& element : elements) place.native += "/" + element;
  struct stat status {};
  if (elements.empty()) {
    place.exists = ::stat(root.c_str(), &status) == 0;
    place.parentExists = place.exists;
    return place;
  }
  // The spelling as given is right nearly always, and costs one system call.
  if (::lstat(place.native.c_str(), &status) == 0) return place;
  if (errno == ENAMETOOLONG) return {place.native, false, false};

  // The longest part of it that stands as spelled; from there on in other letters.
  std::size_t known = elements.size() - 1;
  std::string native = place.native;
  for (; known > 0; --known) {
    native.erase(native.rfind('/'));
    if (::stat(native.c_str(), &status) == 0) break;
  }
  if (known == 0) native = root;
  for (std::size_t i = known; i < elements.size(); ++i) {
    std::string exact = native + "/" + elements[i];
    if (i == known || ::lstat(exact.c_str(), &status) != 0) {
      const auto spelling = index_.find(native, elements[i]);
      if (!spelling) {
        for (std::size_t rest = i; rest < elements.size(); ++rest) native += "/" + elements[rest];
        const bool parent = i + 1 == elements.size() &&
                            ::stat(native.substr(0, native.rfind('/')).c_str(), &status) == 0 &&
                            S_ISDIR(status.st_mode);
        return {native, false, parent};
      }
      exact = native + "/" + *spelling;
    }
    native = std::move(exact);
  }
  return {native, true, true};
}

Result<Attributes> DriveFileSystem::attributes(std::string_view path) const {
  const auto place = locate(path);
  if (!place.ok()) return place.outcome();
  const std::string& native = place.value().native;
  struct stat status {};
  if (!place.value().exists || ::stat(native.c_str(), &status) != 0)
    return Outcome::failure(place.value().parentExists ? err::fileNotFound : err::pathNotFound,
                            path);
  const bool folder = S_ISDIR(status.st_mode);
  // A path that ends in a backslash can only be a folder.
  if (!folder && (path.ends_with('\\') || path.ends_with('/')))
    return Outcome::failure(err::pathNotFound, path);
  const unsigned bits = readDosAttributes(native);
  return Attributes{folder, (status.st_mode & S_IWUSR) == 0,
                    native[native.rfind('/') + 1] == '.' || (bits & dos::hidden) != 0,
                    (bits & dos::system) != 0, (bits & dos::archive) != 0};
}

Outcome DriveFileSystem::setAttributes(std::string_view path, Attributes attributes) {
  const auto place = locate(path);
  if (!place.ok()) return place.outcome();
  const std::string& native = place.value().native;
  struct stat status {};
  if (!place.value().exists || ::lstat(native.c_str(), &status) != 0)
    return Outcome::failure(err::fileNotFound, path);
  if (S_ISLNK(status.st_mode)) return {};
  const mode_t mode = status.st_mode & 07777U;
  const mode_t wanted = attributes.readOnly ? mode & ~mode_t{0222} : mode | S_IWUSR;
  if (wanted != mode && ::chmod(native.c_str(), wanted) != 0) return systemFailure(errno, path);
  const unsigned bits = (attributes.hidden ? dos::hidden : 0U) |
                        (attributes.system ? dos::system : 0U) |
                        (attributes.archive ? dos::archive : 0U);
  const int error = writeDosAttributes(native, bits);
  return error == 0 ? Outcome() : systemFailure(error, path);
}

Result<std::vector<FolderEntry>> DriveFileSystem::list(std::string_view folder,
                                                       Entries entries) const {
  const auto place = locate(folder);
  if (!place.ok()) return place.outcome();
  const FolderHandle handle(::opendir(place.value().native.c_str()));
  if (!handle)
    return errno == ENOENT ? Outcome::failure(err::pathNotFound, folder)
                           : systemFailure(errno, folder);
  std::vector<Seen> seen;
  std::string native = place.value().native + "/";
  const std::size_t base = native.size();
  bool hasAttributes = true;
  for (;;) {
    errno = 0;
    const dirent* entry = ::readdir(handle.get());
    if (entry == nullptr) break;
    const std::string_view name(entry->d_name);
    if (name == "." || name == "..") continue;
    if (entries == Entries::plain && (name[0] == '.' || !isWindowsName(name))) continue;
    native.replace(base, std::string::npos, name);
    const auto isFolder = isFolderEntry(native, entry->d_type);
    if (!isFolder) continue;
    if (entries == Entries::plain && hasAttributes &&
        (readDosAttributes(native, &hasAttributes) & (dos::hidden | dos::system)) != 0)
      continue;
    seen.push_back({{std::string(name), *isFolder}, upper(name)});
  }
  // What was read before an error is what there is.
  std::ranges::sort(seen, [](const Seen& a, const Seen& b) {
    return a.key != b.key ? a.key < b.key : a.entry.name < b.entry.name;
  });
  std::vector<FolderEntry> listing;
  listing.reserve(seen.size());
  for (Seen& one : seen) listing.push_back(std::move(one.entry));
  return listing;
}

bool DriveFileSystem::isLink(std::string_view path) const {
  const auto place = locate(path);
  struct stat status {};
  return place.ok() && place.value().exists &&
         ::lstat(place.value().native.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

std::string DriveFileSystem::identity(std::string_view folder) const {
  const auto place = locate(folder);
  struct stat status {};
  if (!place.ok() || ::stat(place.value().native.c_str(), &status) != 0) return {};
  return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

Outcome DriveFileSystem::copyFile(std::string_view from, std::string_view to) {
  const auto source = locate(from);
  if (!source.ok()) return source.outcome();
  if (!source.value().exists) return Outcome::failure(err::fileNotFound, from);
  const auto target = locate(to);
  if (!target.ok()) return target.outcome();
  if (!target.value().parentExists) return Outcome::failure(err::pathNotFound, to);
  if (target.value().exists) {
    Outcome free = replaceable(target.value().native, to);
    if (!free.ok()) return free;
    struct stat a {
    }, b{};
    if (::stat(source.value().native.c_str(), &a) == 0 &&
        ::stat(target.value().native.c_str(), &b) == 0 && sameFile(a, b))
      return Outcome::failure(err::permissionDenied, to);
  }
  return copyBytes(source.value().native, from, target.value().native, to);
}

Outcome DriveFileSystem::moveFile(std::string_view from, std::string_view to) {
  const auto source = locate(from);
  if (!source.ok()) return source.outcome();
  struct stat status {};
  if (!source.value().exists || ::lstat(source.value().native.c_str(), &status) != 0)
    return Outcome::failure(err::fileNotFound, from);
  if (S_ISREG(status.st_mode)) {
    if (isReadOnly(status)) return Outcome::failure(err::pathFileAccess, from);
    const auto target = locate(to);
    if (!target.ok()) return target.outcome();
    if (!target.value().parentExists) return Outcome::failure(err::pathNotFound, to);
    Outcome free = replaceable(target.value().native, to);
    if (!free.ok()) return free;
    struct stat old {};
    if (::stat(target.value().native.c_str(), &old) == 0 && sameFile(status, old))
      return Outcome::failure(err::permissionDenied, to);
    if (::rename(source.value().native.c_str(), target.value().native.c_str()) == 0) return {};
    if (errno != EXDEV) return systemFailure(errno, to);
  }
  Outcome copied = copyFile(from, to);
  return copied.ok() ? deleteFile(from) : copied;
}

Outcome DriveFileSystem::rename(std::string_view from, std::string_view to) {
  const auto source = locate(from);
  if (!source.ok()) return source.outcome();
  struct stat status {};
  if (!source.value().exists || ::lstat(source.value().native.c_str(), &status) != 0)
    return Outcome::failure(err::fileNotFound, from);
  const auto target = locate(to);
  if (!target.ok()) return target.outcome();
  if (!target.value().parentExists) return Outcome::failure(err::pathNotFound, to);
  std::string native = target.value().native;
  if (target.value().exists) {
    if (native != source.value().native) return Outcome::failure(err::fileExists, to);
    // The file's own name: only its letters may change.
    std::string given(to);
    while (given.ends_with('\\') || given.ends_with('/')) given.pop_back();
    native = native.substr(0, native.rfind('/') + 1) + given.substr(given.find_last_of("\\/:") + 1);
    if (native == source.value().native) return {};
  }
  const int flags = RENAME_NOREPLACE;
  if (::renameat2(AT_FDCWD, source.value().native.c_str(), AT_FDCWD, native.c_str(), flags) == 0)
    return {};
  const bool unsupported = errno == EINVAL || errno == ENOSYS;
  if (unsupported && ::lstat(native.c_str(), &status) != 0 &&
      ::rename(source.value().native.c_str(), native.c_str()) == 0)
    return {};
  return systemFailure(errno, to);
}

Outcome DriveFileSystem::deleteFile(std::string_view path) {
  const auto place = locate(path);
  if (!place.ok()) return place.outcome();
  const std::string& native = place.value().native;
  struct stat status {};
  if (!place.value().exists || ::lstat(native.c_str(), &status) != 0)
    return Outcome::failure(err::fileNotFound, path);
  if (S_ISDIR(status.st_mode) || isReadOnly(status))
    return Outcome::failure(err::pathFileAccess, path);
  return ::unlink(native.c_str()) == 0 ? Outcome() : systemFailure(errno, path);
}

Outcome DriveFileSystem::makeFolder(std::string_view path) {
  const auto place = locate(path);
  if (!place.ok()) return place.outcome();
  if (place.value().exists) return Outcome::failure(err::pathFileAccess, path);
  if (!place.value().parentExists) return Outcome::failure(err::pathNotFound, path);
  if (::mkdir(place.value().native.c_str(), 0777) == 0) return {};
  return errno == EEXIST ? Outcome::failure(err::pathFileAccess, path) : systemFailure(errno, path);
}

Outcome DriveFileSystem::removeFolder(std::string_view path) {
  const auto place = locate(path);
  if (!place.ok()) return place.outcome();
  const std::string& native = place.value().native;
  struct stat status {};
  if (!place.value().exists || ::lstat(native.c_str(), &status) != 0)
    return Outcome::failure(err::pathNotFound, path);
  if (S_ISLNK(status.st_mode)) {
    struct stat behind {};
    if (::stat(native.c_str(), &behind) != 0 || !S_ISDIR(behind.st_mode))
      return Outcome::failure(err::pathNotFound, path);
    return ::unlink(native.c_str()) == 0 ? Outcome() : systemFailure(errno, path);
  }
  return ::rmdir(native.c_str()) == 0 ? Outcome() : systemFailure(errno, path);
}

Result<std::uint64_t> DriveFileSystem::fileLength(std::string_view path) const {
  const auto place = locate(path);
  if (!place.ok()) return place.outcome();
  struct stat status {};
  if (!place.value().exists || ::stat(place.value().native.c_str(), &status) != 0 ||
      S_ISDIR(status.st_mode))
    return Outcome::failure(err::fileNotFound, path);
  return static_cast<std::uint64_t>(status.st_size);
}

Result<FileTime> DriveFileSystem::modified(std::string_view path) const {
  const auto place = locate(path);
  if (!place.ok()) return place.outcome();
  struct stat status {};
  if (!place.value().exists || ::stat(place.value().native.c_str(), &status) != 0)
    return Outcome::failure(err::fileNotFound, path);
  return timeOf(status);
}

Result<std::string> DriveFileSystem::readFile(std::string_view path) const {
  const auto place = locate(path);
  if (!place.ok()) return place.outcome();
  if (!place.value().exists)
    return Outcome::failure(place.value().parentExists ? err::fileNotFound : err::pathNotFound,
                            path);
  const Descriptor file(retried(
      [&] { return ::open(place.value().native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
  struct stat status {};
  if (!file.valid() || ::fstat(file.get(), &status) != 0) return systemFailure(errno, path);
  if (!S_ISREG(status.st_mode)) return Outcome::failure(err::pathFileAccess, path);
  std::string bytes;
  // One byte more than the file has finds its end in one reading.
  std::size_t filled = 0;
  for (;;) {
    bytes.resize(std::max(filled + 4096, static_cast<std::size_t>(status.st_size) + 1));
    const ssize_t count =
        retried([&] { return ::read(file.get(), bytes.data() + filled, bytes.size() - filled); });
    if (count < 0) return systemFailure(errno, path);
    filled += static_cast<std::size_t>(count);
    if (count == 0) break;
  }
  bytes.resize(filled);
  return bytes;
}

Outcome DriveFileSystem::replaceFile(std::string_view path, std::string_view content) {
  const auto place = locate(path);
  if (!place.ok()) return place.outcome();
  if (!place.value().parentExists) return Outcome::failure(err::pathNotFound, path);
  std::string native = place.value().native;
  struct stat old {};
  const bool exists = place.value().exists && ::stat(native.c_str(), &old) == 0;
  if (exists) {
    // A save goes to the file that a link means, as a program that writes in place would do it.
    const std::unique_ptr<char, decltype([](char* text) { ::free(text); })> real(
        ::realpath(native.c_str(), nullptr));
    if (!real) return systemFailure(errno, path);
    native = real.get();
  }
  Outcome done = replaceable(native, path);
  if (!done.ok()) return done;
  AtomicFile file(native, std::string(path));
  file.setFlushed();
  if (exists) {
    file.setMode(old.st_mode & 07777U);
    file.setOwner(old.st_uid, old.st_gid);
    file.setDosAttributes(readDosAttributes(native));
  }
  done = file.open();
  if (done.ok()) done = file.write(content);
  return done.ok() ? file.commit(std::nullopt) : done;
}

Result<std::unique_ptr<FileWriter>> DriveFileSystem::createFile(std::string_view path) {
  const auto place = locate(path);
  if (!place.ok()) return place.outcome();
  if (!place.value().parentExists) return Outcome::failure(err::pathNotFound, path);
  Outcome free = replaceable(place.value().native, path);
  if (!free.ok()) return free;
  auto file = std::make_unique<AtomicFile>(place.value().native, std::string(path));
  const Outcome opened = file->open();
  if (!opened.ok()) return opened;
  return std::unique_ptr<FileWriter>(std::move(file));
}

Result<double> DriveFileSystem::freeBytes(std::string_view path) const {
  const auto place = locate(path);
  if (!place.ok()) return place.outcome();
  struct statvfs disk {};
  if (::statvfs(place.value().native.c_str(), &disk) != 0) return systemFailure(errno, path);
  return static_cast<double>(disk.f_bavail) * static_cast<double>(disk.f_frsize);
}

std::string DriveFileSystem::currentFolder() const {
  const std::scoped_lock lock(mutex_);
  return folderText(current_);
}

Outcome DriveFileSystem::setCurrentFolder(std::string_view path) {
  const auto found = attributes(path);
  if (!found.ok()) return found.outcome();
  if (!found.value().folder) return Outcome::failure(err::pathNotFound, path);
  const std::scoped_lock lock(mutex_);
  auto parsed = parseWindowsPath(path, current_);
  if (!parsed.ok()) return parsed.outcome();
  current_ = std::move(parsed).value();
  return {};
}

Result<std::string> DriveFileSystem::nativePath(std::string_view path) const {
  const auto place = locate(path);
  if (!place.ok()) return place.outcome();
  return place.value().native;
}

}  // namespace skv
