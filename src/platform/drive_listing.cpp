// Listing a folder: the walks of the program stand and fall with the system calls for each entry.
#include <sys/stat.h>

#include <algorithm>

#include "base/text.h"
#include "platform/dos_attributes.h"
#include "platform/drive_file_system.h"

namespace skv {

namespace {

enum class Kind { file, folder, other };

Kind kindOf(mode_t mode) {
  return S_ISDIR(mode) ? Kind::folder : S_ISREG(mode) ? Kind::file : Kind::other;
}

// Pipes, devices and links to nowhere are neither files nor folders.
Kind kindOf(const dirent64& entry, int folder) {
  switch (entry.d_type) {
    case DT_DIR:
      return Kind::folder;
    case DT_REG:
      return Kind::file;
    case DT_LNK:
    case DT_UNKNOWN: {
      struct stat status {};
      const bool stands = retried([&] { return ::fstatat(folder, entry.d_name, &status, 0); }) == 0;
      return stands ? kindOf(status.st_mode) : Kind::other;
    }
    default:
      return Kind::other;
  }
}

struct Sorted {
  std::string key;  // the name in upper case
  FolderEntry entry;

  bool operator<(const Sorted& other) const {
    if (key != other.key) return ntfsLess(key, other.key);
    return entry.name < other.entry.name;
  }
};

}  // namespace

Result<std::vector<FolderEntry>> DriveFileSystem::list(std::string_view folder,
                                                       Entries entries) const {
  Descriptor fd;
  std::string native;
  const Outcome opened = paths_.at(folder, [&](const std::string& path) {
    native = path;
    fd = openFile(path, O_RDONLY | O_DIRECTORY);
    return fd.valid() ? 0 : errno;
  });
  if (!opened.ok())
    return opened.number() == err::fileNotFound ? Outcome::failure(err::pathNotFound, folder)
                                                : opened;
  if (!native.ends_with('/')) native += '/';

  StoredDosBits stored(fd.get(), native);
  std::vector<Sorted> found;
  FolderReader reader(fd.get());
  while (const dirent64* entry = reader.next()) {
    const std::string_view name = entry->d_name;
    const bool plain = entries == Entries::plain;
    if ((plain && name.starts_with('.')) || !isWindowsName(name)) continue;
    const Kind kind = kindOf(*entry, fd.get());
    if (kind == Kind::other) continue;
    if (plain && (stored.of(entry->d_name) & (dos::hidden | dos::system)) != 0) continue;
    found.push_back({upper(name), {std::string(name), kind == Kind::folder}});
  }
  // A disk that fails halfway still tells what it has.
  if (reader.error() != 0 && found.empty()) return systemFailure(reader.error(), folder);

  std::sort(found.begin(), found.end());
  std::vector<FolderEntry> result;
  result.reserve(found.size());
  for (Sorted& each : found) result.push_back(std::move(each.entry));
  return result;
}

}  // namespace skv
