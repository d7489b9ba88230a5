#include "platform/zip_directory.h"

#include <unistd.h>

#include <algorithm>

#include "platform/native_calls.h"

namespace skv {

namespace {

constexpr std::uint32_t localSignature = 0x04034b50,
                        centralSignature = 0x02014b50,
                        endSignature = 0x06054b50, end64Signature = 0x06064b50,
                        locatorSignature = 0x07064b50;
constexpr std::size_t localSize = 30, centralSize = 46, endSize = 22,
                      end64Size = 56, locatorSize = 20;
constexpr std::uint64_t in64 =
    0xFFFFFFFF; // the value stands in the ZIP64 field instead

// The values of the ZIP64 field that the record itself has no room for.
void readZip64(const std::uint8_t *extra, std::size_t length, bool hasUnpacked,
               CentralRecord &record) {
  constexpr std::size_t fieldHeader = 4;
  for (std::size_t at = 0; at + fieldHeader <= length;) {
    const std::size_t size = littleEndian(extra + at + 2, 2);
    std::size_t value = at + fieldHeader;
    const std::size_t end = value + size;
    if (end > length)
      return;
    if (littleEndian(extra + at, 2) == 1) {
      const auto take = [&](std::uint64_t &target) {
        if (value + 8 > end)
          return;
        target = littleEndian(extra + value, 8);
        value += 8;
      };
      std::uint64_t unpacked = 0;
      if (hasUnpacked)
        take(unpacked);
      if (record.packed == in64)
        take(record.packed);
      if (record.offset == in64)
        take(record.offset);
      return;
    }
    at = end;
  }
}

} // namespace

std::uint64_t littleEndian(const std::uint8_t *bytes, int count) {
  std::uint64_t value = 0;
  for (int i = count - 1; i >= 0; --i)
    value = value << 8U | bytes[i];
  return value;
}

CentralDirectory::CentralDirectory(const std::string &native)
    : file_(openFile(native, O_RDONLY)) {
  struct stat status {};
  if (file_.valid() && ::fstat(file_.get(), &status) == 0)
    length_ = static_cast<std::uint64_t>(status.st_size);
}

bool CentralDirectory::bytesAt(std::uint64_t offset, std::size_t count,
                               std::vector<std::uint8_t> &bytes) const {
  if (offset > length_ || count > length_ - offset)
    return false;
  bytes.resize(count);
  for (std::size_t filled = 0; filled < count;) {
    const ssize_t got = retried([&] {
      return ::pread(file_.get(), bytes.data() + filled, count - filled,
                     static_cast<off_t>(offset + filled));
    });
    if (got <= 0)
      return false;
    filled += static_cast<std::size_t>(got);
  }
  return true;
}

bool CentralDirectory::findExtent(Extent &extent) const {
  constexpr std::uint64_t longestComment = 65535;
  std::vector<std::uint8_t> tail;
  const std::uint64_t tailSize =
      std::min<std::uint64_t>(length_, endSize + longestComment);
  if (tailSize < endSize || !bytesAt(length_ - tailSize, tailSize, tail))
    return false;
  std::size_t at = tail.size() - endSize;
  while (littleEndian(&tail[at], 4) != endSignature)
    if (at-- == 0)
      return false;
  extent.count = littleEndian(&tail[at + 10], 2);
  extent.size = littleEndian(&tail[at + 12], 4);
  extent.offset = littleEndian(&tail[at + 16], 4);
  extent.end = length_ - tailSize + at;

  std::vector<std::uint8_t> bytes;
  if (extent.end >= locatorSize &&
      bytesAt(extent.end - locatorSize, locatorSize, bytes) &&
      littleEndian(bytes.data(), 4) == locatorSignature) {
    const std::uint64_t end64 = littleEndian(&bytes[8], 8);
    if (!bytesAt(end64, end64Size, bytes) ||
        littleEndian(bytes.data(), 4) != end64Signature)
      return false;
    extent = {littleEndian(&bytes[32], 8), littleEndian(&bytes[40], 8),
              littleEndian(&bytes[48], 8), end64};
  }
  return extent.size <= extent.end;
}

bool CentralDirectory::read(std::vector<CentralRecord> &records) {
  Extent extent;
  if (!findExtent(extent))
    return false;
  start_ = extent.end - extent.size;
  // All offsets are off by what stands before the archive, as in one that
  // extracts itself.
  const std::uint64_t before =
      start_ >= extent.offset ? start_ - extent.offset : 0;
  std::vector<std::uint8_t> bytes;
  if (!bytesAt(start_, extent.size, bytes))
    return false;
  std::size_t at = 0;
  while (records.size() < extent.count) {
    if (at + centralSize > bytes.size() ||
        littleEndian(&bytes[at], 4) != centralSignature)
      return false;
    constexpr std::uint64_t utf8Flag = 0x800;
    CentralRecord record;
    record.utf8 = (littleEndian(&bytes[at + 8], 2) & utf8Flag) != 0;
    record.packed = littleEndian(&bytes[at + 20], 4);
    const bool unpackedIn64 = littleEndian(&bytes[at + 24], 4) == in64;
    record.offset = littleEndian(&bytes[at + 42], 4);
    const std::size_t extra =
        at + centralSize + littleEndian(&bytes[at + 28], 2);
    const std::size_t extraLength = littleEndian(&bytes[at + 30], 2);
    at = extra + extraLength + littleEndian(&bytes[at + 32], 2);
    if (at > bytes.size())
      return false;
    readZip64(bytes.data() + extra, extraLength, unpackedIn64, record);
    record.offset += before;
    records.push_back(record);
  }
  return true;
}

std::uint64_t CentralDirectory::dataOffset(std::uint64_t header) const {
  std::vector<std::uint8_t> bytes;
  if (!bytesAt(header, localSize, bytes) ||
      littleEndian(bytes.data(), 4) != localSignature)
    return 0;
  return header + localSize + littleEndian(&bytes[26], 2) +
         littleEndian(&bytes[28], 2);
}

} // namespace skv
