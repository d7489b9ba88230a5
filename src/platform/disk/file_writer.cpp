#include "platform/disk/file_writer.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace skv {

namespace {

constexpr std::string_view hiddenStart = ".skv-", hiddenEnd = ".tmp";
constexpr std::size_t digits = 16;

std::string someHiddenName() {
  std::random_device random;
  std::array<char, digits + 1> number;
  std::snprintf(number.data(), number.size(), "%08x%08x", random(), random());
  return std::string(hiddenStart) + number.data() + std::string(hiddenEnd);
}

}  // namespace

bool isLeftoverName(std::string_view name) {
  return name.size() == hiddenStart.size() + digits + hiddenEnd.size() &&
         name.starts_with(hiddenStart) && name.ends_with(hiddenEnd) &&
         name.substr(hiddenStart.size(), digits).find_first_not_of("0123456789abcdef") ==
             std::string_view::npos;
}

PendingFile::PendingFile(std::string folder) : folder_(std::move(folder)) {
  constexpr mode_t mode = 0666;
  // Without a name nothing is left when the program is killed. Not every disk has that.
  fd_ = openFile(folder_, O_TMPFILE | O_RDWR, mode);
  if (fd_.valid()) return;
  do {
    hiddenName_ = folder_ + "/" + someHiddenName();
    fd_ = openFile(hiddenName_, O_CREAT | O_EXCL | O_RDWR | O_NOFOLLOW, mode);
  } while (!fd_.valid() && errno == EEXIST);
  if (!fd_.valid()) hiddenName_.clear();
}

PendingFile::~PendingFile() {
  if (!hiddenName_.empty()) ::unlink(hiddenName_.c_str());
}

int PendingFile::flush() {
  return errorOf([&] { return ::fsync(fd_.get()); });
}

// A disk of the network keeps what is written to itself until the file is closed: only then it says
// that there is no room. It knows no nameless files, for which each write has its answer.
int PendingFile::settle() const {
  Descriptor second(::fcntl(fd_.get(), F_DUPFD_CLOEXEC, 0));
  return second.valid() ? second.close() : errno;
}

int PendingFile::publish(const std::string& name, bool replace) {
  const std::string target = folder_ + "/" + name;
  const bool nameless = hiddenName_.empty();
  if (!nameless) {
    if (const int error = settle()) return error;
  }
  if (nameless && !replace) {
    const std::string opened = "/proc/self/fd/" + std::to_string(fd_.get());
    return errorOf([&] {
      return ::linkat(AT_FDCWD, opened.c_str(), AT_FDCWD, target.c_str(), AT_SYMLINK_FOLLOW);
    });
  }
  if (nameless) {
    if (const int error = takeHiddenName()) return error;
  }
  const auto rename = [&](unsigned flags) {
    return errorOf([&] {
      return ::renameat2(AT_FDCWD, hiddenName_.c_str(), AT_FDCWD, target.c_str(), flags);
    });
  };
  int error = rename(replace ? 0 : RENAME_NOREPLACE);
  if (error == EINVAL && !replace) error = rename(0);
  if (error == 0) hiddenName_.clear();
  return error;
}

int PendingFile::takeHiddenName() {
  const std::string opened = "/proc/self/fd/" + std::to_string(fd_.get());
  int error = 0;
  do {
    const std::string name = folder_ + "/" + someHiddenName();
    error = errorOf([&] {
      return ::linkat(AT_FDCWD, opened.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW);
    });
    if (error == 0) hiddenName_ = name;
  } while (error == EEXIST);
  return error;
}

int PendingFile::flushFolder() const {
  const Descriptor folder = openFile(folder_, O_RDONLY | O_DIRECTORY);
  if (!folder.valid()) return errno;
  const int error = errorOf([&] { return ::fsync(folder.get()); });
  return error == EINVAL ? 0 : error;  // a disk that has nothing to flush
}

}  // namespace skv
