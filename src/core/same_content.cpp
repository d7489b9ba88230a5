#include "core/same_content.h"

namespace skv {

Result<bool> sameContent(const FileSystem& files, const std::string& one,
                         const std::string& other) {
  const auto length = files.fileLength(one), otherLength = files.fileLength(other);
  if (!length.ok()) return length.outcome();
  if (!otherLength.ok()) return otherLength.outcome();
  if (length.value() != otherLength.value()) return false;
  const auto bytes = files.readFile(one), otherBytes = files.readFile(other);
  if (!bytes.ok()) return bytes.outcome();
  if (!otherBytes.ok()) return otherBytes.outcome();
  return bytes.value() == otherBytes.value();
}

}  // namespace skv
