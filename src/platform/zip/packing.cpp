#include "platform/zip/packing.h"

#include <zip.h>

#include <algorithm>
#include <array>
#include <exception>
#include <memory>

#include "platform/zip/archive_file.h"
#include "platform/zip/archive_output.h"
#include "platform/zip/entry_names.h"
#include "platform/zip/pack_ahead.h"

namespace skv {

namespace {

// What an entry's data needs of its job.
struct Job {
  const Packing& packing;
  const std::function<void(int)>& progress;
  PackAhead ahead;
  Outcome failure;                    // the first one, in better words than libzip has
  std::exception_ptr thrown;          // what is no std::exception is for the caller
  std::uint64_t done = 0, total = 0;  // bytes

  void report() const {
    constexpr double whole = 100;
    progress(total == 0 ? 0
                        : static_cast<int>(static_cast<double>(done) * whole /
                                           static_cast<double>(total)));
  }
};

// Where libzip gets an entry's data from. Objects belong to their zip_source_t.
class EntrySource {
 public:
  EntrySource(Job& job, std::string name) : job_(job), name_(std::move(name)) {
    zip_error_init(&error_);
  }
  virtual ~EntrySource() { zip_error_fini(&error_); }
  EntrySource(const EntrySource&) = delete;
  EntrySource& operator=(const EntrySource&) = delete;

  static zip_source_t* create(std::unique_ptr<EntrySource> entry) {
    zip_source_t* const source = zip_source_function_create(answer, entry.get(), nullptr);
    if (source != nullptr) static_cast<void>(entry.release());
    return source;
  }

 protected:
  virtual Outcome open() = 0;
  virtual Outcome stat(zip_stat_t& status) = 0;
  virtual Result<std::size_t> read(std::span<char> bytes) = 0;
  virtual void close() = 0;

  Job& job_;

 private:
  // 0, or -1 with everything noted.
  zip_int64_t note(const Outcome& outcome) {
    if (outcome.ok()) return 0;
    zip_error_set(&error_, ZIP_ER_READ, EIO);
    if (job_.failure.ok())
      job_.failure =
          Outcome::withText(outcome.number(), outcome.description() + " (while packing \"" + name_ +
                                                  "\" into \"" + job_.packing.archive + "\")");
    return -1;
  }

  static zip_int64_t answer(void* user, void* data, zip_uint64_t length, zip_source_cmd_t command) {
    auto& source = *static_cast<EntrySource*>(user);
    // Nothing may be thrown through libzip.
    const auto guardedNote = [&](auto&& work) {
      try {
        return source.note(guarded(source.name_, work));
      } catch (...) {
        if (!source.job_.thrown) source.job_.thrown = std::current_exception();
        return source.note(Outcome::failure(err::deviceIo));
      }
    };
    switch (command) {
      case ZIP_SOURCE_OPEN:
        return guardedNote([&] { return source.open(); });
      case ZIP_SOURCE_READ: {
        zip_int64_t count = 0;
        const zip_int64_t failed = guardedNote([&] {
          const auto got = source.read({static_cast<char*>(data), length});
          if (got.ok()) count = static_cast<zip_int64_t>(got.value());
          return got.outcome();
        });
        return failed != 0 ? failed : count;
      }
      case ZIP_SOURCE_CLOSE:
        return guardedNote([&] {
          source.close();
          return Outcome();
        });
      case ZIP_SOURCE_STAT: {
        auto& status = *static_cast<zip_stat_t*>(data);
        zip_stat_init(&status);
        const zip_int64_t failed = guardedNote([&] { return source.stat(status); });
        return failed != 0 ? failed : static_cast<zip_int64_t>(sizeof status);
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

  const std::string name_;
  zip_error_t error_{};
};

// A file that is packed already when libzip asks for it: it is told so, and stores what it gets.
class PackedSource : public EntrySource {
 public:
  PackedSource(Job& job, const std::string& name, std::size_t number)
      : EntrySource(job, name), number_(number) {}

 private:
  Outcome open() override {
    read_ = 0;
    return {};
  }
  // libzip asks before and after it reads.
  Outcome stat(zip_stat_t& status) override {
    if (!taken_) {
      taken_ = true;  // even when it fails, as a file is handed out once
      file_ = job_.ahead.take(number_, [this] { job_.report(); });
      packed_ = file_.data.size();
    }
    status.size = file_.size;
    status.comp_size = packed_;
    status.crc = file_.crc;
    status.comp_method = file_.deflated ? ZIP_CM_DEFLATE : ZIP_CM_STORE;
    status.valid = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_CRC | ZIP_STAT_COMP_METHOD;
    return file_.outcome;
  }
  Result<std::size_t> read(std::span<char> bytes) override {
    const std::size_t count = std::min(bytes.size(), file_.data.size() - read_);
    std::copy_n(file_.data.begin() + static_cast<std::ptrdiff_t>(read_), count, bytes.begin());
    read_ += count;
    return count;
  }
  void close() override {
    job_.done += file_.size;
    job_.report();
    file_.data = std::vector<char>();  // its memory as well
    read_ = 0;
  }

  const std::size_t number_;
  bool taken_ = false;
  PackedFile file_;
  std::size_t packed_ = 0, read_ = 0;
};

// A file that is too large to be held, packed by libzip while it is read.
class LargeSource : public EntrySource {
 public:
  LargeSource(Job& job, const std::string& name, std::string native)
      : EntrySource(job, name), native_(std::move(native)), shown_(name) {}

 private:
  Outcome open() override {
    auto opened = ArchiveFile::open(native_, shown_);
    if (!opened.ok()) return opened.outcome();
    file_ = std::move(opened).value();
    read_ = 0;
    return {};
  }
  Outcome stat(zip_stat_t& status) override {
    // Closed, libzip takes what it has counted itself.
    if (file_) {
      status.size = file_->length();
      status.valid = ZIP_STAT_SIZE;
      return {};
    }
    const auto opened = ArchiveFile::open(native_, shown_);
    if (!opened.ok()) return opened.outcome();
    status.size = opened.value()->length();
    status.valid = ZIP_STAT_SIZE;
    return {};
  }
  Result<std::size_t> read(std::span<char> bytes) override {
    const std::int64_t got = file_->read(read_, bytes);
    if (got < 0) return systemFailure(errno, shown_);
    read_ += static_cast<std::uint64_t>(got);
    job_.done += static_cast<std::uint64_t>(got);
    job_.report();
    return static_cast<std::size_t>(got);
  }
  void close() override { file_.reset(); }

  const std::string native_, shown_;
  std::shared_ptr<const ArchiveFile> file_;
  std::uint64_t read_ = 0;
};

class Packer {
 public:
  Packer(FileSystem& files, const CodePage& systemPage, const Packing& packing,
         const std::function<void(int)>& progress)
      : files_(files),
        systemPage_(systemPage),
        packing_(packing),
        job_{packing, progress, PackAhead(files, packing.level), {}, {}} {}

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
    return output.publish();
  }

 private:
  Outcome fails(int code) const {
    return Outcome::withText(
        err::zip, "\"" + packing_.archive + "\" cannot be made: " + zipErrorText(code) + ".");
  }

  Outcome write(ArchiveOutput& output) {
    zip_source_t* const source = output.source();
    if (source == nullptr) return fails(ZIP_ER_MEMORY);
    zip_error_t error;
    zip_error_init(&error);
    ZipHandle archive(zip_open_from_source(source, ZIP_CREATE | ZIP_TRUNCATE, &error));
    const int code = zip_error_code_zip(&error);
    zip_error_fini(&error);
    if (!archive) {
      zip_source_free(source);
      return fails(code);
    }
    for (const Packing::File& file : packing_.files)
      if (Outcome added = add(*archive, file); !added.ok()) return added;
    job_.ahead.start();
    const bool closed = zip_close(archive.get()) == 0;
    if (closed) static_cast<void>(archive.release());  // it is gone
    if (job_.thrown) std::rethrow_exception(job_.thrown);
    if (closed) return {};
    if (!job_.failure.ok()) return job_.failure;
    if (!output.failure().ok()) return output.failure();
    return fails(zip_error_code_zip(zip_get_error(archive.get())));
  }

  Outcome add(zip_t& archive, const Packing::File& file) {
    const auto length = files_.fileLength(file.path);
    if (!length.ok()) return length.outcome();
    const auto modified = files_.modified(file.path);
    if (!modified.ok()) return modified.outcome();
    job_.total += length.value();

    const bool large = length.value() > PackAhead::largestFile;
    std::unique_ptr<EntrySource> entry;
    if (large) {
      const auto native = files_.nativePath(file.path);
      if (!native.ok()) return native.outcome();
      entry = std::make_unique<LargeSource>(job_, file.name, native.value());
    } else {
      entry = std::make_unique<PackedSource>(job_, file.name,
                                             job_.ahead.add(file.path, length.value()));
    }
    zip_source_t* const source = EntrySource::create(std::move(entry));
    if (source == nullptr) return fails(ZIP_ER_MEMORY);

    const zip_int64_t index = addNamed(archive, file.name, source);
    if (index < 0) {
      zip_source_free(source);
      return fails(zip_error_code_zip(zip_get_error(&archive)));
    }
    const auto at = static_cast<zip_uint64_t>(index);
    // Not told so, libzip would pack what is to be stored.
    const bool stored = packing_.level <= 0;
    if (stored || large)
      zip_set_file_compression(&archive, at, stored ? ZIP_CM_STORE : ZIP_CM_DEFLATE,
                               static_cast<zip_uint32_t>(std::max(packing_.level, 0)));
    constexpr zip_uint32_t dosArchive = 0x20;
    zip_file_set_external_attributes(&archive, at, 0, ntfsHost, dosArchive);
    setTime(archive, at, modified.value());
    return {};
  }

  // Names that the system's page holds stay 8-bit text, as every program of the time reads them.
  zip_int64_t addNamed(zip_t& archive, const std::string& name, zip_source_t* source) const {
    const std::string bytes = systemPage_.encode(name);
    const bool plain = bytes == name || decodeEntryName({bytes, ntfsHost, {}}, systemPage_) == name;
    return zip_file_add(&archive, plain ? bytes.c_str() : name.c_str(), source,
                        plain ? ZIP_FL_ENC_RAW : ZIP_FL_ENC_UTF_8);
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
  const CodePage& systemPage_;
  const Packing& packing_;
  Job job_;
};

}  // namespace

Outcome packFiles(FileSystem& files, const CodePage& systemPage, const Packing& job,
                  const std::function<void(int percent)>& progress) {
  return guarded(job.archive, [&] { return Packer(files, systemPage, job, progress).run(); });
}

}  // namespace skv
