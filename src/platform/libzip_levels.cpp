#include "platform/libzip_levels.h"

#include <libdeflate.h>

#include <algorithm>
#include <map>
#include <new>

#include "base/text.h"

namespace skv {

namespace {

constexpr int highest = 9, quick = 7, thorough = 10;

// Files that share an extension pack alike.
std::string kindOf(const std::string& path) {
  const auto dot = path.find_last_of(".\\");
  return dot == std::string::npos || path[dot] == '\\' ? std::string()
                                                       : lowerAscii(path.substr(dot));
}

struct Kind {
  std::vector<FileToPack*> files;
  std::uint64_t bytes = 0;
};

// Whether the thorough level makes pieces of a few files much smaller than the quick one.
bool deservesThorough(const FileSystem& files, const Kind& kind, Deflater& deflater) {
  constexpr std::size_t trials = 4, piece = std::size_t{64} << 10U;
  constexpr double muchSmaller = 0.93;
  std::size_t quickBytes = 0, thoroughBytes = 0;
  const std::size_t count = std::min(trials, kind.files.size());
  for (std::size_t i = 0; i < count; ++i) {
    const auto content = files.readFile(kind.files[i * kind.files.size() / count]->path);
    // A file that cannot be read is told of when it is packed.
    if (!content.ok()) continue;
    std::span<const char> bytes(content.value());
    if (bytes.size() > piece) bytes = bytes.subspan((bytes.size() - piece) / 2, piece);
    const std::vector<char> packed = deflater.pack(bytes, quick);
    if (packed.empty()) continue;
    quickBytes += packed.size();
    thoroughBytes += deflater.pack(bytes, thorough).size();
  }
  return static_cast<double>(thoroughBytes) < muchSmaller * static_cast<double>(quickBytes);
}

// Two fifths of the bytes, spread over the kind.
void makeThorough(const Kind& kind) {
  constexpr std::uint64_t part = 2, whole = 5;
  std::uint64_t seen = 0, done = 0;
  for (FileToPack* file : kind.files) {
    if (done * whole <= seen * part) {
      file->level = thorough;
      done += file->size;
    }
    seen += file->size;
  }
}

}  // namespace

void chooseLevels(const FileSystem& files, int level, std::span<FileToPack> toPack) {
  if (level < highest) {
    for (FileToPack& file : toPack) file.level = std::max(level, 0);
    return;
  }
  std::map<std::string, Kind> kinds;
  for (FileToPack& file : toPack) {
    file.level = quick;
    Kind& kind = kinds[kindOf(file.path)];
    kind.files.push_back(&file);
    kind.bytes += file.size;
  }
  constexpr std::uint64_t worthTrying = std::uint64_t{1} << 20U;
  Deflater deflater;
  for (const auto& [extension, kind] : kinds)
    if (kind.bytes >= worthTrying && deservesThorough(files, kind, deflater)) makeThorough(kind);
}

void Deflater::Closer::operator()(libdeflate_compressor* one) const {
  libdeflate_free_compressor(one);
}

Deflater::Deflater() : compressors_(thorough + 1) {}
Deflater::~Deflater() = default;
Deflater::Deflater(Deflater&&) noexcept = default;

std::vector<char> Deflater::pack(std::span<const char> bytes, int level) {
  if (level <= 0 || bytes.size() < 2) return {};
  auto& compressor = compressors_.at(static_cast<std::size_t>(level));
  if (!compressor) compressor.reset(libdeflate_alloc_compressor(level));
  if (!compressor) throw std::bad_alloc();
  const auto buffer = std::make_unique_for_overwrite<char[]>(bytes.size() - 1);
  const std::size_t length = libdeflate_deflate_compress(
      compressor.get(), bytes.data(), bytes.size(), buffer.get(), bytes.size() - 1);
  return {buffer.get(), buffer.get() + length};
}

}  // namespace skv
