#include "platform/folder_index.h"

#include <dirent.h>
#include <sys/inotify.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <memory>

#include "base/text.h"

namespace skv {

namespace {

constexpr std::size_t mostFolders = 128;
constexpr std::uint32_t watchedChanges = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                                         IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

// Whether all changes of a folder pass through this machine's kernel.
bool isLocal(const std::string& nativeFolder) {
  struct statfs disk {};
  if (::statfs(nativeFolder.c_str(), &disk) != 0) return false;
  switch (static_cast<std::uint32_t>(disk.f_type)) {
    case 0x6969:      // NFS
    case 0x517B:      // SMB
    case 0xFF534D42:  // CIFS
    case 0xFE534D42:  // SMB2
    case 0x65735546:  // FUSE
    case 0x01021997:  // 9P
    case 0x786f4256:  // VirtualBox shared folders
    case 0x5346414f:  // AFS
    case 0x00c36400:  // Ceph
      return false;
    default:
      return true;
  }
}

template <class Visit>
void visitNames(const std::string& nativeFolder, Visit visit) {
  const std::unique_ptr<DIR, decltype([](DIR* folder) { ::closedir(folder); })> folder(
      ::opendir(nativeFolder.c_str()));
  if (!folder) return;
  while (const dirent* entry = ::readdir(folder.get())) visit(std::string(entry->d_name));
}

std::optional<std::string> scan(const std::string& nativeFolder, const std::string& upperName) {
  std::optional<std::string> found;
  visitNames(nativeFolder, [&](std::string name) {
    if (upper(name) == upperName && (!found || name < *found)) found = std::move(name);
  });
  return found;
}

}  // namespace

FolderIndex::FolderIndex() : inotify_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

std::optional<std::string> FolderIndex::find(const std::string& nativeFolder,
                                             const std::string& name) {
  const std::string upperName = upper(name);
  const std::scoped_lock lock(mutex_);
  Folder* folder = watched(nativeFolder);
  if (folder == nullptr) return scan(nativeFolder, upperName);
  const auto found = folder->names.find(upperName);
  if (found == folder->names.end()) return std::nullopt;
  return *std::ranges::min_element(found->second);
}

// The folder's index, up to date; none where an index cannot be kept.
FolderIndex::Folder* FolderIndex::watched(const std::string& nativeFolder) {
  if (!inotify_.valid()) return nullptr;
  // The watch belongs to the folder itself, whatever path leads to it: asking again is how a folder
  // that was replaced under the same path is told from the one before.
  const int watch = ::inotify_add_watch(inotify_.get(), nativeFolder.c_str(), watchedChanges);
  if (watch < 0) return nullptr;
  drainEvents();
  if (const auto known = folders_.find(watch); known != folders_.end()) {
    used_.splice(used_.begin(), used_, known->second.use);
    return &known->second;
  }
  if (!isLocal(nativeFolder)) {
    ::inotify_rm_watch(inotify_.get(), watch);
    return nullptr;
  }
  if (folders_.size() >= mostFolders) {
    const int oldest = used_.back();
    ::inotify_rm_watch(inotify_.get(), oldest);
    forget(oldest);
  }
  used_.push_front(watch);
  Folder& folder = folders_[watch];
  folder.use = used_.begin();
  visitNames(nativeFolder, [&folder](std::string name) {
    std::string key = upper(name);
    folder.names[std::move(key)].push_back(std::move(name));
  });
  // What came between the watch and the reading is told again by an event, and changes nothing
  // twice.
  drainEvents();
  const auto still = folders_.find(watch);
  return still == folders_.end() ? nullptr : &still->second;
}

void FolderIndex::forget(int watch) {
  const auto known = folders_.find(watch);
  if (known == folders_.end()) return;
  used_.erase(known->second.use);
  folders_.erase(known);
}

void FolderIndex::drainEvents() {
  alignas(inotify_event) std::array<char, 16384> buffer;
  for (;;) {
    const ssize_t length =
        retried([&] { return ::read(inotify_.get(), buffer.data(), buffer.size()); });
    if (length <= 0) return;
    for (std::size_t at = 0; at < static_cast<std::size_t>(length);) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
      at += sizeof(inotify_event) + event->len;
      if ((event->mask & IN_Q_OVERFLOW) != 0) {
        // The watches stay: the folder that is asked for just now needs its own.
        folders_.clear();
        used_.clear();
        continue;
      }
      const auto known = folders_.find(event->wd);
      if (known == folders_.end()) continue;
      if ((event->mask & (IN_IGNORED | IN_UNMOUNT)) != 0) {
        forget(event->wd);
        continue;
      }
      if (event->len == 0) continue;
      std::string name(event->name);
      auto& spellings = known->second.names[upper(name)];
      const auto at_ = std::ranges::find(spellings, name);
      if ((event->mask & (IN_CREATE | IN_MOVED_TO)) != 0) {
        if (at_ == spellings.end()) spellings.push_back(std::move(name));
      } else if ((event->mask & (IN_DELETE | IN_MOVED_FROM)) != 0) {
        if (at_ != spellings.end()) spellings.erase(at_);
        if (spellings.empty()) known->second.names.erase(upper(event->name));
      }
    }
  }
}

}  // namespace skv
