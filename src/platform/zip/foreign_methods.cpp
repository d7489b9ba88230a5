#include "platform/zip/foreign_methods.h"

#include <unarr.h>

#include <algorithm>

namespace skv {

namespace {

constexpr int deflate64 = 9, lzma = 14, ppmd = 98;

std::string little(std::uint64_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i)
    text += static_cast<char>(value >> (8U * static_cast<unsigned>(i)));
  return text;
}

// The library asks for the memory that the data names, up to 4 GB. No more is needed than the whole
// entry has.
void boundDictionary(std::string& archive, std::size_t data, std::uint64_t size) {
  constexpr std::size_t version = 2, propertiesSize = 2, property = 1, field = 4;
  const std::size_t at = data + version + propertiesSize + property;
  if (at + field > archive.size()) return;
  constexpr std::uint64_t least = 4096;
  const std::uint64_t most = std::max(size, least);
  std::uint64_t named = 0;
  for (std::size_t i = field; i-- > 0;)
    named = named << 8U | static_cast<unsigned char>(archive[at + i]);
  if (named > most) archive.replace(at, field, little(most, static_cast<int>(field)));
}

// The library reads archives and no bare streams: an archive of one entry.
std::string archiveOf(int method, std::span<const char> packed, std::uint64_t size,
                      std::uint32_t crc) {
  const std::string name = "x";
  const std::string common = little(20, 2) + little(0, 2) +
                             little(static_cast<std::uint64_t>(method), 2) + little(0, 4) +
                             little(crc, 4) + little(packed.size(), 4) + little(size, 4) +
                             little(name.size(), 2) + little(0, 2);
  std::string archive = "PK\x03\x04" + common + name;
  archive.append(packed.begin(), packed.end());
  if (method == lzma) boundDictionary(archive, archive.size() - packed.size(), size);
  const std::uint64_t directory = archive.size();
  const std::string entry = "PK\x01\x02" + little(20, 2) + common + std::string(14, '\0') + name;
  archive += entry;
  archive += "PK\x05\x06" + little(0, 4) + little(1, 2) + little(1, 2) + little(entry.size(), 4) +
             little(directory, 4) + little(0, 2);
  return archive;
}

}  // namespace

bool isForeignMethod(int method) { return method == deflate64 || method == lzma || method == ppmd; }

struct ForeignStream::Library {
  ar_stream* stream = nullptr;
  ar_archive* archive = nullptr;
};

ForeignStream::ForeignStream(int method, std::span<const char> packed, std::uint64_t size,
                             std::uint32_t crc)
    : archive_(archiveOf(method, packed, size, crc)),
      left_(size),
      library_(std::make_unique<Library>()) {
  library_->stream = ar_open_memory(archive_.data(), archive_.size());
  if (library_->stream != nullptr) library_->archive = ar_open_zip_archive(library_->stream, false);
  if (library_->archive != nullptr && !ar_parse_entry(library_->archive)) {
    ar_close_archive(library_->archive);
    library_->archive = nullptr;
  }
}

ForeignStream::~ForeignStream() {
  if (library_->archive != nullptr) ar_close_archive(library_->archive);
  if (library_->stream != nullptr) ar_close(library_->stream);
}

std::int64_t ForeignStream::read(std::span<char> bytes) {
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(left_, bytes.size()));
  if (count == 0) return 0;
  if (library_->archive == nullptr || !ar_entry_uncompress(library_->archive, bytes.data(), count))
    return -1;
  left_ -= count;
  return static_cast<std::int64_t>(count);
}

}  // namespace skv
