#include "platform/disk/file_writer.h"

#include <unistd.h>

#include "platform/disk/hidden_files.h"

namespace skv {

PendingFile::PendingFile(std::string folder) : folder_(std::move(folder)) {
  constexpr mode_t mode = 0666;
  // Without a name nothing is left when the program is killed. Not every disk has that.
  fd_ = openFile(folder_, O_TMPFILE | O_RDWR, mode);
  if (fd_.valid()) return;
  const int error = takeHiddenName([this](const std::string& name) {
    fd_ = openFile(name, O_CREAT | O_EXCL | O_RDWR | O_NOFOLLOW, mode);
    return fd_.valid() ? 0 : errno;
  });
  errno = error;
}

PendingFile::~PendingFile() {
  if (hiddenName_.empty()) return;
  ::unlink(hiddenName_.c_str());
  HiddenFiles::end();
}

template <class Make>
int PendingFile::takeHiddenName(Make make) {
  for (;;) {
    std::string name = folder_ + "/" + someHiddenName();
    HiddenFiles::begin(name);
    const int error = make(name);
    if (error == 0) {
      hiddenName_ = std::move(name);
      return 0;
    }
    HiddenFiles::end();
    if (error != EEXIST) return error;
  }
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
    const std::string opened = "/proc/self/fd/" + std::to_string(fd_.get());
    const int error = takeHiddenName([&](const std::string& hidden) {
      return errorOf([&] {
        return ::linkat(AT_FDCWD, opened.c_str(), AT_FDCWD, hidden.c_str(), AT_SYMLINK_FOLLOW);
      });
    });
    if (error != 0) return error;
  }
  const auto rename = [&](unsigned flags) {
    return errorOf([&] {
      return ::renameat2(AT_FDCWD, hiddenName_.c_str(), AT_FDCWD, target.c_str(), flags);
    });
  };
  int error = rename(replace ? 0 : RENAME_NOREPLACE);
  if (error == EINVAL && !replace) error = rename(0);
  if (error == 0) {
    hiddenName_.clear();
    HiddenFiles::end();
  }
  return error;
}

int PendingFile::flushFolder() const {
  const Descriptor folder = openFile(folder_, O_RDONLY | O_DIRECTORY);
  if (!folder.valid()) return errno;
  const int error = errorOf([&] { return ::fsync(folder.get()); });
  return error == EINVAL ? 0 : error;  // a disk that has nothing to flush
}

}  // namespace skv
