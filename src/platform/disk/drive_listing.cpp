// Listing a folder: the walks of the program stand and fall with the system calls for each entry.
#include <sys/stat.h>

#include <algorithm>

#include "base/text.h"
#include "platform/disk/dos_attributes.h"
#include "platform/disk/drive_file_system.h"

namespace skv {

namespace {

enum class Kind { file, folder, other };

Kind kindOf(mode_t mode) {
  return S_ISDIR(mode) ? Kind::folder : S_ISREG(mode) ? Kind::file : Kind::other;
}

// Pipes, devices and links to nowhere are neither files nor folders. `length`, when given, is set
// for a file.
Kind kindOf(const dirent64& entry, int folder, std::uint64_t* length) {
  if (entry.d_type == DT_DIR) return Kind::folder;
  if (entry.d_type == DT_REG && length == nullptr) return Kind::file;
  if (entry.d_type != DT_REG && entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
    return Kind::other;
  struct stat status {};
  if (retried([&] { return ::fstatat(folder, entry.d_name, &status, 0); }) != 0) return Kind::other;
  if (length != nullptr && S_ISREG(status.st_mode))
    *length = static_cast<std::uint64_t>(status.st_size);
  return kindOf(status.st_mode);
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
    const bool all = entries == Entries::all;
    if ((!all && name.starts_with('.')) || !isWindowsName(name)) continue;
    std::uint64_t length = 0;
    const Kind kind = kindOf(*entry, fd.get(), entries == Entries::measured ? &length : nullptr);
    if (kind == Kind::other) continue;
    const bool asksAttributes = !all && (entries != Entries::named || kind == Kind::folder);
    if (asksAttributes && (stored.of(entry->d_name) & (dos::hidden | dos::system)) != 0) continue;
    found.push_back({upper(name), {std::string(name), kind == Kind::folder, length}});
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
