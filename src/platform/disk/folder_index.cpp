#include "platform/disk/folder_index.h"

#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>

#include "base/text.h"

namespace skv {

namespace {

constexpr std::size_t maxIndexes = 32;

// Disks whose every change passes through this system. On others somebody else's change would not
// be reported.
bool isLocalDisk(int fd, dev_t device) {
  constexpr long zfs = 0x2fc12fc1, exfat = 0x2011bab0, ntfs3 = 0x7366746e, bcachefs = 0xca451a4e,
                 jfs = 0x3153464a;
  struct statfs status {};
  if (::fstatfs(fd, &status) != 0) return false;
  static constexpr std::array<long, 14> local = {EXT4_SUPER_MAGIC,
                                                 OVERLAYFS_SUPER_MAGIC,
                                                 BTRFS_SUPER_MAGIC,
                                                 XFS_SUPER_MAGIC,
                                                 TMPFS_MAGIC,
                                                 F2FS_SUPER_MAGIC,
                                                 MSDOS_SUPER_MAGIC,
                                                 RAMFS_MAGIC,
                                                 REISERFS_SUPER_MAGIC,
                                                 zfs,
                                                 exfat,
                                                 ntfs3,
                                                 bcachefs,
                                                 jfs};
  // What a program of the user's drives is a disk of this machine when a block device is behind it
  // (NTFS by ntfs-3g), and else may be a network.
  if (status.f_type == FUSE_SUPER_MAGIC) return major(device) != 0;
  return std::ranges::find(local, static_cast<long>(status.f_type)) != local.end();
}

}  // namespace

FolderIndexes::FolderIndexes() : changes_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

Result<std::string> FolderIndexes::spelling(const std::string& folder, std::string_view name,
                                            bool* lasting) {
  struct stat status {};
  if (::stat(folder.c_str(), &status) != 0) return systemFailure(errno, folder);
  if (!S_ISDIR(status.st_mode)) return systemFailure(ENOTDIR, folder);
  const Identity identity{status.st_dev, status.st_ino};

  const std::lock_guard lock(mutex_);
  applyChanges();
  auto known = byFolder_.find(identity);
  Index unwatched;
  Index* index = &unwatched;
  if (known != byFolder_.end()) {
    indexes_.splice(indexes_.begin(), indexes_, known->second);
    index = &*known->second;
  } else {
    Index fresh{identity, -1, {}};
    const int error = scan(folder, fresh);
    if (error != 0) return systemFailure(error, folder);
    if (fresh.watch >= 0) {
      // One folder under two identities, as layered disks may have it, has but one watch.
      if (const auto same = byWatch_.find(fresh.watch); same != byWatch_.end()) drop(same->second);
      if (indexes_.size() == maxIndexes) forget(std::prev(indexes_.end()));
      indexes_.push_front(std::move(fresh));
      byFolder_[identity] = byWatch_[indexes_.front().watch] = indexes_.begin();
      index = &indexes_.front();
    } else {
      unwatched = std::move(fresh);
    }
  }

  const auto found = index->names.find(upper(name));
  if (found == index->names.end()) return std::string();
  if (lasting != nullptr) *lasting = found->second.lasting = index->watch >= 0;
  const std::vector<std::string>& names = found->second.names;
  const auto exact = std::ranges::find(names, name);
  return exact != names.end() ? *exact : std::ranges::min(names);
}

std::uint64_t FolderIndexes::generation() {
  const std::lock_guard lock(mutex_);
  applyChanges();
  return generation_;
}

// 0 or the system's error number. Leaves index.watch at -1 when changes would not be seen. Watching
// starts before reading, so that what changes in between is told twice rather than never.
int FolderIndexes::scan(const std::string& folder, Index& index) {
  const Descriptor fd = openFile(folder, O_RDONLY | O_DIRECTORY);
  if (!fd.valid()) return errno;
  struct stat status {};
  if (::fstat(fd.get(), &status) != 0) return errno;
  const bool asAsked = Identity{status.st_dev, status.st_ino} == index.folder;
  if (asAsked && changes_.valid() && isLocalDisk(fd.get(), status.st_dev)) {
    const std::string opened = "/proc/self/fd/" + std::to_string(fd.get());
    index.watch =
        ::inotify_add_watch(changes_.get(), opened.c_str(),
                            IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF);
  }
  FolderReader reader(fd.get());
  while (const dirent64* entry = reader.next())
    index.names[upper(entry->d_name)].names.emplace_back(entry->d_name);
  if (reader.error() != 0 && index.watch >= 0) ::inotify_rm_watch(changes_.get(), index.watch);
  return reader.error();
}

void FolderIndexes::applyChanges() {
  if (!changes_.valid()) return;
  alignas(inotify_event) std::array<char, 16384> buffer;
  for (;;) {
    const auto got = retried([&] { return ::read(changes_.get(), buffer.data(), buffer.size()); });
    if (got == -1 && errno == EAGAIN) return;
    if (got <= 0) {
      // Without reports nothing that is kept can be trusted, now or later.
      forgetAll();
      changes_.close();
      return;
    }
    for (std::size_t at = 0; at < static_cast<std::size_t>(got);) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
      at += sizeof(inotify_event) + event->len;
      if ((event->mask & IN_Q_OVERFLOW) != 0) {
        forgetAll();
        continue;
      }
      const auto watched = byWatch_.find(event->wd);
      if (watched == byWatch_.end()) continue;
      if ((event->mask & (IN_DELETE_SELF | IN_IGNORED | IN_UNMOUNT)) != 0) {
        forget(watched->second);
        continue;
      }
      apply(watched->second, (event->mask & (IN_CREATE | IN_MOVED_TO)) != 0, event->name);
    }
    // Room for any report was left: there was none.
    constexpr std::size_t longestReport = sizeof(inotify_event) + NAME_MAX + 1;
    if (static_cast<std::size_t>(got) + longestReport <= buffer.size()) return;
  }
}

void FolderIndexes::apply(Place index, bool stands, const std::string& name) {
  Names& names = index->names;
  const auto entry = names.try_emplace(upper(name)).first;
  std::vector<std::string>& spellings = entry->second.names;
  if (entry->second.lasting) ++generation_;
  const bool known = std::erase(spellings, name) > 0;
  // A disk that takes all spellings for one name tells of a file in the letters last used for it.
  if (!stands && !known && !spellings.empty()) return forget(index);
  if (stands) spellings.push_back(name);
  if (spellings.empty()) names.erase(entry);
}

void FolderIndexes::forget(Place index) {
  if (changes_.valid()) ::inotify_rm_watch(changes_.get(), index->watch);
  drop(index);
}

void FolderIndexes::drop(Place index) {
  ++generation_;
  byFolder_.erase(index->folder);
  byWatch_.erase(index->watch);
  indexes_.erase(index);
}

void FolderIndexes::forgetAll() {
  while (!indexes_.empty()) forget(indexes_.begin());
}

}  // namespace skv
