#include "platform/zip/archive_file.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include "platform/disk/native_calls.h"

namespace skv {

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

bool ArchiveFile::read(std::uint64_t offset, std::span<char> bytes) const {
  if (offset > std::numeric_limits<off_t>::max() - bytes.size()) return false;
  for (std::size_t filled = 0; filled < bytes.size();) {
    const ssize_t got = retried([&] {
      return ::pread(file_.get(), bytes.data() + filled, bytes.size() - filled,
                     static_cast<off_t>(offset + filled));
    });
    if (got <= 0) return false;
    filled += static_cast<std::size_t>(got);
  }
  return true;
}

std::FILE* ArchiveFile::stream() const {
  std::FILE* const stream =
      std::fopen(("/proc/self/fd/" + std::to_string(file_.get())).c_str(), "rbe");
  // The local headers of many small entries come with one reading.
  constexpr std::size_t buffer = std::size_t{16} << 10U;
  if (stream != nullptr) std::setvbuf(stream, nullptr, _IOFBF, buffer);
  return stream;
}

namespace {

std::uint64_t littleEndian(std::span<const char> bytes, std::size_t at, std::size_t count) {
  std::uint64_t value = 0;
  for (std::size_t i = count; i-- > 0;)
    value = value << 8U | static_cast<unsigned char>(bytes[at + i]);
  return value;
}

// Whether the file's first bytes are those of an archive, a part of a split one included.
bool beginsAsArchive(const ArchiveFile& file) {
  std::array<char, 4> bytes{};
  if (!file.read(0, bytes)) return false;
  const std::string_view start(bytes.data(), bytes.size());
  return start == "PK\x03\x04" || start == "PK\x05\x06" || start == "PK\x07\x08" || start == "PK00";
}

// Whether an entry's header ends at `offset`, so that what begins there is the entry's data: the
// archive that was packed into another one, whose end is missing.
bool liesInAnother(const ArchiveFile& file, std::uint64_t offset) {
  constexpr std::size_t header = 30, longestName = 0xFFFF;
  std::vector<char> before(std::min<std::uint64_t>(header + longestName, offset));
  if (!file.read(offset - before.size(), before)) return true;
  const std::string_view text(before.data(), before.size());
  for (std::size_t at = text.find("PK\x03\x04"); at != std::string_view::npos;
       at = text.find("PK\x03\x04", at + 1))
    if (at + header <= text.size() &&
        at + header + littleEndian(before, at + 26, 2) + littleEndian(before, at + 28, 2) ==
            text.size())
      return true;
  return false;
}

// How many bytes stand before an archive whose offsets count from its own beginning: its directory
// ends where the record of the archive's end begins, and not where that record says. 0 for none.
std::uint64_t bytesBefore(const ArchiveFile& file) {
  constexpr std::size_t record = 22, longestComment = 0xFFFF, largeRecord = 56, largeLocator = 20;
  constexpr std::size_t room = record + longestComment + largeRecord + largeLocator;
  std::vector<char> end(std::min<std::uint64_t>(room, file.length()));
  const std::uint64_t endStart = file.length() - end.size();
  if (!file.read(endStart, end)) return 0;
  const std::string_view text(end.data(), end.size());
  std::size_t at = text.rfind("PK\x05\x06");
  while (at != std::string_view::npos && at + record > text.size())
    at = at == 0 ? std::string_view::npos : text.rfind("PK\x05\x06", at - 1);
  if (at == std::string_view::npos) return 0;
  std::uint64_t size = littleEndian(end, at + 12, 4), offset = littleEndian(end, at + 16, 4);
  if (at >= largeLocator + largeRecord &&
      text.substr(at - largeLocator).starts_with("PK\x06\x07")) {
    at -= largeLocator + largeRecord;
    size = littleEndian(end, at + 40, 8);
    offset = littleEndian(end, at + 48, 8);
  }
  const std::uint64_t directoryEnd = endStart + at;
  return size <= directoryEnd && offset <= directoryEnd - size ? directoryEnd - size - offset : 0;
}

}  // namespace

Result<ZipReader> ZipReader::open(const ArchiveFile& file) {
  auto plain = openAt(file, 0);
  if (plain.ok()) return plain;
  // Behind the beginning of one archive another one's end is that of an archive packed into it, and
  // the file half a download.
  const std::uint64_t before = beginsAsArchive(file) ? 0 : bytesBefore(file);
  if (before == 0 || liesInAnother(file, before)) return plain;
  auto behind = openAt(file, before);
  return behind.ok() ? std::move(behind) : std::move(plain);
}

Result<ZipReader> ZipReader::openAt(const ArchiveFile& file, std::uint64_t start) {
  zip_error_t error;
  zip_error_init(&error);
  const auto fails = [&] {
    // The file is there: what is missing to libzip is a field of an entry.
    if (zip_error_code_zip(&error) == ZIP_ER_NOENT) zip_error_set(&error, ZIP_ER_INCONS, 0);
    Outcome failure = Outcome::withText(
        err::zip, "\"" + file.shown() + "\" cannot be opened: " + zip_error_strerror(&error) + ".");
    zip_error_fini(&error);
    return failure;
  };
  // libzip takes a file without bytes for an archive without entries.
  zip_error_set(&error, ZIP_ER_NOZIP, 0);
  if (file.length() == 0) return fails();
  std::FILE* const stream = file.stream();
  zip_error_set(&error, ZIP_ER_OPEN, errno);
  if (stream == nullptr) return fails();
  zip_source_t* const source = zip_source_filep_create(stream, start, 0, &error);
  if (source == nullptr) {
    std::fclose(stream);
    return fails();
  }
  ZipHandle archive(zip_open_from_source(source, ZIP_RDONLY, &error));
  if (!archive) {
    zip_source_free(source);
    return fails();
  }
  zip_error_fini(&error);
  return ZipReader(std::move(archive), stream);
}

std::optional<std::uint64_t> ZipReader::dataOf(zip_uint64_t index) const {
  // Not told by libzip: it is where the stream stands when the first byte has been read.
  zip_file_t* const entry = zip_fopen_index(archive_.get(), index, ZIP_FL_COMPRESSED);
  if (entry == nullptr) return std::nullopt;
  char byte = 0;
  const bool read = zip_fread(entry, &byte, 1) == 1;
  zip_fclose(entry);
  const off_t after = ::ftello(stream_);
  if (!read || after <= 0) return std::nullopt;
  return static_cast<std::uint64_t>(after) - 1;
}

}  // namespace skv
