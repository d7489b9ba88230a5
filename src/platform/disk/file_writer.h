// A file that is being made: it has no name, or a hidden one of our own, until it is complete.
#pragma once

#include <span>
#include <string>

#include "platform/disk/native_calls.h"

namespace skv {

class PendingFile {
 public:
  // In an existing folder. On failure ok() is false and errno tells why.
  explicit PendingFile(std::string folder);
  PendingFile(PendingFile&& other) noexcept
      : folder_(std::move(other.folder_)),
        fd_(std::move(other.fd_)),
        hiddenName_(std::exchange(other.hiddenName_, {})) {}
  PendingFile& operator=(PendingFile&&) = delete;
  // Removes what was not published.
  ~PendingFile();

  bool ok() const { return fd_.valid(); }
  int fd() const { return fd_.get(); }

  // Puts the content on the disk. Due before another file is replaced, which after a power cut must
  // not be lost for an empty one. All answers are 0 or the system's error number.
  int flush();
  // Gives the file its name in the folder. Without `replace` EEXIST when the name is taken, and
  // publish may be called again.
  int publish(const std::string& name, bool replace);
  // Puts the folder's new state on the disk.
  int flushFolder() const;

 private:
  // `make` gives the file the name, and answers with 0 or the system's error number.
  template <class Make>
  int takeHiddenName(Make make);
  int settle() const;

  std::string folder_;
  Descriptor fd_;
  std::string hiddenName_;  // full native path, "" while the file has none
};

}  // namespace skv
