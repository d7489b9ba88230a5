// The central directory of an archive, as far as libzip keeps it to itself:
// where the entries lie and how their names are marked.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/os_error.h"

namespace skv {

std::uint64_t littleEndian(const std::uint8_t *bytes, int count);

struct CentralRecord {
  std::uint64_t offset = 0; // of the local header, from the file's start
  std::uint64_t packed = 0; // bytes of data
  bool utf8 = false;        // the name is marked as UTF-8
};

class CentralDirectory {
public:
  explicit CentralDirectory(const std::string &native);

  // Every record, in order. False when the file has no directory that can be
  // read.
  bool read(std::vector<CentralRecord> &records);
  // Where the data of the entry with this local header begins; 0 when there is
  // no such header.
  std::uint64_t dataOffset(std::uint64_t header) const;
  // Where the directory begins, and so the last entry ends; after read().
  std::uint64_t start() const { return start_; }

private:
  // Where the directory lies, by the record at the file's end.
  struct Extent {
    std::uint64_t count = 0, size = 0, offset = 0, end = 0;
  };
  bool findExtent(Extent &extent) const;
  bool bytesAt(std::uint64_t offset, std::size_t count,
               std::vector<std::uint8_t> &bytes) const;

  Descriptor file_;
  std::uint64_t length_ = 0;
  std::uint64_t start_ = 0;
};

} // namespace skv
