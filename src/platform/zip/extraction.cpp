#include "platform/zip/extraction.h"

#include <libdeflate.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/zip/foreign_methods.h"
#include "platform/zip/worker_threads.h"

namespace skv {

namespace {

using Target = ExtractionPlan::Target;

// Entries up to this size are unpacked in memory, larger ones piece by piece: what the two workers
// hold together stays flat whatever the archive.
constexpr std::uint64_t wholeSize = std::uint64_t{6} << 20U;
constexpr std::size_t pieceSize = std::size_t{256} << 10U;

bool isWhole(const ArchiveEntry& entry) {
  return (entry.method == ZIP_CM_DEFLATE || entry.method == ZIP_CM_STORE) &&
         entry.size <= wholeSize && entry.packed <= wholeSize;
}

// What a worker takes at once: files that lie together in the archive and go into one folder.
using Portion = std::span<const Target>;

std::vector<Portion> portionsOf(std::span<const Target> files) {
  constexpr std::size_t mostFiles = 64;
  constexpr std::uint64_t mostBytes = std::uint64_t{512} << 10U;
  std::vector<Portion> portions;
  for (std::size_t first = 0, next = 0; first < files.size(); first = next) {
    std::uint64_t bytes = 0, begin = 0, end = 0;
    for (; next < files.size() && next - first < mostFiles; ++next) {
      const ChosenEntry& entry = files[next].entry;
      const std::uint64_t dataEnd = entry.data + entry.entry->packed;
      bytes += entry.entry->size;
      if (begin == 0) begin = entry.data;
      const bool joins = isWhole(*entry.entry) && bytes <= mostBytes &&
                         files[next].folder == files[first].folder &&
                         (dataEnd == 0 || (entry.data >= end && dataEnd - begin <= mostBytes));
      if (next > first && !joins) break;
      end = std::max(end, dataEnd);
      if (!joins) {
        ++next;
        break;
      }
    }
    portions.push_back(files.subspan(first, next - first));
  }
  return portions;
}

struct DecompressorCloser {
  void operator()(libdeflate_decompressor* one) const { libdeflate_free_decompressor(one); }
};
struct ZipFileCloser {
  void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using ZipFile = std::unique_ptr<zip_file_t, ZipFileCloser>;

// What all workers share of the job's state.
struct Shared {
  std::atomic<std::uint64_t> done = 0;  // bytes
  std::atomic<bool> stop = false;
};

// One thread's view of the archive, and its buffers.
class Unpacker {
 public:
  Unpacker(FileSystem& files, const ArchiveFile& archive, Shared& shared)
      : files_(files), archive_(archive), shared_(shared) {}

  Outcome unpack(Portion portion) {
    const ArchiveEntry& first = *portion.front().entry.entry;
    return isWhole(first) ? unpackWhole(portion) : unpackPieces(portion.front());
  }

 private:
  // A failure of the disk, with the entry that met it.
  Outcome named(const ArchiveEntry& entry, const Outcome& failure) const {
    return Outcome::withText(failure.number(), failure.description() + " (while unpacking \"" +
                                                   entry.Filename + "\" from \"" +
                                                   archive_.shown() + "\")");
  }
  Outcome fails(const ArchiveEntry& entry, const std::string& what) const {
    return entryFailure(archive_.shown(), entry.Filename, what);
  }

  // All files before the first one that cannot be unpacked are written.
  Outcome unpackWhole(Portion portion) {
    if (!packed_) {
      packed_ = std::make_unique_for_overwrite<char[]>(wholeSize);
      content_ = std::make_unique_for_overwrite<char[]>(wholeSize);
      inflater_.reset(libdeflate_alloc_decompressor());
      if (!inflater_) throw std::bad_alloc();
    }
    std::uint64_t begin = UINT64_MAX, end = 0;
    for (const Target& target : portion) {
      if (target.entry.entry->packed == 0) continue;
      begin = std::min(begin, target.entry.data);
      end = std::max(end, target.entry.data + target.entry.entry->packed);
    }
    if (end > 0 && !archive_.read(begin, {packed_.get(), static_cast<std::size_t>(end - begin)}))
      return fails(*portion.front().entry.entry, "cannot be read");

    Outcome failure;
    std::vector<NewFile> files;
    std::size_t room = 0;
    for (const Target& target : portion) {
      const ArchiveEntry& entry = *target.entry.entry;
      const std::span<const char> packed(
          packed_.get() + (entry.packed == 0 ? 0 : target.entry.data - begin), entry.packed);
      const std::span<char> content(content_.get() + room, entry.size);
      failure = inflate(entry, packed, content);
      if (!failure.ok()) break;
      files.push_back({target.name,
                       entry.method == ZIP_CM_STORE ? packed : std::span<const char>(content),
                       entry.modified});
      room += content.size();
    }
    std::size_t made = 0;
    const Outcome written = files_.writeFiles(portion.front().folder, files, made);
    shared_.done += room;
    return written.ok() ? failure : named(*portion[made].entry.entry, written);
  }

  Outcome inflate(const ArchiveEntry& entry, std::span<const char> packed,
                  std::span<char> content) {
    std::span<const char> bytes = packed;
    if (entry.method == ZIP_CM_DEFLATE && entry.size + entry.packed > 0) {
      std::size_t length = 0;
      const auto result = libdeflate_deflate_decompress(
          inflater_.get(), packed.data(), packed.size(), content.data(), content.size(), &length);
      if (result == LIBDEFLATE_INSUFFICIENT_SPACE)
        return fails(entry, "is larger than its header says");
      if (result != LIBDEFLATE_SUCCESS || length != entry.size) return fails(entry, "is corrupt");
      bytes = content;
    }
    if (libdeflate_crc32(0, bytes.data(), bytes.size()) != entry.crc)
      return fails(entry, "is corrupt: its check sum is wrong");
    return {};
  }

  Outcome unpackPieces(const Target& target) {
    const ArchiveEntry& entry = *target.entry.entry;
    auto file = files_.createFile(target.folder + '\\' + target.name);
    if (!file.ok()) return named(entry, file.outcome());
    Outcome unpacked = isForeignMethod(entry.method) ? unpackForeign(target.entry, *file.value())
                                                     : unpackByLibzip(target.entry, *file.value());
    if (!unpacked.ok()) return unpacked;
    Outcome made = file.value()->commit(entry.modified);
    return made.ok() ? made : named(entry, made);
  }

  Outcome unpackForeign(const ChosenEntry& chosen, FileWriter& file) {
    const ArchiveEntry& entry = *chosen.entry;
    std::vector<char> packed(entry.packed);
    if (!archive_.read(chosen.data, packed)) return fails(entry, "cannot be read");
    ForeignStream stream(entry.method, packed, entry.size, entry.crc);
    packed = {};
    return writePieces(entry, file, "is corrupt",
                       [&](std::span<char> piece) { return stream.read(piece); });
  }

  Outcome unpackByLibzip(const ChosenEntry& chosen, FileWriter& file) {
    const ArchiveEntry& entry = *chosen.entry;
    if (!reader_) {
      auto opened = ZipReader::open(archive_);
      if (!opened.ok()) return opened.outcome();
      reader_ = std::make_unique<ZipReader>(std::move(opened).value());
    }
    const ZipFile data(zip_fopen_index(reader_->get(), chosen.index, 0));
    if (!data) return fails(entry, "cannot be read");
    return writePieces(entry, file, "is corrupt or cannot be read", [&](std::span<char> piece) {
      return zip_fread(data.get(), piece.data(), piece.size());
    });
  }

  // `next` fills a piece as far as it can; 0 is the end, -1 a failure.
  template <class Next>
  Outcome writePieces(const ArchiveEntry& entry, FileWriter& file, const char* fault, Next next) {
    if (!piece_) piece_ = std::make_unique_for_overwrite<char[]>(pieceSize);
    std::uint64_t length = 0;
    std::uint32_t crc = 0;
    while (!shared_.stop) {
      const std::int64_t got = next({piece_.get(), pieceSize});
      if (got < 0) return fails(entry, fault);
      const std::span<const char> bytes(piece_.get(), static_cast<std::size_t>(got));
      if (bytes.empty()) break;
      length += bytes.size();
      if (length > entry.size) return fails(entry, "is larger than its header says");
      crc = libdeflate_crc32(crc, bytes.data(), bytes.size());
      if (const Outcome written = file.write(bytes); !written.ok()) return named(entry, written);
      shared_.done += bytes.size();
    }
    if (length != entry.size || crc != entry.crc) return fails(entry, "is corrupt");
    return {};
  }

  FileSystem& files_;
  const ArchiveFile& archive_;
  Shared& shared_;
  std::unique_ptr<ZipReader> reader_;
  std::unique_ptr<libdeflate_decompressor, DecompressorCloser> inflater_;
  std::unique_ptr<char[]> packed_, content_, piece_;
};

// Hands the portions out to the workers, in order, until one fails.
class Crew {
 public:
  Crew(FileSystem& files, const ArchiveFile& archive, const ExtractionPlan& plan)
      : files_(files), archive_(archive), bytes_(plan.bytes), portions_(portionsOf(plan.files)) {
    startWorkers(threads_, portions_.size(), [this] { work(); });
  }
  ~Crew() {
    shared_.stop = true;
    join();
  }
  Crew(const Crew&) = delete;
  Crew& operator=(const Crew&) = delete;

  Outcome watch(const std::function<bool(int)>& progress) {
    constexpr auto look = std::chrono::milliseconds(20);
    if (threads_.empty()) work();
    for (;;) {
      {
        std::unique_lock lock(mutex_);
        if (ended_.wait_for(lock, look, [this] { return finished_ >= threads_.size(); })) break;
      }
      if (!progress(percent())) cancel();
    }
    join();
    if (thrown_) std::rethrow_exception(thrown_);
    return failure_;
  }

 private:
  int percent() const {
    if (bytes_ == 0) return 0;
    constexpr double whole = 100;
    return static_cast<int>(static_cast<double>(shared_.done) * whole /
                            static_cast<double>(bytes_));
  }

  void cancel() {
    const std::scoped_lock lock(mutex_);
    if (!shared_.stop) failure_ = Outcome::failure(err::cancelled);
    shared_.stop = true;
  }

  void work() {
    Unpacker unpacker(files_, archive_, shared_);
    while (!shared_.stop) {
      const std::size_t next = next_++;
      if (next >= portions_.size()) break;
      Outcome outcome;
      std::exception_ptr thrown;
      try {
        outcome = guarded(archive_.shown(), [&] { return unpacker.unpack(portions_[next]); });
      } catch (...) {
        thrown = std::current_exception();
      }
      if (outcome.ok() && !thrown) continue;
      const std::scoped_lock lock(mutex_);
      // What another worker left because of the stop is no failure.
      if (!shared_.stop) {
        failure_ = std::move(outcome);
        thrown_ = thrown;
      }
      shared_.stop = true;
    }
    const std::scoped_lock lock(mutex_);
    ++finished_;
    ended_.notify_one();
  }

  void join() {
    for (std::thread& thread : threads_) thread.join();
    threads_.clear();
  }

  FileSystem& files_;
  const ArchiveFile& archive_;
  const std::uint64_t bytes_;  // of all files
  const std::vector<Portion> portions_;
  Shared shared_;
  std::atomic<std::size_t> next_ = 0;
  std::mutex mutex_;
  std::condition_variable ended_;
  std::size_t finished_ = 0;  // workers
  Outcome failure_;
  std::exception_ptr thrown_;  // what is no std::exception is for the caller
  std::vector<std::thread> threads_;
};

}  // namespace

Outcome extractFiles(FileSystem& files, const ArchiveFile& archive, const ExtractionPlan& plan,
                     const std::function<bool(int percent)>& progress) {
  for (const std::string& folder : plan.folders) {
    const Outcome made = files.makeFolder(folder);
    if (made.ok()) continue;
    const auto stands = files.attributes(folder);
    // A link would lead what belongs into it to somewhere else.
    if (!stands.ok() || !stands.value().folder || files.isLink(folder))
      return Outcome::withText(
          made.number(), made.description() + " (while unpacking \"" + archive.shown() + "\")");
  }
  return Crew(files, archive, plan).watch(progress);
}

}  // namespace skv
