#include "support/zip_maker.h"

#include <libdeflate.h>

namespace skv::test {

std::string little(std::uint64_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i)
    text += static_cast<char>(value >> (8U * static_cast<unsigned>(i)));
  return text;
}

namespace {

// What both headers of an entry share, from the flags to the length of the extra field.
std::string commonFields(const RawEntry& entry) {
  return little(entry.flags, 2) + little(static_cast<unsigned>(entry.method), 2) +
         little(entry.dosTime, 2) + little(entry.dosDate, 2) +
         little(entry.crc.value_or(crc32Of(entry.data)), 4) +
         little(entry.packed.value_or(static_cast<std::uint32_t>(entry.data.size())), 4) +
         little(entry.size.value_or(static_cast<std::uint32_t>(entry.data.size())), 4) +
         little(entry.name.size(), 2) + little(entry.extra.size(), 2);
}

}  // namespace

std::uint32_t crc32Of(const std::string& bytes) {
  return libdeflate_crc32(0, bytes.data(), bytes.size());
}

std::string deflated(const std::string& bytes) {
  libdeflate_compressor* compressor = libdeflate_alloc_compressor(6);
  std::string packed(libdeflate_deflate_compress_bound(compressor, bytes.size()), '\0');
  packed.resize(libdeflate_deflate_compress(compressor, bytes.data(), bytes.size(), packed.data(),
                                            packed.size()));
  libdeflate_free_compressor(compressor);
  return packed;
}

std::string rawZip(const std::vector<RawEntry>& entries, const std::string& before) {
  std::string bytes = before, directory;
  for (const RawEntry& entry : entries) {
    const std::uint64_t offset = entry.offset.value_or(static_cast<std::uint32_t>(bytes.size()));
    bytes +=
        "PK\x03\x04" + little(20, 2) + commonFields(entry) + entry.name + entry.extra + entry.data;
    directory += "PK\x01\x02" + little(20 + 256 * entry.madeBy, 2) + little(20, 2) +
                 commonFields(entry) + little(0, 6) + little(entry.attributes, 4) +
                 little(offset, 4) + entry.name + entry.extra;
  }
  const std::uint64_t start = bytes.size();
  return bytes + directory + "PK\x05\x06" + little(0, 4) + little(entries.size(), 2) +
         little(entries.size(), 2) + little(directory.size(), 4) + little(start, 4) + little(0, 2);
}

}  // namespace skv::test
