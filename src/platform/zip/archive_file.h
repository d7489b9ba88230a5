// An archive file that is open for reading, and libzip's handles on it.
#pragma once

#include <zip.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "base/outcome.h"
#include "platform/disk/os_error.h"

namespace skv {

struct ZipDiscard {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
using ZipHandle = std::unique_ptr<zip_t, ZipDiscard>;

std::string zipErrorText(int code);

// The failure of an entry, in words that name it and its archive.
Outcome entryFailure(const std::string& archive, const std::string& entry, const std::string& what);

// The bytes of one file, the same ones from the listing of an archive to the end of its extraction,
// whatever happens to its name meanwhile. May be read from several threads.
class ArchiveFile {
 public:
  // `shown`: its path for messages.
  static Result<std::shared_ptr<const ArchiveFile>> open(const std::string& native,
                                                         std::string shown);

  const std::string& shown() const { return shown_; }
  std::uint64_t length() const { return length_; }
  // Up to bytes.size() bytes; fewer only at the file's end, -1 with errno on a failure.
  std::int64_t read(std::uint64_t offset, std::span<char> bytes) const;
  bool readAll(std::uint64_t offset, std::span<char> bytes) const {
    return read(offset, bytes) == static_cast<std::int64_t>(bytes.size());
  }

 private:
  ArchiveFile(Descriptor file, std::uint64_t length, std::string shown)
      : file_(std::move(file)), length_(length), shown_(std::move(shown)) {}

  Descriptor file_;
  std::uint64_t length_;
  std::string shown_;
};

// libzip's handle on an archive file, for one thread. The file must outlive it.
class ZipReader {
 public:
  static Result<ZipReader> open(const ArchiveFile& file);

  zip_t* get() const { return archive_.get(); }

  // Where an entry lies in the file. libzip keeps that to itself, so it is taken from what libzip
  // reads when the entry is opened: what is checked by this is what is unpacked.
  struct Place {
    std::uint64_t header = 0, data = 0;
  };
  // None for an entry without a local header there. Not for entries whose packed size is 0.
  std::optional<Place> place(zip_uint64_t index) const;

 private:
  struct Source;
  static zip_int64_t answer(void* user, void* data, zip_uint64_t length, zip_source_cmd_t command);

  ZipReader(ZipHandle archive, const ArchiveFile& file, Source* source)
      : archive_(std::move(archive)), file_(&file), source_(source) {}

  ZipHandle archive_;
  const ArchiveFile* file_;
  Source* source_;  // the archive's
};

// What a library throws ends here as an outcome.
template <class Work>
Outcome guarded(const std::string& shown, Work&& work) {
  try {
    return work();
  } catch (const std::exception& failure) {
    return Outcome::withText(err::zip,
                             "\"" + shown + "\" cannot be processed: " + failure.what() + ".");
  }
}

}  // namespace skv
