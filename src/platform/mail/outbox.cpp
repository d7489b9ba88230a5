#include "platform/mail/outbox.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <filesystem>

#include "platform/disk/native_calls.h"
#include "platform/disk/user_folders.h"

namespace skv {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view foldersBegin = "attachment-";
constexpr std::string_view withMeaning = "',\\";

// Where an open file lies; "" when it lies nowhere any more.
std::string pathOf(int fd) {
  std::array<char, PATH_MAX> buffer;
  const std::string link = "/proc/self/fd/" + std::to_string(fd);
  const ssize_t length = ::readlink(link.c_str(), buffer.data(), buffer.size());
  if (length <= 0 || static_cast<std::size_t>(length) == buffer.size()) return {};
  std::string path(buffer.data(), static_cast<std::size_t>(length));
  struct stat open {
  }, named{};
  if (::fstat(fd, &open) != 0 || ::stat(path.c_str(), &named) != 0 || !sameFile(open, named))
    return {};
  return path;
}

int copyBytes(int from, const std::string& to) {
  const Descriptor copy = openFile(to, O_WRONLY | O_CREAT | O_EXCL, 0600);
  if (!copy.valid()) return errno;
  std::vector<char> buffer(std::size_t{1} << 20U);
  for (off_t offset = 0;;) {
    const ssize_t got =
        retried([&] { return ::pread(from, buffer.data(), buffer.size(), offset); });
    if (got <= 0) return got < 0 ? errno : 0;
    if (const int error =
            writeAll(copy.get(), std::span(buffer).first(static_cast<std::size_t>(got))))
      return error;
    offset += got;
  }
}

}  // namespace

Result<std::string> standingFile(const AttachedFile& attached, const std::string& outbox) {
  const int fd = attached.file->get();
  if (const std::string path = pathOf(fd); !path.empty() &&
                                           path.substr(path.rfind('/') + 1) == attached.name &&
                                           path.find_first_of(withMeaning) == std::string::npos)
    return path;

  std::string folder = (outbox + '/').append(foldersBegin).append("XXXXXX");
  if (!makePrivateFolder(outbox)) return Outcome::failure(err::pathFileAccess, outbox);
  if (::mkdtemp(folder.data()) == nullptr) return systemFailure(errno, outbox);
  std::string name = attached.name;
  std::ranges::replace_if(
      name, [](char c) { return withMeaning.find(c) != std::string_view::npos; }, '_');
  std::string path = folder + '/' + name;
  const std::string open = "/proc/self/fd/" + std::to_string(fd);
  if (::linkat(AT_FDCWD, open.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0) return path;
  if (const int error = copyBytes(fd, path)) {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    return systemFailure(error, path);
  }
  return path;
}

void tidyOutbox(const std::string& outbox) {
  constexpr std::chrono::hours week{7 * 24};
  const auto limit = fs::file_time_type::clock::now() - week;
  std::error_code error;
  std::vector<fs::path> old;
  for (fs::directory_iterator entry(outbox, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code unknown;
    if (entry->path().filename().string().starts_with(foldersBegin) &&
        entry->symlink_status(unknown).type() == fs::file_type::directory &&
        entry->last_write_time(unknown) < limit && !unknown)
      old.push_back(entry->path());
  }
  for (const fs::path& folder : old) fs::remove_all(folder, error);
}

}  // namespace skv
