#include "core/disk_queries.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"

namespace skv {

namespace {

// The path itself, or the first folder above it that stands.
Result<std::string> nearestFolder(const FileSystem& files, std::string_view path) {
  for (std::string folder(path); !folder.empty(); folder = folderAbove(folder)) {
    folder = withBackslash(folder);
    const auto found = files.attributes(folder);
    if (found.ok() && found.value().folder) return folder;
    if (!found.ok() && presenceBy(found.outcome()) == Presence::unknown) return found.outcome();
  }
  return Outcome::failure(err::pathNotFound, path);
}

}  // namespace

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

Result<bool> isLinkForCertain(const FileSystem& files, const std::string& folder) {
  const std::string path = withoutBackslash(folder);
  if (!files.isLink(path)) return false;
  const auto place = files.canonicalPath(path);
  if (!place.ok() && presenceBy(place.outcome()) == Presence::unknown) return place.outcome();
  const std::size_t end = path.rfind('\\') + 1;
  const auto above = files.canonicalPath(path.substr(0, end));
  if (!above.ok()) return above.outcome();
  // One that stands where it is looked for is none.
  if (place.ok() && upper(place.value()) == upper(above.value() + path.substr(end) + "/"))
    return Outcome::failure(err::deviceIo, path);
  return true;
}

Result<double> GetDiskFree(const FileSystem& files, std::string_view path) {
  const auto folder = nearestFolder(files, path);
  return folder.ok() ? files.freeBytes(folder.value()) : folder.outcome();
}

bool diskIsThere(const FileSystem& files, std::string_view path) {
  const auto folder = nearestFolder(files, path);
  if (!folder.ok()) return false;
  const auto listing = files.list(folder.value(), FileSystem::Entries::all);
  return listing.ok() && !listing.value().empty();
}

std::string freePath(const FileSystem& files, const std::string& folder, const std::string& name) {
  constexpr int lastTry = 1000;
  const std::size_t end = std::min(name.rfind('.'), name.size());
  std::string path = folder + name;
  for (int i = 2; i < lastTry && presenceOf(files, path) != Presence::absent; ++i)
    path = folder + name.substr(0, end) + " (" + std::to_string(i) + ")" + name.substr(end);
  return path;
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
