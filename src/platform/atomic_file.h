// A file on disk that is made out of sight and appears under its name when it is complete.
#pragma once

#include <sys/types.h>

#include <optional>
#include <span>
#include <string>

#include "platform/file_system.h"
#include "platform/os_error.h"

namespace skv {

// The file lives without a name where the disk can do that, so that a killed program leaves
// nothing; elsewhere under a hidden name that the next attempt at the same target takes over.
class AtomicFile : public FileWriter {
 public:
  // `native` is the target's place on disk, `shown` the path for messages. Nothing is made yet.
  AtomicFile(std::string native, std::string shown);
  ~AtomicFile() override;
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  Outcome open();
  Outcome write(std::span<const char> bytes) override;
  Outcome commit(std::optional<FileTime> modified) override;

  // For commit(): the mode of the file, and whether it must be on the disk itself before it
  // appears.
  void setMode(mode_t mode) { mode_ = mode; }
  void setOwner(uid_t user, gid_t group) { owner_ = {user, group}; }
  void setFlushed() { flushed_ = true; }
  void setDosAttributes(unsigned bits) { dosAttributes_ = bits; }
  int descriptor() const { return file_.get(); }

 private:
  Outcome place();
  int giveName(const std::string& name) const;
  void dropTemporary();

  std::string native_, shown_, temporary_;
  Descriptor file_;
  bool unnamed_ = false;
  bool flushed_ = false;
  std::optional<mode_t> mode_;
  unsigned dosAttributes_ = 0;
  std::optional<std::pair<uid_t, gid_t>> owner_;
};

// Puts a folder's entries on the disk itself.
void flushFolder(const std::string& nativeFolder);

}  // namespace skv
