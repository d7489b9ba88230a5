#include "platform/zip/packing.h"

#include <zip.h>

#include <algorithm>
#include <array>
#include <exception>
#include <memory>
#include <new>
#include <utility>

#include "base/text.h"
#include "platform/zip/archive_file.h"
#include "platform/zip/archive_output.h"
#include "platform/zip/pack_ahead.h"

namespace skv {

namespace {

// What an entry's data needs of its job.
struct Job {
  const Packing& packing;
  const std::function<bool(int)>& progress;
  PackAhead ahead;
  Outcome failure;                       // the first one, in better words than libzip has
  std::exception_ptr thrown = {};        // what is no std::exception is for the caller
  std::vector<std::uint64_t> before{0};  // bytes before each entry, and of all
  int percent = 0;
  bool cancelled = false;

  void report() {
    if (!progress(percent)) cancelled = true;
  }
  static int isCancelled(zip_t*, void* user) { return static_cast<Job*>(user)->cancelled ? 1 : 0; }

  // libzip counts entries, and users wait for bytes.
  static void advanced(zip_t*, double part, void* user) {
    auto& job = *static_cast<Job*>(user);
    constexpr double whole = 100;
    const double entries = part * static_cast<double>(job.before.size() - 1);
    const auto entry = std::min(static_cast<std::size_t>(entries), job.before.size() - 2);
    const auto begin = static_cast<double>(job.before[entry]);
    const auto size = static_cast<double>(job.before[entry + 1]) - begin;
    const auto total = static_cast<double>(job.before.back());
    const double bytes = begin + (entries - static_cast<double>(entry)) * size;
    job.percent = total > 0 ? static_cast<int>(bytes / total * whole) : 0;
    // Nothing may be thrown through libzip.
    try {
      job.report();
    } catch (...) {
      if (!job.thrown) job.thrown = std::current_exception();
    }
  }
};

// An entry's data as libzip asks for it: packed already, so that libzip stores what it gets.
// Objects belong to their zip_source_t.
class PackedSource {
 public:
  // nullptr when there is no memory.
  static zip_source_t* create(Job& job, const std::string& name, std::size_t number) {
    auto entry = std::unique_ptr<PackedSource>(new PackedSource(job, name, number));
    zip_source_t* const source = zip_source_function_create(answer, entry.get(), nullptr);
    if (source != nullptr) static_cast<void>(entry.release());
    return source;
  }
  ~PackedSource() { zip_error_fini(&error_); }
  PackedSource(const PackedSource&) = delete;
  PackedSource& operator=(const PackedSource&) = delete;

 private:
  PackedSource(Job& job, const std::string& name, std::size_t number)
      : job_(job), name_(name), number_(number) {
    zip_error_init(&error_);
  }

  // Whether the file is there; a failure is noted.
  bool take() {
    if (std::exchange(taken_, true)) return file_.outcome.ok();
    try {
      file_ = job_.ahead.take(number_, [this] { job_.report(); });
    } catch (...) {
      if (!job_.thrown) job_.thrown = std::current_exception();
      file_.outcome = Outcome::failure(err::deviceIo);
    }
    packed_ = file_.data.size();
    if (file_.outcome.ok()) return true;
    zip_error_set(&error_, ZIP_ER_READ, EIO);
    if (job_.failure.ok())
      job_.failure = Outcome::withText(file_.outcome.number(),
                                       file_.outcome.description() + " (while packing \"" + name_ +
                                           "\" into \"" + job_.packing.archive + "\")");
    return false;
  }

  zip_int64_t read(std::span<char> bytes) {
    const std::size_t count = std::min(bytes.size(), file_.data.size() - read_);
    std::copy_n(file_.data.begin() + static_cast<std::ptrdiff_t>(read_), count, bytes.begin());
    read_ += count;
    return static_cast<zip_int64_t>(count);
  }

  void close() {
    file_.data = std::vector<char>();  // its memory as well
    read_ = 0;
  }

  static zip_int64_t answer(void* user, void* data, zip_uint64_t length, zip_source_cmd_t command) {
    auto& source = *static_cast<PackedSource*>(user);
    switch (command) {
      case ZIP_SOURCE_OPEN:
        return 0;
      case ZIP_SOURCE_READ:
        return source.read({static_cast<char*>(data), length});
      case ZIP_SOURCE_CLOSE:
        source.close();
        return 0;
      case ZIP_SOURCE_STAT: {  // before and after it reads
        if (!source.take()) return -1;
        auto& status = *static_cast<zip_stat_t*>(data);
        zip_stat_init(&status);
        status.size = source.file_.size;
        status.comp_size = source.packed_;
        status.crc = source.file_.crc;
        status.comp_method = source.file_.deflated ? ZIP_CM_DEFLATE : ZIP_CM_STORE;
        status.valid = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_CRC | ZIP_STAT_COMP_METHOD;
        return sizeof status;
      }
      case ZIP_SOURCE_ERROR:
        return zip_error_to_data(&source.error_, data, length);
      case ZIP_SOURCE_FREE:
        delete &source;
        return 0;
      case ZIP_SOURCE_SUPPORTS:
        return ZIP_SOURCE_SUPPORTS_READABLE | ZIP_SOURCE_MAKE_COMMAND_BITMASK(ZIP_SOURCE_SUPPORTS);
      default:
        zip_error_set(&source.error_, ZIP_ER_OPNOTSUPP, 0);
        return -1;
    }
  }

  Job& job_;
  const std::string name_;
  const std::size_t number_;
  zip_error_t error_{};
  bool taken_ = false;
  PackedFile file_;
  std::size_t packed_ = 0, read_ = 0;
};

class Packer {
 public:
  Packer(FileSystem& files, const Packing& packing, const std::function<bool(int)>& progress)
      : files_(files),
        packing_(packing),
        job_{packing, progress, PackAhead(files, packing.level), {}} {}

  Outcome run() {
    if (packing_.files.empty())
      return Outcome::withText(err::zip,
                               "There is nothing to pack into \"" + packing_.archive + "\".");
    if (const auto older = files_.attributes(packing_.archive);
        older.ok() && (older.value().readOnly || older.value().folder))
      return Outcome::failure(err::pathFileAccess, packing_.archive);
    const auto native = files_.nativePath(packing_.archive);
    if (!native.ok()) return native.outcome();
    ArchiveOutput output(native.value(), packing_.archive);
    if (!output.failure().ok()) return output.failure();
    if (Outcome written = write(output); !written.ok()) return written;
    return output.publish(packing_.replaces);
  }

 private:
  Outcome fails(zip_error_t& error) const {
    return Outcome::withText(err::zip, "\"" + packing_.archive + "\" cannot be made: " +
                                           zip_error_strerror(&error) + ".");
  }

  Outcome write(ArchiveOutput& output) {
    zip_source_t* const source = output.source();
    if (source == nullptr) throw std::bad_alloc();
    zip_error_t error;
    zip_error_init(&error);
    ZipHandle archive(zip_open_from_source(source, ZIP_CREATE | ZIP_TRUNCATE, &error));
    if (!archive) {
      zip_source_free(source);
      return fails(error);
    }
    for (const Packing::File& file : packing_.files)
      if (Outcome added = add(*archive, file); !added.ok()) return added;
    job_.ahead.start();
    zip_register_progress_callback_with_state(archive.get(), 0, Job::advanced, nullptr, &job_);
    zip_register_cancel_callback_with_state(archive.get(), Job::isCancelled, nullptr, &job_);
    const bool closed = zip_close(archive.get()) == 0;
    if (closed) static_cast<void>(archive.release());  // it is gone
    if (job_.thrown) std::rethrow_exception(job_.thrown);
    if (closed) return {};
    if (job_.cancelled) return Outcome::failure(err::cancelled);
    if (!job_.failure.ok()) return job_.failure;
    if (!output.failure().ok()) return output.failure();
    return fails(*zip_get_error(archive.get()));
  }

  Outcome add(zip_t& archive, const Packing::File& file) {
    job_.before.push_back(job_.before.back() + file.length);

    // What is too large to be held libzip packs itself.
    const bool large = file.length > PackAhead::largestFile;
    zip_source_t* source = nullptr;
    if (large) {
      const auto native = files_.nativePath(file.path);
      if (!native.ok()) return native.outcome();
      source = zip_source_file(&archive, native.value().c_str(), 0, 0);
    } else {
      source = PackedSource::create(job_, file.name, job_.ahead.add(file.path, file.length));
    }
    if (source == nullptr) throw std::bad_alloc();

    const zip_int64_t index = addNamed(archive, file.name, source);
    if (index < 0) {
      zip_source_free(source);
      return fails(*zip_get_error(&archive));
    }
    const auto at = static_cast<zip_uint64_t>(index);
    // Not told so, libzip would pack what is to be stored.
    const bool stored = packing_.level <= 0;
    if (stored || large)
      zip_set_file_compression(&archive, at, stored ? ZIP_CM_STORE : ZIP_CM_DEFLATE,
                               static_cast<zip_uint32_t>(std::max(packing_.level, 0)));
    // Of a DOS archive backslashes are taken for folders by more archivers than of others.
    constexpr zip_uint8_t dosHost = 0;
    constexpr zip_uint32_t dosArchive = 0x20;
    zip_file_set_external_attributes(&archive, at, 0, dosHost, dosArchive);
    setTime(archive, at, file.modified);
    return {};
  }

  // Marked as UTF-8 where it is more than ASCII: no 8-bit page is the same to all archivers.
  static zip_int64_t addNamed(zip_t& archive, const std::string& name, zip_source_t* source) {
    return zip_file_add(&archive, name.c_str(), source,
                        isUtf8(name) ? ZIP_FL_ENC_UTF_8 : ZIP_FL_ENC_RAW);
  }

  // DOS knows even seconds of local time; the field beside it has the second in UTC.
  static void setTime(zip_t& archive, zip_uint64_t index, FileTime time) {
    constexpr zip_uint16_t extendedTimestamp = 0x5455;
    zip_file_set_mtime(&archive, index, time.seconds, 0);
    if (time.seconds != static_cast<std::int32_t>(time.seconds)) return;
    std::array<zip_uint8_t, 5> field{1};
    const auto seconds = static_cast<std::uint32_t>(time.seconds);
    for (std::size_t i = 0; i < 4; ++i) field[i + 1] = static_cast<zip_uint8_t>(seconds >> (8 * i));
    zip_file_extra_field_set(&archive, index, extendedTimestamp, ZIP_EXTRA_FIELD_NEW, field.data(),
                             field.size(), ZIP_FL_LOCAL | ZIP_FL_CENTRAL);
  }

  FileSystem& files_;
  const Packing& packing_;
  Job job_;
};

}  // namespace

Outcome packFiles(FileSystem& files, const Packing& job,
                  const std::function<bool(int percent)>& progress) {
  return guarded(job.archive, [&] { return Packer(files, job, progress).run(); });
}

}  // namespace skv
