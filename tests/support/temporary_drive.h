// A drive C: in a folder of its own for the length of a test.
#pragma once

#include <string>
#include <vector>

#include "platform/file_system.h"
#include "support/text.h"

namespace skv::test {

// Paths are Windows paths on C:, taken element by element as spelled unless they stand in other
// letters.
class TemporaryDrive {
 public:
  TemporaryDrive();
  ~TemporaryDrive();
  TemporaryDrive(const TemporaryDrive&) = delete;
  TemporaryDrive& operator=(const TemporaryDrive&) = delete;

  // Native paths: the folder of drive links, and the folder behind C:.
  std::string drives() const { return root_ + "/dosdevices"; }
  std::string native() const { return root_ + "/drive_c"; }
  std::string native(const std::string& path) const;

  // Makes the folders above it. Throws when it cannot, as over a read-only file for all but root.
  void write(const std::string& path, const std::string& content) const;
  // "" for a file that does not exist.
  std::string read(const std::string& path) const;
  bool exists(const std::string& path) const;
  void remove(const std::string& path) const;
  void setModified(const std::string& path, FileTime time) const;
  // A symbolic link at `path` that leads to `target`.
  void link(const std::string& path, const std::string& target) const;
  // Removes all that stands in the folder, and makes it when it is missing.
  void clear(const std::string& folder) const;
  // Everything below a folder, hidden entries too, sorted by bytes: "sub\", "sub\a.txt". Links are
  // not followed and end in "\" when they lead to a folder.
  std::vector<std::string> tree(const std::string& folder) const;
  // The same without the folders.
  std::vector<std::string> filesIn(const std::string& folder) const;

 private:
  std::string root_;
};

}  // namespace skv::test
