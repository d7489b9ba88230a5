#include "platform/zip/levels.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <map>
#include <new>

#include "base/text.h"

namespace skv {

namespace {

constexpr int highest = 9;
// libdeflate's: for what hardly packs, for most files, and with every means.
constexpr int glance = 1, quick = 7, thorough = 10;

// Files that share an extension pack alike.
std::string kindOf(const std::string& path) {
  const auto dot = path.find_last_of(".\\");
  return dot == std::string::npos || path[dot] == '\\' ? std::string()
                                                       : lowerAscii(path.substr(dot));
}

struct FileKind {
  std::vector<FileToPack*> files;
  std::uint64_t bytes = 0;
};

std::vector<char> finished(z_stream& stream, std::span<const char> bytes) {
  std::vector<char> packed(deflateBound(&stream, static_cast<uLong>(bytes.size())));
  // zlib reads from there alone, but does not say so.
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  deflate(&stream, Z_FINISH);
  packed.resize(stream.total_out);
  return packed;
}

std::size_t sizeByZlib(std::span<const char> bytes) {
  z_stream stream{};
  constexpr int rawDeflate = -MAX_WBITS, memory = 8;
  if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, rawDeflate, memory,
                   Z_DEFAULT_STRATEGY) != Z_OK)
    throw std::bad_alloc();
  const std::size_t size = finished(stream, bytes).size();
  deflateEnd(&stream);
  return size;
}

// Pieces from the middle of a few files of a kind.
std::vector<std::string> somePieces(const FileSystem& files, const FileKind& kind) {
  constexpr std::size_t most = 4, length = std::size_t{64} << 10U;
  std::vector<std::string> pieces;
  const std::size_t count = std::min(most, kind.files.size());
  for (std::size_t i = 0; i < count; ++i) {
    auto content = files.readFile(kind.files[i * kind.files.size() / count]->path);
    // A file that cannot be read is told of when it is packed.
    if (!content.ok()) continue;
    const std::string& bytes = content.value();
    pieces.push_back(bytes.size() > length ? bytes.substr((bytes.size() - length) / 2, length)
                                           : bytes);
  }
  return pieces;
}

// What a trial tells of a kind: how much smaller, for each of its bytes, the thorough level makes
// it than the quick one, and by how many bytes the quick one stays behind the yardstick.
struct Trial {
  FileKind* kind = nullptr;
  bool hardlyPacks = false;
  double gain = 0, excess = 0;
};

Trial trialOf(FileKind& kind, const std::vector<std::string>& pieces, Deflater& deflater) {
  const auto packedSize = [&](int level) {
    std::size_t sum = 0;
    for (const std::string& piece : pieces) sum += deflater.pack(piece, level).size();
    return static_cast<double>(sum);
  };
  double plain = 0, yardstick = 0;
  for (const std::string& piece : pieces) {
    plain += static_cast<double>(piece.size());
    yardstick += static_cast<double>(sizeByZlib(piece));
  }
  constexpr double hardlySmaller = 0.98, goal = 0.999;
  if (yardstick >= hardlySmaller * plain) return {.kind = &kind, .hardlyPacks = true};
  const double quickSize = packedSize(quick);
  return {.kind = &kind,
          .gain = (quickSize - packedSize(thorough)) / plain,
          .excess = (quickSize - goal * yardstick) / plain * static_cast<double>(kind.bytes)};
}

// Spreads the thorough level over a part of the kind.
void apply(double thoroughPart, const FileKind& kind) {
  double due = 0;
  for (FileToPack* file : kind.files) {
    const auto size = static_cast<double>(file->size);
    due += thoroughPart * size;
    if (thoroughPart <= 0 || due < size / 2) continue;
    due -= size;
    file->level = thorough;
  }
}

// Makes the archive as a whole as small as the yardstick would: where the thorough level gains most
// of each byte, the least of them have to go through it.
void apply(std::vector<Trial> trials) {
  double excess = 0, most = 0;
  for (const Trial& trial : trials) {
    if (trial.hardlyPacks)
      for (FileToPack* file : trial.kind->files) file->level = glance;
    excess += trial.excess;
    most += static_cast<double>(trial.kind->bytes);
  }
  most /= 2;  // more would cost more time than it is worth
  std::ranges::sort(trials, std::ranges::greater(), &Trial::gain);
  for (const Trial& trial : trials) {
    if (excess <= 0 || most <= 0 || trial.gain <= 0) return;
    const auto bytes = static_cast<double>(trial.kind->bytes);
    const double due = std::min({bytes, most, excess / trial.gain});
    apply(due / bytes, *trial.kind);
    excess -= due * trial.gain;
    most -= due;
  }
}

}  // namespace

void chooseLevels(const FileSystem& files, int level, std::span<FileToPack> toPack) {
  if (level < highest) {
    for (FileToPack& file : toPack) file.level = std::max(level, 0);
    return;
  }
  std::map<std::string, FileKind> kinds;
  for (FileToPack& file : toPack) {
    file.level = quick;
    FileKind& kind = kinds[kindOf(file.path)];
    kind.files.push_back(&file);
    kind.bytes += file.size;
  }
  constexpr std::uint64_t worthTrying = std::uint64_t{1} << 20U;
  Deflater deflater;
  std::vector<Trial> trials;
  for (auto& [extension, kind] : kinds)
    if (kind.bytes >= worthTrying)
      trials.push_back(trialOf(kind, somePieces(files, kind), deflater));
  apply(std::move(trials));
}

void Deflater::Closer::operator()(libdeflate_compressor* one) const {
  libdeflate_free_compressor(one);
}

Deflater::Deflater() : compressors_(thorough + 1) {}
Deflater::~Deflater() = default;
Deflater::Deflater(Deflater&&) noexcept = default;

void Deflater::SmallCloser::operator()(z_stream_s* one) const {
  deflateEnd(one);
  delete one;
}

// Of files of a few bytes nearly all of libdeflate's time goes into clearing its tables, which are
// made for large ones. zlib can be had with small tables.
constexpr std::size_t smallFile = 3500;

std::vector<char> Deflater::packSmall(std::span<const char> bytes) {
  constexpr int rawDeflateOf4K = -12, memory = 6;
  if (!small_) {
    auto stream = std::make_unique<z_stream>();
    if (deflateInit2(stream.get(), Z_BEST_COMPRESSION, Z_DEFLATED, rawDeflateOf4K, memory,
                     Z_DEFAULT_STRATEGY) != Z_OK)
      throw std::bad_alloc();
    small_.reset(stream.release());
  }
  deflateReset(small_.get());
  return finished(*small_, bytes);
}

std::vector<char> Deflater::pack(std::span<const char> bytes, int level) {
  if (bytes.size() <= smallFile) return packSmall(bytes);
  auto& compressor = compressors_.at(static_cast<std::size_t>(level));
  if (!compressor) compressor.reset(libdeflate_alloc_compressor(level));
  if (!compressor) throw std::bad_alloc();
  // What cannot be made smaller is deflate's own kind of stored, a few bytes larger.
  const std::size_t most = libdeflate_deflate_compress_bound(compressor.get(), bytes.size());
  const auto buffer = std::make_unique_for_overwrite<char[]>(most);
  const std::size_t length =
      libdeflate_deflate_compress(compressor.get(), bytes.data(), bytes.size(), buffer.get(), most);
  return {buffer.get(), buffer.get() + length};
}

}  // namespace skv
