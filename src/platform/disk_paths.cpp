#include "platform/disk_paths.h"

#include <unistd.h>

namespace skv {

namespace {

std::string joined(std::string root, const std::vector<std::string>& elements, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) root += '/';
    root += elements[i];
  }
  return root;
}

}  // namespace

DrivePath DiskPaths::currentFolder() const {
  const std::lock_guard lock(currentMutex_);
  return current_;
}

void DiskPaths::setCurrentFolder(DrivePath folder) {
  const std::lock_guard lock(currentMutex_);
  current_ = std::move(folder);
}

Result<DrivePath> DiskPaths::parse(std::string_view path) const {
  return parseWindowsPath(path, currentFolder());
}

std::string DiskPaths::spelled(const DrivePath& path) const {
  return joined(drives_.root(path.drive), path.elements, path.elements.size());
}

Result<DiskPaths::Reached> DiskPaths::reach(const DrivePath& path) {
  const std::string root = drives_.root(path.drive);
  const auto stands = [](const std::string& native) { return ::access(native.c_str(), F_OK) == 0; };
  // The longest part that stands as it is spelled; from there on in other letters.
  Reached reached;
  for (reached.elements = path.elements.size();; --reached.elements) {
    reached.native = joined(root, path.elements, reached.elements);
    if (stands(reached.native)) break;
    if (reached.elements == 0) return Outcome::failure(err::pathNotFound, path.text());
  }
  while (reached.elements < path.elements.size()) {
    const std::string& name = path.elements[reached.elements];
    auto spelling = indexes_.spelling(reached.native, name);
    if (!spelling.ok()) {
      // A file where a folder was asked for is an end of the way like any other.
      if (spelling.outcome().number() == err::pathNotFound) break;
      return spelling.outcome();
    }
    if (spelling.value().empty()) break;
    if (!reached.native.ends_with('/')) reached.native += '/';
    reached.native += spelling.value();
    ++reached.elements;
  }
  return reached;
}

Result<std::string> DiskPaths::find(const DrivePath& path) {
  auto reached = reach(path);
  if (!reached.ok()) return reached.outcome();
  const std::size_t missing = path.elements.size() - reached.value().elements;
  if (missing == 0) return std::move(reached).value().native;
  struct stat status {};
  const bool inFolder = missing == 1 && ::stat(reached.value().native.c_str(), &status) == 0 &&
                        S_ISDIR(status.st_mode);
  return Outcome::failure(inFolder ? err::fileNotFound : err::pathNotFound, path.text());
}

Result<DiskPlace> DiskPaths::place(const DrivePath& path) {
  if (path.elements.empty()) return Outcome::failure(err::pathFileAccess, path.text());
  DrivePath folder = path;
  DiskPlace place;
  place.name = std::move(folder.elements.back());
  folder.elements.pop_back();
  place.folder = spelled(folder);
  auto spelling = indexes_.spelling(place.folder, place.name);
  if (!spelling.ok() && (spelling.outcome().number() == err::fileNotFound ||
                         spelling.outcome().number() == err::pathNotFound)) {
    const auto found = find(folder);
    if (!found.ok()) return Outcome::failure(err::pathNotFound, path.text());
    place.folder = found.value();
    spelling = indexes_.spelling(place.folder, place.name);
  }
  if (!spelling.ok()) return spelling.outcome();
  while (place.folder.ends_with('/')) place.folder.pop_back();
  place.taken = !spelling.value().empty();
  if (place.taken) place.name = spelling.value();
  return place;
}

Result<std::string> DiskPaths::nativePath(const DrivePath& path) {
  const std::string real = drives_.realRoot(path.drive);
  if (real.empty()) return Outcome::failure(err::pathNotFound, path.text());
  auto reached = reach(path);
  if (!reached.ok()) return reached.outcome();
  std::string native = real;
  const auto append = [&native](std::string_view more) {
    if (!native.ends_with('/')) native += '/';
    native += more;
  };
  const std::string standing = reached.value().native.substr(drives_.root(path.drive).size());
  if (!standing.empty()) append(standing);
  for (std::size_t i = reached.value().elements; i < path.elements.size(); ++i)
    append(path.elements[i]);
  return native;
}

}  // namespace skv
