#include "platform/disk/file_copy.h"

#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <span>

#include "platform/disk/native_calls.h"

namespace skv {

namespace {

int copyThrough(std::span<char> buffer, int from, int to) {
  for (;;) {
    const auto got = retried([&] { return ::read(from, buffer.data(), buffer.size()); });
    if (got == 0) return 0;
    if (got == -1) return errno;
    if (const int error = writeAll(to, buffer.first(static_cast<std::size_t>(got)))) return error;
  }
}

int copyThroughMemory(int from, int to) {
  constexpr std::size_t size = 262144;
  const auto buffer = std::make_unique_for_overwrite<char[]>(size);
  return copyThrough({buffer.get(), size}, from, to);
}

int copySmall(int from, int to) {
  std::array<char, smallFile> buffer;
  return copyThrough(buffer, from, to);
}

}  // namespace

int copyContent(int from, int to, off_t length) {
  if (length <= smallFile) return copySmall(from, to);
  if (::ioctl(to, FICLONE, from) == 0) return 0;
  constexpr std::size_t atOnce = std::size_t{1} << 30;
  for (;;) {
    const auto copied =
        retried([&] { return ::copy_file_range(from, nullptr, to, nullptr, atOnce, 0); });
    if (copied > 0) continue;
    if (copied == -1 && (errno == ENOSPC || errno == EDQUOT || errno == EFBIG)) return errno;
    // The end, or a pair of disks for which the system has no such copy. Some disks answer with an
    // end that is none, so only a read counts as one; both files stand where the copy stopped.
    return copyThroughMemory(from, to);
  }
}

}  // namespace skv
