#include "platform/zip/archive_file.h"

#include <unistd.h>

#include <array>
#include <cstring>
#include <limits>

#include "platform/disk/native_calls.h"

namespace skv {

std::string zipErrorText(int code) {
  zip_error_t error;
  zip_error_init_with_code(&error, code);
  std::string text = zip_error_strerror(&error);
  zip_error_fini(&error);
  return text;
}

Outcome entryFailure(const std::string& archive, const std::string& entry,
                     const std::string& what) {
  return Outcome::withText(err::zip, "\"" + entry + "\" in \"" + archive + "\" " + what + ".");
}

Result<std::shared_ptr<const ArchiveFile>> ArchiveFile::open(const std::string& native,
                                                             std::string shown) {
  // Not waiting for the other end of a pipe.
  Descriptor file = openFile(native, O_RDONLY | O_NONBLOCK | O_NOCTTY);
  struct stat status {};
  if (!file.valid() || ::fstat(file.get(), &status) != 0) return systemFailure(errno, shown);
  if (!S_ISREG(status.st_mode)) return Outcome::failure(err::pathFileAccess, shown);
  return std::shared_ptr<const ArchiveFile>(new ArchiveFile(
      std::move(file), static_cast<std::uint64_t>(status.st_size), std::move(shown)));
}

std::int64_t ArchiveFile::read(std::uint64_t offset, std::span<char> bytes) const {
  if (offset > std::numeric_limits<off_t>::max() - bytes.size()) return 0;
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t got = retried([&] {
      return ::pread(file_.get(), bytes.data() + filled, bytes.size() - filled,
                     static_cast<off_t>(offset + filled));
    });
    if (got < 0) return -1;
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  return static_cast<std::int64_t>(filled);
}

// The archive file as libzip asks for it.
struct ZipReader::Source {
  const ArchiveFile& file;
  std::uint64_t position = 0;
  std::optional<std::uint64_t> firstRead = {}, lastRead = {};
  zip_error_t error = {};
};

zip_int64_t ZipReader::answer(void* user, void* data, zip_uint64_t length,
                              zip_source_cmd_t command) {
  auto& source = *static_cast<Source*>(user);
  switch (command) {
    case ZIP_SOURCE_OPEN:
      source.position = 0;
      return 0;
    case ZIP_SOURCE_CLOSE:
    case ZIP_SOURCE_ACCEPT_EMPTY:  // a file without bytes is no archive
      return 0;
    case ZIP_SOURCE_READ: {
      if (!source.firstRead) source.firstRead = source.position;
      source.lastRead = source.position;
      const std::int64_t got =
          source.file.read(source.position, {static_cast<char*>(data), length});
      if (got < 0)
        zip_error_set(&source.error, ZIP_ER_READ, errno);
      else
        source.position += static_cast<std::uint64_t>(got);
      return got;
    }
    case ZIP_SOURCE_SEEK: {
      const zip_int64_t position = zip_source_seek_compute_offset(
          source.position, source.file.length(), data, length, &source.error);
      if (position < 0) return -1;
      source.position = static_cast<std::uint64_t>(position);
      return 0;
    }
    case ZIP_SOURCE_TELL:
      return static_cast<zip_int64_t>(source.position);
    case ZIP_SOURCE_STAT: {
      auto& status = *static_cast<zip_stat_t*>(data);
      zip_stat_init(&status);
      status.size = source.file.length();
      status.valid = ZIP_STAT_SIZE;
      return sizeof status;
    }
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&source.error, data, length);
    case ZIP_SOURCE_FREE:
      zip_error_fini(&source.error);
      delete &source;
      return 0;
    case ZIP_SOURCE_SUPPORTS:
      return ZIP_SOURCE_SUPPORTS_SEEKABLE |
             ZIP_SOURCE_MAKE_COMMAND_BITMASK(ZIP_SOURCE_ACCEPT_EMPTY);
    default:
      zip_error_set(&source.error, ZIP_ER_OPNOTSUPP, 0);
      return -1;
  }
}

Result<ZipReader> ZipReader::open(const ArchiveFile& file) {
  const auto fails = [&](int code) {
    return Outcome::withText(
        err::zip, "\"" + file.shown() + "\" cannot be opened: " + zipErrorText(code) + ".");
  };
  auto state = std::make_unique<Source>(Source{file});
  zip_error_init(&state->error);
  Source* const tap = state.get();
  zip_source_t* const source = zip_source_function_create(answer, tap, nullptr);
  if (source == nullptr) return fails(ZIP_ER_MEMORY);
  static_cast<void>(state.release());  // the source's from here on
  zip_error_t error;
  zip_error_init(&error);
  ZipHandle archive(zip_open_from_source(source, ZIP_RDONLY, &error));
  const int code = zip_error_code_zip(&error);
  zip_error_fini(&error);
  if (!archive) {
    zip_source_free(source);
    // The file is there: what is missing to libzip is a field of an entry.
    return fails(code == ZIP_ER_NOENT ? ZIP_ER_INCONS : code);
  }
  return ZipReader(std::move(archive), file, tap);
}

std::optional<ZipReader::Place> ZipReader::place(zip_uint64_t index) const {
  // libzip first looks up the lengths in the local header, which stand at this place in it, and
  // then reads the data.
  constexpr std::uint64_t lengths = 26;
  constexpr std::array<char, 4> signature = {'P', 'K', '\x03', '\x04'};
  source_->firstRead.reset();
  zip_file_t* const entry = zip_fopen_index(archive_.get(), index, ZIP_FL_COMPRESSED);
  if (entry == nullptr) return std::nullopt;
  char byte = 0;
  const bool read = zip_fread(entry, &byte, 1) == 1;
  zip_fclose(entry);
  if (!read || !source_->firstRead || *source_->firstRead < lengths) return std::nullopt;
  const Place place{*source_->firstRead - lengths, *source_->lastRead};
  std::array<char, signature.size()> found{};
  if (place.data <= place.header || !file_->readAll(place.header, found) || found != signature)
    return std::nullopt;
  return place;
}

}  // namespace skv
