#include "core/disk_queries.h"

#include "base/paths.h"
#include "base/text.h"

namespace skv {

Presence presenceBy(const Outcome& failedLook) {
  const int number = failedLook.number();
  return number == err::fileNotFound || number == err::pathNotFound ? Presence::absent
                                                                    : Presence::unknown;
}

Presence presenceOf(const FileSystem& files, std::string_view path) {
  const auto found = files.attributes(path);
  return found.ok() ? Presence::there : presenceBy(found.outcome());
}

bool PathExists(const FileSystem& files, std::string_view path) {
  std::string tested(path);
  const std::string probe = lowerAscii(path);
  if (probe.size() == 1 && probe >= "a" && probe <= "z")
    tested += ":\\";
  else if (probe.size() == 2 && probe >= "a:" && probe <= "z:")
    tested += "\\";
  return !tested.empty() && files.attributes(tested).ok();
}

bool folderExists(const FileSystem& files, std::string_view path) {
  const auto found = files.attributes(path);
  return found.ok() && found.value().folder;
}

Result<double> GetDiskFree(const FileSystem& files, std::string_view path) {
  for (std::string folder = withoutBackslash(path); !folder.empty();) {
    const auto found = files.attributes(withBackslash(folder));
    if (found.ok()) {
      if (found.value().folder) return files.freeBytes(withBackslash(folder));
    } else if (presenceBy(found.outcome()) == Presence::unknown) {
      return found.outcome();
    }
    const std::size_t end = folder.rfind('\\');
    folder.resize(end == std::string::npos ? 0 : end);
  }
  return Outcome::failure(err::pathNotFound, path);
}

bool diskIsThere(const FileSystem& files, std::string_view path) {
  for (std::string folder = withoutBackslash(path); !folder.empty();) {
    const Presence presence = presenceOf(files, withBackslash(folder));
    if (presence == Presence::unknown) return false;
    if (presence == Presence::there) {
      const auto listing = files.list(withBackslash(folder), FileSystem::Entries::all);
      return listing.ok() && !listing.value().empty();
    }
    const std::size_t end = folder.rfind('\\');
    folder.resize(end == std::string::npos ? 0 : end);
  }
  return false;
}

void MakePath(FileSystem& files, std::string_view path) {
  std::string prefix;
  for (const std::string& element : split(path, '\\')) {
    prefix += element;
    files.makeFolder(prefix).skipped();
    prefix += '\\';
  }
}

}  // namespace skv
