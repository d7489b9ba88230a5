#include "platform/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>

#include "platform/dos_attributes.h"

namespace skv {

namespace {

constexpr std::size_t longestName = 200;  // bytes; leaves room for what the temporary name adds

// Hidden, and the same for every attempt at one target.
std::string temporaryName(const std::string& native) {
  const auto slash = native.rfind('/');
  std::string name = native.substr(slash + 1);
  if (name.size() > longestName) name = std::to_string(std::hash<std::string>()(name));
  return native.substr(0, slash + 1) + ".skv-" + name + ".tmp";
}

std::string folderOf(const std::string& native) { return native.substr(0, native.rfind('/') + 1); }

}  // namespace

void flushFolder(const std::string& nativeFolder) {
  const Descriptor folder(::open(nativeFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.valid()) ::fsync(folder.get());
}

AtomicFile::AtomicFile(std::string native, std::string shown)
    : native_(std::move(native)), shown_(std::move(shown)), temporary_(temporaryName(native_)) {}

AtomicFile::~AtomicFile() { dropTemporary(); }

Outcome AtomicFile::open() {
  file_ = Descriptor(retried(
      [&] { return ::open(folderOf(native_).c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666); }));
  unnamed_ = file_.valid();
  if (unnamed_) return {};
  if (errno == ENOSPC || errno == EDQUOT) return systemFailure(errno, shown_);
  const auto create = [&] {
    return ::open(temporary_.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC | O_NOFOLLOW, 0666);
  };
  file_ = Descriptor(retried(create));
  if (!file_.valid() && errno == EEXIST && ::unlink(temporary_.c_str()) == 0)
    file_ = Descriptor(retried(create));
  return file_.valid() ? Outcome() : systemFailure(errno, shown_);
}

Outcome AtomicFile::write(std::span<const char> bytes) {
  while (!bytes.empty()) {
    const ssize_t written =
        retried([&] { return ::write(file_.get(), bytes.data(), bytes.size()); });
    if (written < 0) return systemFailure(errno, shown_);
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return {};
}

Outcome AtomicFile::commit(std::optional<FileTime> modified) {
  const int fd = file_.get();
  if (owner_ && ::fchown(fd, owner_->first, owner_->second) != 0 && errno != EPERM)
    return systemFailure(errno, shown_);
  if (mode_ && ::fchmod(fd, *mode_) != 0) return systemFailure(errno, shown_);
  // Hidden or system cannot be kept on every disk; the file counts for more.
  static_cast<void>(writeDosAttributes(fd, dosAttributes_));
  if (modified) {
    const timespec times[2] = {{0, UTIME_OMIT}, {modified->seconds, modified->nanoseconds}};
    if (::futimens(fd, times) != 0) return systemFailure(errno, shown_);
  }
  if (flushed_ && ::fsync(fd) != 0) return systemFailure(errno, shown_);
  const Outcome placed = place();
  if (!placed.ok()) return placed;
  if (flushed_) flushFolder(folderOf(native_));
  // The bytes are in; a late error of the disk shows here on network disks alone.
  const int error = file_.close();
  return error == 0 ? Outcome() : systemFailure(error, shown_);
}

Outcome AtomicFile::place() {
  if (unnamed_) {
    if (giveName(native_) == 0) return {};
    if (errno != EEXIST) return systemFailure(errno, shown_);
    ::unlink(temporary_.c_str());
    if (giveName(temporary_) != 0) return systemFailure(errno, shown_);
    unnamed_ = false;
  }
  if (::rename(temporary_.c_str(), native_.c_str()) != 0) return systemFailure(errno, shown_);
  temporary_.clear();
  return {};
}

int AtomicFile::giveName(const std::string& name) const {
  const std::string self = "/proc/self/fd/" + std::to_string(file_.get());
  return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW);
}

void AtomicFile::dropTemporary() {
  if (file_.valid() && !unnamed_ && !temporary_.empty()) ::unlink(temporary_.c_str());
}

}  // namespace skv
