// Listing a folder: the walks of the program stand and fall with the system calls for each entry.
#include <sys/stat.h>

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"
#include "platform/disk/dos_attributes.h"
#include "platform/disk/drive_file_system.h"

namespace skv {

namespace {

enum class Kind { file, folder, other };

Kind kindOf(mode_t mode) {
  return S_ISDIR(mode) ? Kind::folder : S_ISREG(mode) ? Kind::file : Kind::other;
}

struct Look {
  Kind kind = Kind::other;
  std::uint64_t length = 0;  // of a file, when it was asked for
  int error = 0;             // the system's, when it does not tell
};

// Pipes, devices and links to nowhere are neither files nor folders. What cannot be told is shown
// as a file: whoever works on it meets the failure, and says so.
Look lookAt(const dirent64& entry, int folder, bool measured) {
  if (entry.d_type == DT_DIR) return {Kind::folder};
  if (entry.d_type == DT_REG && !measured) return {Kind::file};
  if (entry.d_type != DT_REG && entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return {};
  struct stat status {};
  if (retried([&] { return ::fstatat(folder, entry.d_name, &status, 0); }) != 0) {
    if (isMissing(errno) || errno == ELOOP) return {};
    return {Kind::file, 0, errno};
  }
  return {kindOf(status.st_mode), static_cast<std::uint64_t>(status.st_size)};
}

struct Found {
  std::string key;  // the name in upper case
  FolderEntry entry;
};

// In the order in which NTFS lists names.
std::vector<FolderEntry> sorted(std::vector<Found> found) {
  std::vector<Found*> order;
  order.reserve(found.size());
  for (Found& each : found) order.push_back(&each);
  std::ranges::sort(order, [](const Found* a, const Found* b) {
    if (a->key != b->key) return ntfsLess(a->key, b->key);
    return a->entry.name < b->entry.name;
  });
  std::vector<FolderEntry> entries;
  entries.reserve(found.size());
  for (Found* each : order) entries.push_back(std::move(each->entry));
  return entries;
}

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

  const auto failureOf = [&](std::string_view name, int error) {
    return systemFailure(error, withBackslash(folder).append(name));
  };
  StoredDosBits stored(fd.get(), native);
  std::vector<Found> found;
  FolderReader reader(fd.get());
  while (const dirent64* entry = reader.next()) {
    const std::string_view name = entry->d_name;
    const bool all = entries == Entries::all;
    if ((!all && name.starts_with('.')) || !isWindowsName(name)) continue;
    const bool measured = entries == Entries::measured;
    const Look look = lookAt(*entry, fd.get(), measured);
    if (look.kind == Kind::other) continue;
    if (measured && look.error != 0) return failureOf(name, look.error);
    if (!all && (entries != Entries::named || look.kind == Kind::folder)) {
      const StoredBits bits = stored.of(entry->d_name);
      if (bits.error != 0) return failureOf(name, bits.error);
      if ((bits.bits & (dos::hidden | dos::system)) != 0) continue;
    }
    found.push_back(
        {upper(name), {std::string(name), look.kind == Kind::folder, measured ? look.length : 0}});
  }
  if (reader.error() != 0) return systemFailure(reader.error(), folder);

  return sorted(std::move(found));
}

}  // namespace skv
