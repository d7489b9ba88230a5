// The file that a new archive is written to.
#pragma once

#include <zip.h>

#include <string>
#include <vector>

#include "base/outcome.h"
#include "platform/disk/file_writer.h"

namespace skv {

// Has no name until it is complete and on the disk, so that a killed program leaves nothing, and a
// power cut the older archive or this one. (libzip's own output does neither.)
class ArchiveOutput {
 public:
  // `native`: the place that the archive is to take; `shown`: the same for messages.
  ArchiveOutput(const std::string& native, std::string shown);
  ArchiveOutput(const ArchiveOutput&) = delete;
  ArchiveOutput& operator=(const ArchiveOutput&) = delete;

  // Why nothing can be, or could not be written.
  const Outcome& failure() const { return failure_; }
  // A new source for zip_open_from_source; this object must outlive it. nullptr when there is no
  // memory.
  zip_source_t* source();
  // Puts what libzip has written on the disk and under its name. Without `replaces`
  // another file of that name stays, and is a failure.
  Outcome publish(bool replaces);

 private:
  static zip_int64_t answer(void* user, void* data, zip_uint64_t length, zip_source_cmd_t command);
  bool write(const char* bytes, std::size_t count);
  bool writeOut();

  std::string shown_, name_;
  PendingFile file_;
  Outcome failure_;
  zip_uint64_t position_ = 0, length_ = 0;
  // What is not in the file yet. libzip goes back to an entry's header when its data is there, and
  // of small entries both are still in here then.
  std::vector<char> waiting_;
  zip_uint64_t waitingStart_ = 0;
  zip_error_t error_{};
};

}  // namespace skv
