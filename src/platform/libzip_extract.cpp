#include "platform/libzip_extract.h"

#include <libdeflate.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <thread>

#include "base/paths.h"
#include "platform/libzip_names.h"

namespace skv {

namespace {

// Entries up to this size are unpacked in memory, larger ones piece by piece:
// what the two workers hold together stays flat whatever the archive.
constexpr std::uint64_t wholeSize = std::uint64_t{6} << 20U;
constexpr std::size_t pieceSize = std::size_t{256} << 10U;
constexpr unsigned workers = 2;

struct Target {
  std::size_t entry; // place in the archive's directory
  std::string path;  // Windows path of the file
};

struct Plan {
  std::vector<std::string> folders; // each after the one above it
  std::vector<Target> files;
  std::uint64_t bytes = 0;
};

// Where every entry goes. Nothing is written before all of them have a place.
Result<Plan> planExtraction(const Extraction &job) {
  Plan plan;
  const std::string root = withBackslash(job.folder);
  std::set<std::string> folders; // in upper case
  std::map<std::string, std::size_t>
      fileAt; // upper case to its place in plan.files
  for (const std::size_t place : job.chosen) {
    const ArchiveEntry &entry = (*job.entries)[place];
    const auto fails = [&](const std::string &what) {
      return entryFailure(job.shown, entry.Filename, what);
    };
    auto elements = entryPath(entry.Filename);
    if (!elements.ok())
      return fails(elements.outcome().description());
    std::vector<std::string> path = std::move(elements).value();
    const bool folder = isFolderName(entry.Filename);
    std::string name;
    if (!folder) {
      if (path.empty())
        return fails("has no name");
      name = std::move(path.back());
      path.pop_back();
    }
    std::string at = root;
    for (const std::string &element : path) {
      at += element;
      if (fileAt.contains(upper(at)))
        return fails("needs a folder where another entry is a file");
      if (folders.insert(upper(at)).second)
        plan.folders.push_back(at);
      at += '\\';
    }
    if (folder)
      continue;
    const std::string file = at + name;
    if (folders.contains(upper(file)))
      return fails("is a file where another entry needs a folder");
    // Of two entries with one name, in whatever letters, the later one is the
    // file.
    const auto [known, isNew] =
        fileAt.try_emplace(upper(file), plan.files.size());
    if (isNew)
      plan.files.push_back({place, file});
    else
      plan.files[known->second].entry = place;
  }
  for (const Target &target : plan.files)
    plan.bytes += (*job.entries)[target.entry].size;
  return plan;
}

struct DecompressorCloser {
  void operator()(libdeflate_decompressor *one) const {
    libdeflate_free_decompressor(one);
  }
};
struct ZipFileCloser {
  void operator()(zip_file_t *file) const { zip_fclose(file); }
};
using ZipFile = std::unique_ptr<zip_file_t, ZipFileCloser>;

// One thread's view of the archive, and its buffers.
class Unpacker {
public:
  Unpacker(FileSystem &files, const Extraction &job)
      : files_(files), job_(job), inflater_(libdeflate_alloc_decompressor()) {}

  Outcome unpack(const Target &target, std::atomic<std::uint64_t> &done) {
    if (!archive_) {
      auto opened = openZip(job_.native, job_.shown);
      if (!opened.ok())
        return opened.outcome();
      archive_ = std::move(opened).value();
    }
    const ArchiveEntry &entry = (*job_.entries)[target.entry];
    auto file = files_.createFile(target.path);
    if (!file.ok())
      return named(entry, file.outcome());
    const bool whole =
        (entry.method == ZIP_CM_DEFLATE || entry.method == ZIP_CM_STORE) &&
        entry.size <= wholeSize && entry.packed <= wholeSize;
    Outcome unpacked = whole ? unpackWhole(target, entry, *file.value())
                             : unpackPieces(target, entry, *file.value(), done);
    if (!unpacked.ok())
      return unpacked;
    if (whole)
      done += entry.size;
    Outcome made = file.value()->commit(entry.modified);
    return made.ok() ? made : named(entry, made);
  }

private:
  // A failure of the disk, with the entry that met it.
  Outcome named(const ArchiveEntry &entry, const Outcome &failure) const {
    return Outcome::withText(failure.number(),
                             failure.description() + " (while unpacking \"" +
                                 entry.Filename + "\" from \"" + job_.shown +
                                 "\")");
  }
  Outcome fails(const ArchiveEntry &entry, const char *what) const {
    return entryFailure(job_.shown, entry.Filename, what);
  }

  Outcome unpackWhole(const Target &target, const ArchiveEntry &entry,
                      FileWriter &file) {
    const ZipFile raw(
        zip_fopen_index(archive_.get(), target.entry, ZIP_FL_COMPRESSED));
    if (!raw)
      return fails(entry, "cannot be read");
    packed_.resize(entry.packed);
    if (!readExactly(*raw, packed_))
      return fails(entry, "is corrupt: its data ends too soon");
    std::span<const char> content(packed_);
    if (entry.method == ZIP_CM_DEFLATE) {
      content_.resize(entry.size);
      std::size_t length = 0;
      // A buffer of no bytes is no buffer to the library.
      char none = 0;
      const auto result = libdeflate_deflate_decompress(
          inflater_.get(), packed_.data(), packed_.size(),
          content_.empty() ? &none : content_.data(), content_.size(), &length);
      if (result == LIBDEFLATE_INSUFFICIENT_SPACE)
        return fails(entry, "is larger than its header says");
      if (result != LIBDEFLATE_SUCCESS || length != content_.size())
        return fails(entry, "is corrupt");
      content = content_;
    } else if (packed_.size() != entry.size) {
      return fails(entry,
                   "is corrupt: it has not the size that its header says");
    }
    if (libdeflate_crc32(0, content.data(), content.size()) != entry.crc)
      return fails(entry, "is corrupt: its check sum is wrong");
    Outcome written = file.write(content);
    return written.ok() ? written : named(entry, written);
  }

  Outcome unpackPieces(const Target &target, const ArchiveEntry &entry,
                       FileWriter &file, std::atomic<std::uint64_t> &done) {
    const ZipFile data(zip_fopen_index(archive_.get(), target.entry, 0));
    if (!data)
      return fails(entry, "cannot be read");
    content_.resize(pieceSize);
    std::uint64_t length = 0;
    std::uint32_t crc = 0;
    for (;;) {
      const zip_int64_t got =
          zip_fread(data.get(), content_.data(), content_.size());
      if (got < 0)
        return fails(entry, "is corrupt");
      if (got == 0)
        break;
      const auto count = static_cast<std::size_t>(got);
      length += count;
      if (length > entry.size)
        return fails(entry, "is larger than its header says");
      crc = libdeflate_crc32(crc, content_.data(), count);
      const Outcome written = file.write({content_.data(), count});
      if (!written.ok())
        return named(entry, written);
      done += count;
      if (stop && stop->load())
        return Outcome::withText(err::cancelled, "");
    }
    if (length != entry.size || crc != entry.crc)
      return fails(entry, "is corrupt");
    return {};
  }

  static bool readExactly(zip_file_t &file, std::vector<char> &bytes) {
    for (std::size_t filled = 0; filled < bytes.size();) {
      const zip_int64_t got =
          zip_fread(&file, bytes.data() + filled, bytes.size() - filled);
      if (got <= 0)
        return false;
      filled += static_cast<std::size_t>(got);
    }
    return true;
  }

  FileSystem &files_;
  const Extraction &job_;
  ZipHandle archive_; // each thread has its own: libzip's is for one at a time
  std::unique_ptr<libdeflate_decompressor, DecompressorCloser> inflater_;
  std::vector<char> packed_, content_;

public:
  const std::atomic<bool> *stop = nullptr; // ends a long entry early
};

// Hands the files out to the workers, in order, until one fails.
class Crew {
public:
  Crew(FileSystem &files, const Extraction &job, const Plan &plan)
      : files_(files), job_(job), plan_(plan) {
    for (unsigned i = 0; i < workers; ++i)
      threads_.emplace_back([this] { work(); });
  }
  ~Crew() { join(); }
  Crew(const Crew &) = delete;
  Crew &operator=(const Crew &) = delete;

  Outcome watch(const std::function<void(int)> &progress) {
    constexpr auto look = std::chrono::milliseconds(20);
    for (;;) {
      {
        std::unique_lock lock(mutex_);
        if (ended_.wait_for(lock, look,
                            [this] { return finished_ == workers; }))
          break;
      }
      progress(percent());
    }
    join();
    return failure_;
  }

private:
  int percent() const {
    constexpr double most = 99; // the last one is for the end of the job
    if (plan_.bytes == 0)
      return 0;
    const double part =
        static_cast<double>(done_.load()) / static_cast<double>(plan_.bytes);
    return static_cast<int>(std::min(most, part * 100));
  }

  void work() {
    Unpacker unpacker(files_, job_);
    unpacker.stop = &stop_;
    for (;;) {
      const std::size_t next = next_++;
      if (next >= plan_.files.size() || stop_)
        break;
      Outcome outcome = unpacker.unpack(plan_.files[next], done_);
      if (outcome.ok())
        continue;
      const std::scoped_lock lock(mutex_);
      if (failure_.ok() && !stop_)
        failure_ = std::move(outcome);
      stop_ = true;
    }
    {
      const std::scoped_lock lock(mutex_);
      ++finished_;
    }
    ended_.notify_one();
  }

  void join() {
    stop_ = stop_ || !threads_.empty();
    for (std::thread &thread : threads_)
      thread.join();
    threads_.clear();
  }

  FileSystem &files_;
  const Extraction &job_;
  const Plan &plan_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<std::uint64_t> done_ = 0;
  std::atomic<bool> stop_ = false;
  std::mutex mutex_;
  std::condition_variable ended_;
  unsigned finished_ = 0;
  Outcome failure_;
  std::vector<std::thread> threads_;
};

} // namespace

Outcome extractEntries(FileSystem &files, const Extraction &job,
                       const std::function<void(int percent)> &progress) {
  const auto plan = planExtraction(job);
  if (!plan.ok())
    return plan.outcome();
  for (const std::string &folder : plan.value().folders) {
    const Outcome made = files.makeFolder(folder);
    const auto stands =
        made.ok() ? Result<Attributes>(Attributes{}) : files.attributes(folder);
    if (!made.ok() && !(stands.ok() && stands.value().folder))
      return Outcome::withText(made.number(), made.description() +
                                                  " (while unpacking \"" +
                                                  job.shown + "\")");
  }
  return Crew(files, job, plan.value()).watch(progress);
}

} // namespace skv
