#include "platform/libzip_add.h"

#include <libdeflate.h>
#include <unistd.h>
#include <zip.h>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/libzip_archive.h"
#include "platform/native_calls.h"

namespace skv {

namespace {

constexpr unsigned workers = 2;
// Files up to this size are packed in memory, ahead of the writing; larger ones
// while it goes on.
constexpr std::uint64_t wholeSize = std::uint64_t{32} << 20U;
// What may lie packed and waiting.
constexpr std::uint64_t mostWaiting = std::uint64_t{48} << 20U;

// The library's levels go on where zlib's end; these give zlib's sizes in a
// fraction of its time.
int libraryLevel(int level) { return level >= 9 ? 9 : std::max(level, 1); }

struct CompressorCloser {
  void operator()(libdeflate_compressor *one) const {
    libdeflate_free_compressor(one);
  }
};

struct Packed {
  Outcome outcome;
  std::vector<char> data;
  std::uint64_t size = 0; // unpacked
  std::uint32_t crc = 0;
  bool deflated = false;
};

// Packs the files in their order on several threads, some way ahead of whoever
// takes them.
class PackAhead {
public:
  PackAhead(const FileSystem &files, int level)
      : files_(files), level_(level) {}
  ~PackAhead() {
    {
      const std::scoped_lock lock(mutex_);
      stop_ = true;
    }
    changed_.notify_all();
    for (std::thread &thread : threads_)
      thread.join();
  }
  PackAhead(const PackAhead &) = delete;
  PackAhead &operator=(const PackAhead &) = delete;

  // Windows paths; each is later taken by its place here.
  std::size_t add(std::string path) {
    paths_.push_back(std::move(path));
    return paths_.size() - 1;
  }
  void start() {
    for (unsigned i = 0; i < workers; ++i)
      threads_.emplace_back([this] { work(); });
  }
  // Waits for the file. It is good until drop().
  const Packed &take(std::size_t place) {
    std::unique_lock lock(mutex_);
    wanted_ = std::max(wanted_, place);
    changed_.notify_all();
    changed_.wait(lock, [&] { return ready_.contains(place); });
    return ready_.at(place);
  }
  void drop(std::size_t place) {
    const std::scoped_lock lock(mutex_);
    const auto found = ready_.find(place);
    if (found == ready_.end())
      return;
    waiting_ -= found->second.data.size();
    ready_.erase(found);
    changed_.notify_all();
  }

private:
  void work() {
    const std::unique_ptr<libdeflate_compressor, CompressorCloser> compressor(
        libdeflate_alloc_compressor(libraryLevel(level_)));
    for (;;) {
      std::size_t place = 0;
      {
        std::unique_lock lock(mutex_);
        // The file that is waited for is always packed, however much lies
        // ready.
        changed_.wait(lock, [this] {
          return stop_ || next_ >= paths_.size() || waiting_ < mostWaiting ||
                 next_ <= wanted_;
        });
        if (stop_ || next_ >= paths_.size())
          return;
        place = next_++;
      }
      Packed packed = pack(paths_[place], compressor.get());
      const std::scoped_lock lock(mutex_);
      waiting_ += packed.data.size();
      ready_.emplace(place, std::move(packed));
      changed_.notify_all();
    }
  }

  Packed pack(const std::string &path,
              libdeflate_compressor *compressor) const {
    Packed packed;
    auto content = files_.readFile(path);
    if (!content.ok()) {
      packed.outcome = content.outcome();
      return packed;
    }
    const std::string &bytes = content.value();
    packed.size = bytes.size();
    packed.crc = libdeflate_crc32(0, bytes.data(), bytes.size());
    if (level_ > 0 && !bytes.empty()) {
      // Only what gets smaller is worth unpacking.
      packed.data.resize(bytes.size());
      const std::size_t length = libdeflate_deflate_compress(
          compressor, bytes.data(), bytes.size(), packed.data.data(),
          packed.data.size() - 1);
      packed.deflated = length != 0;
      packed.data.resize(length);
      packed.data.shrink_to_fit();
    }
    if (!packed.deflated)
      packed.data.assign(bytes.begin(), bytes.end());
    return packed;
  }

  const FileSystem &files_;
  const int level_;
  std::vector<std::string> paths_;
  std::vector<std::thread> threads_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<std::size_t, Packed> ready_;
  std::uint64_t waiting_ = 0; // bytes in ready_
  std::size_t next_ = 0, wanted_ = 0;
  bool stop_ = false;
};

// An entry's data as libzip asks for it: packed already, so that it is stored
// as it comes.
struct PackedSource {
  PackAhead &ahead;
  std::size_t place;
  Outcome &failure; // the job's
  std::size_t read = 0;
};

zip_int64_t answerLibzip(void *user, void *data, zip_uint64_t length,
                         zip_source_cmd_t command) {
  auto &source = *static_cast<PackedSource *>(user);
  switch (command) {
  case ZIP_SOURCE_OPEN:
    source.read = 0;
    return 0;
  case ZIP_SOURCE_READ: {
    const Packed &packed = source.ahead.take(source.place);
    const std::size_t count = std::min(static_cast<std::size_t>(length),
                                       packed.data.size() - source.read);
    if (count > 0)
      std::memcpy(data, packed.data.data() + source.read, count);
    source.read += count;
    return static_cast<zip_int64_t>(count);
  }
  case ZIP_SOURCE_CLOSE:
    source.ahead.drop(source.place);
    return 0;
  case ZIP_SOURCE_STAT: {
    const Packed &packed = source.ahead.take(source.place);
    if (!packed.outcome.ok()) {
      source.failure = packed.outcome;
      return -1;
    }
    auto &status = *static_cast<zip_stat_t *>(data);
    zip_stat_init(&status);
    status.size = packed.size;
    status.comp_size = packed.data.size();
    status.crc = packed.crc;
    status.comp_method = packed.deflated ? ZIP_CM_DEFLATE : ZIP_CM_STORE;
    status.valid = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_CRC |
                   ZIP_STAT_COMP_METHOD;
    return sizeof(zip_stat_t);
  }
  case ZIP_SOURCE_ERROR: {
    const int codes[2] = {ZIP_ER_READ, EIO};
    if (length < sizeof codes)
      return -1;
    std::memcpy(data, codes, sizeof codes);
    return sizeof codes;
  }
  case ZIP_SOURCE_FREE:
    delete &source;
    return 0;
  case ZIP_SOURCE_SUPPORTS:
    return zip_source_make_command_bitmap(
        ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
        ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
  default:
    return -1;
  }
}

// The archive on its way: a hidden file beside its target.
class NewArchive {
public:
  NewArchive(FileSystem &files, std::string target)
      : files_(files), target_(std::move(target)) {
    const auto end = target_.rfind('\\') + 1;
    hidden_ = target_.substr(0, end) + ".skv-" + target_.substr(end) + ".tmp";
  }
  ~NewArchive() {
    if (!hidden_.empty())
      files_.deleteFile(hidden_).skipped();
  }
  NewArchive(const NewArchive &) = delete;
  NewArchive &operator=(const NewArchive &) = delete;

  const std::string &hidden() const { return hidden_; }
  Outcome publish() {
    const auto native = files_.nativePath(hidden_);
    if (!native.ok())
      return native.outcome();
    const Descriptor file = openFile(native.value(), O_RDONLY);
    if (!file.valid() || ::fsync(file.get()) != 0)
      return systemFailure(errno, target_);
    Outcome moved = files_.moveFile(hidden_, target_);
    if (moved.ok())
      hidden_.clear();
    return moved;
  }

private:
  FileSystem &files_;
  const std::string target_;
  std::string hidden_;
};

class Packer {
public:
  Packer(FileSystem &files, const CodePage &systemPage, const Packing &job)
      : files_(files), systemPage_(systemPage), job_(job),
        ahead_(files, job.level) {}

  Outcome run(const std::function<void(int)> &progress) {
    NewArchive file(files_, job_.archive);
    files_.deleteFile(file.hidden()).skipped();
    const auto native = files_.nativePath(file.hidden());
    if (!native.ok())
      return native.outcome();
    int code = 0;
    ZipHandle archive(
        zip_open(native.value().c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code));
    if (!archive)
      return fails(code);
    for (const std::string &name : job_.names) {
      const Outcome added = add(*archive, name);
      if (!added.ok())
        return added;
    }
    if (job_.names.empty())
      return Outcome::withText(err::zip, "There is nothing to pack.");
    ahead_.start();
    progress_ = &progress;
    constexpr double step = 0.01;
    zip_register_progress_callback_with_state(
        archive.get(), step,
        [](zip_t *, double part, void *user) {
          (*static_cast<Packer *>(user)->progress_)(
              static_cast<int>(part * 100));
        },
        nullptr, this);
    if (zip_close(archive.get()) != 0) {
      if (!failure_.ok())
        return failure_;
      zip_error_t *error = zip_get_error(archive.get());
      const int system = zip_error_system_type(error) == ZIP_ET_SYS
                             ? zip_error_code_system(error)
                             : 0;
      if (system != 0)
        return systemFailure(system, job_.archive);
      return fails(zip_error_code_zip(error));
    }
    static_cast<void>(archive.release()); // closed, and gone with it
    return file.publish();
  }

private:
  Outcome fails(int code) const {
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    std::string text = zip_error_strerror(&error);
    zip_error_fini(&error);
    return Outcome::withText(err::zip, "\"" + job_.archive +
                                           "\" cannot be made: " + text + ".");
  }

  Outcome add(zip_t &archive, const std::string &name) {
    const std::string path = job_.folder + name;
    const auto length = files_.fileLength(path);
    if (!length.ok())
      return length.outcome();
    const auto modified = files_.modified(path);
    if (!modified.ok())
      return modified.outcome();

    const bool whole = length.value() <= wholeSize;
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t *source = nullptr;
    if (whole) {
      source = zip_source_function_create(
          answerLibzip, new PackedSource{ahead_, ahead_.add(path), failure_},
          &error);
    } else if (const auto native = files_.nativePath(path); native.ok()) {
      source = zip_source_file_create(native.value().c_str(), 0, -1, &error);
    }
    const int code = zip_error_code_zip(&error);
    zip_error_fini(&error);
    if (source == nullptr)
      return fails(code);

    // Names that the system's page holds stay 8-bit text, as every program of
    // the time reads them.
    const std::string bytes = systemPage_.encode(name);
    const bool fits = systemPage_.decode(bytes) == name;
    const zip_int64_t index =
        zip_file_add(&archive, fits ? bytes.c_str() : name.c_str(), source,
                     fits ? ZIP_FL_ENC_RAW : ZIP_FL_ENC_UTF_8);
    if (index < 0) {
      zip_source_free(source);
      return fails(zip_error_code_zip(zip_get_error(&archive)));
    }
    const auto at = static_cast<zip_uint64_t>(index);
    if (!whole)
      zip_set_file_compression(&archive, at,
                               job_.level == 0 ? ZIP_CM_STORE : ZIP_CM_DEFLATE,
                               static_cast<zip_uint32_t>(job_.level));
    setTime(archive, at, modified.value());
    return {};
  }

  // DOS knows even seconds of local time; the field beside it has the second in
  // UTC.
  static void setTime(zip_t &archive, zip_uint64_t index, FileTime time) {
    constexpr zip_uint16_t extendedTimestamp = 0x5455;
    zip_file_set_mtime(&archive, index, time.seconds, 0);
    std::array<zip_uint8_t, 5> field{1};
    const auto seconds = static_cast<std::uint32_t>(time.seconds);
    for (std::size_t i = 0; i < 4; ++i)
      field[i + 1] = static_cast<zip_uint8_t>(seconds >> (8 * i));
    zip_file_extra_field_set(&archive, index, extendedTimestamp,
                             ZIP_EXTRA_FIELD_NEW, field.data(), field.size(),
                             ZIP_FL_LOCAL | ZIP_FL_CENTRAL);
  }

  FileSystem &files_;
  const CodePage &systemPage_;
  const Packing &job_;
  const std::function<void(int)> *progress_ = nullptr;
  Outcome failure_;
  PackAhead ahead_;
};

} // namespace

Outcome packFiles(FileSystem &files, const CodePage &systemPage,
                  const Packing &job,
                  const std::function<void(int percent)> &progress) {
  return Packer(files, systemPage, job).run(progress);
}

} // namespace skv
