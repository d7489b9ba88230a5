// An archive file that is open for reading, and libzip's handles on it.
#pragma once

#include <zip.h>

#include <cstdint>
#include <cstdio>
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
  // Whether all of the bytes are there.
  bool read(std::uint64_t offset, std::span<char> bytes) const;
  // A stream of its own on the same file; nullptr with errno on a failure.
  std::FILE* stream() const;

 private:
  ArchiveFile(Descriptor file, std::uint64_t length, std::string shown)
      : file_(std::move(file)), length_(length), shown_(std::move(shown)) {}

  Descriptor file_;
  std::uint64_t length_;
  std::string shown_;
};

// libzip's handle on an archive file, for one thread.
class ZipReader {
 public:
  // An archive behind other bytes (one that unpacks itself) is found whether its offsets count from
  // the file's beginning or from its own.
  static Result<ZipReader> open(const ArchiveFile& file);

  zip_t* get() const { return archive_.get(); }
  // Where an entry's packed bytes begin in the file. None for one whose data is not there, or
  // empty.
  std::optional<std::uint64_t> dataOf(zip_uint64_t index) const;

 private:
  ZipReader(ZipHandle archive, std::FILE* stream) : archive_(std::move(archive)), stream_(stream) {}
  static Result<ZipReader> openAt(const ArchiveFile& file, std::uint64_t start);

  ZipHandle archive_;
  std::FILE* stream_;  // the archive's
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
