#include "platform/disk/native_calls.h"

#include <unistd.h>

#include <algorithm>

namespace skv {

Descriptor openFile(const std::string& native, int flags, mode_t mode) {
  return Descriptor(retried([&] { return ::open(native.c_str(), flags | O_CLOEXEC, mode); }));
}

int writeAll(int fd, std::span<const char> bytes) {
  while (!bytes.empty()) {
    const auto written = retried([&] { return ::write(fd, bytes.data(), bytes.size()); });
    if (written == -1) return errno;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return 0;
}

int readAll(int fd, std::string& content, off_t length) {
  constexpr std::size_t step = 65536;
  const std::size_t expected = length > 0 ? static_cast<std::size_t>(length) : 0;
  // One byte more than the length, so that one call fetches all and shows that there is no more.
  std::size_t room = expected > 0 ? expected + 1 : step;
  const std::size_t begin = content.size();
  std::size_t end = begin;
  for (;;) {
    content.resize(end + room);
    const auto got = retried([&] { return ::read(fd, content.data() + end, room); });
    const int error = got == -1 ? errno : 0;
    end += got > 0 ? static_cast<std::size_t>(got) : 0;
    const bool whole = expected > 0 && end - begin == expected;
    if (got <= 0 || whole) {
      content.resize(end);
      return error;
    }
    room = content.size() > end ? content.size() - end : std::max(step, end);
  }
}

FileTime modifiedTime(const struct stat& status) {
  return {status.st_mtim.tv_sec, static_cast<std::int32_t>(status.st_mtim.tv_nsec)};
}

bool sameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

const dirent64* FolderReader::next() {
  for (;;) {
    if (at_ == filled_) {
      const auto got = retried([&] { return ::getdents64(fd_, buffer_.data(), buffer_.size()); });
      if (got <= 0) {
        error_ = got == 0 ? 0 : errno;
        return nullptr;
      }
      at_ = 0;
      filled_ = static_cast<std::size_t>(got);
    }
    const auto* entry = reinterpret_cast<const dirent64*>(buffer_.data() + at_);
    at_ += entry->d_reclen;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return entry;
  }
}

}  // namespace skv
