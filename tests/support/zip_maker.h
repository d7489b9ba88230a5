// Archives made byte by byte, true or false as a test wants them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace skv::test {

// An entry as its headers tell it. What is not given is worked out from `data`, which is stored.
struct RawEntry {
  std::string name;
  std::string data;                        // as it lies in the archive
  int method = 0;                          // 0 stored, 8 deflated
  std::optional<std::uint32_t> size = {};  // once unpacked
  std::optional<std::uint32_t> packed = {};
  std::optional<std::uint32_t> crc = {};
  std::optional<std::uint32_t> offset = {};  // of the local header
  unsigned flags = 0;
  unsigned madeBy = 0;                               // host system: 0 FAT, 3 Unix, 11 NTFS
  std::uint32_t attributes = 0;                      // external
  std::uint16_t dosTime = 0x6000, dosDate = 0x2D98;  // 24 December 2002, 12:00
  std::string extra = {};
};

// `before`: bytes in front of the archive, which its offsets count in.
std::string rawZip(const std::vector<RawEntry>& entries, const std::string& before = {});
// A number of so many bytes, the lowest first.
std::string little(std::uint64_t value, int bytes);

// The bytes packed by deflate, without any header.
std::string deflated(const std::string& bytes);
std::uint32_t crc32Of(const std::string& bytes);

}  // namespace skv::test
