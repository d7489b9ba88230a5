// The system's calls as this folder uses them: a signal does not end them, and they answer with 0
// or the system's error number.
#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "platform/disk/os_error.h"
#include "platform/file_system.h"

namespace skv {

// 0, or the system's error number of a call that answers -1 on failure.
template <class Call>
int errorOf(Call call) {
  return retried(call) == -1 ? errno : 0;
}

Descriptor openFile(const std::string& native, int flags, mode_t mode = 0);

// All of the bytes; 0 or the system's error number.
int writeAll(int fd, std::span<const char> bytes);
// Appends everything up to the end; 0 or the system's error number. `length`: what the file is
// likely to hold, 0 when that is not known.
int readAll(int fd, std::string& content, off_t length = 0);

FileTime modifiedTime(const struct stat& status);
bool sameFile(const struct stat& a, const struct stat& b);

// The entries of an open folder, without "." and "..", in no order.
class FolderReader {
 public:
  explicit FolderReader(int fd) : fd_(fd) {}
  // nullptr at the end; then error() tells whether all entries came. Valid until the next call.
  const dirent64* next();
  int error() const { return error_; }

 private:
  int fd_;
  int error_ = 0;
  std::size_t at_ = 0, filled_ = 0;
  alignas(dirent64) std::array<char, 32768> buffer_;
};

}  // namespace skv
