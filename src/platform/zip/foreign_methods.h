// Entries of the packing methods that libzip does not read: Deflate64, which Windows and the
// archivers of its time wrote, LZMA and PPMd. The one file that knows libunarr.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace skv {

bool isForeignMethod(int method);

class ForeignStream {
 public:
  // What is packed is held in memory as long as the stream lives; larger ones are not read.
  static constexpr std::uint64_t mostPacked = std::uint64_t{256} << 20U;
  static constexpr std::uint64_t mostUnpacked = 0xFFFFFFFE;

  // `packed` may have any content. `size`: bytes, once unpacked; `crc`: of these.
  ForeignStream(int method, std::span<const char> packed, std::uint64_t size, std::uint32_t crc);
  ~ForeignStream();
  ForeignStream(const ForeignStream&) = delete;
  ForeignStream& operator=(const ForeignStream&) = delete;

  // Up to bytes.size() bytes, 0 at the end, -1 when the data is damaged or not as its sum says.
  std::int64_t read(std::span<char> bytes);

 private:
  struct Library;
  std::string archive_;
  std::uint64_t left_;
  std::unique_ptr<Library> library_;
};

}  // namespace skv
