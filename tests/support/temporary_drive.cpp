#include "support/temporary_drive.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "base/text.h"

namespace skv::test {

namespace fs = std::filesystem;

namespace {

std::string makeRoot(const fs::path& parent) {
  std::string pattern = (parent / "skyvault-XXXXXX").string();
  return ::mkdtemp(pattern.data()) == nullptr ? std::string() : pattern;
}

// The memory's disk takes a third of the time, where it can do what the other one can and has room.
std::string makeRootInMemory() {
  constexpr const char* memory = "/dev/shm";
  struct statvfs disk {};
  if (std::getenv("TMPDIR") || ::statvfs(memory, &disk) != 0 || disk.f_flag & ST_NOEXEC ||
      disk.f_bavail * disk.f_frsize < std::uint64_t{1} << 30U)
    return {};
  std::string root = makeRoot(memory);
  if (root.empty() || ::setxattr(root.c_str(), "user.test", "", 0, 0) == 0) return root;
  fs::remove(root);
  return {};
}

}  // namespace

TemporaryDrive::TemporaryDrive() : root_(makeRootInMemory()) {
  if (root_.empty()) root_ = makeRoot(fs::temp_directory_path());
  if (root_.empty()) throw std::runtime_error("no temporary folder");
  fs::create_directory(native());
  fs::create_directory(drives());
  fs::create_directory_symlink("../drive_c", drives() + "/c:");
  fs::create_directory_symlink("/", drives() + "/z:");
}

TemporaryDrive::~TemporaryDrive() {
  std::error_code error;
  fs::remove_all(root_, error);
}

std::string TemporaryDrive::native(const std::string& path) const {
  fs::path place = native();
  for (const std::string& element : split(path.substr(path.find(':') + 1), '\\')) {
    if (element.empty()) continue;
    fs::path next = place / element;
    std::error_code error;
    if (!fs::exists(fs::symlink_status(next, error)))
      for (const auto& entry : fs::directory_iterator(place, error))
        if (equalsIgnoringCase(entry.path().filename().string(), element)) next = entry.path();
    place = next;
  }
  return place.string();
}

void TemporaryDrive::write(const std::string& path, const std::string& content) const {
  const fs::path file = native(path);
  fs::create_directories(file.parent_path());
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out << content;
  out.close();
  if (!out) throw std::runtime_error("cannot write " + path);
}

std::string TemporaryDrive::read(const std::string& path) const {
  std::ostringstream content;
  content << std::ifstream(native(path), std::ios::binary).rdbuf();
  return content.str();
}

bool TemporaryDrive::exists(const std::string& path) const {
  return fs::exists(fs::symlink_status(native(path)));
}

void TemporaryDrive::remove(const std::string& path) const { fs::remove_all(native(path)); }

void TemporaryDrive::setModified(const std::string& path, FileTime time) const {
  const timespec times[2] = {{0, UTIME_OMIT}, {time.seconds, time.nanoseconds}};
  if (::utimensat(AT_FDCWD, native(path).c_str(), times, 0) != 0)
    throw std::runtime_error("no time for " + path);
}

void TemporaryDrive::link(const std::string& path, const std::string& target) const {
  fs::create_symlink(native(target), native(path));
}

void TemporaryDrive::clear(const std::string& folder) const {
  remove(folder);
  fs::create_directories(native(folder));
}

std::vector<std::string> TemporaryDrive::tree(const std::string& folder) const {
  std::vector<std::string> result;
  const fs::path top = native(folder);
  if (!fs::is_directory(top)) return result;
  for (const auto& entry : fs::recursive_directory_iterator(top)) {
    std::string path = entry.path().lexically_relative(top).string();
    std::ranges::replace(path, '/', '\\');
    result.push_back(entry.is_directory() ? path + "\\" : path);
  }
  std::ranges::sort(result);
  return result;
}

std::vector<std::string> TemporaryDrive::filesIn(const std::string& folder) const {
  auto result = tree(folder);
  std::erase_if(result, [](const std::string& path) { return path.ends_with("\\"); });
  return result;
}

}  // namespace skv::test
