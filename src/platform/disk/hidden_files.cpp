#include "platform/disk/hidden_files.h"

#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <random>

#include "platform/disk/user_folders.h"

namespace skv {

namespace {

constexpr std::string_view hiddenStart = ".skv-", hiddenEnd = ".tmp";
constexpr std::size_t digits = 16;

std::atomic<HiddenFiles*> current = nullptr;

// Removes a file that a note names. Answers whether the note has served: not while its folder is
// away.
bool removeNoted(const std::string& native) {
  const std::size_t slash = native.rfind('/');
  if (!native.starts_with('/') || !isHiddenName(native.substr(slash + 1))) return true;
  const Descriptor folder = openFile(native.substr(0, slash + 1), O_RDONLY | O_DIRECTORY);
  if (!folder.valid()) return false;
  const std::string name = native.substr(slash + 1);
  struct stat status {};
  if (::fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
    return errno == ENOENT;
  return !S_ISREG(status.st_mode) || ::unlinkat(folder.get(), name.c_str(), 0) == 0;
}

}  // namespace

bool isHiddenName(std::string_view name) {
  return name.size() == hiddenStart.size() + digits + hiddenEnd.size() &&
         name.starts_with(hiddenStart) && name.ends_with(hiddenEnd) &&
         name.substr(hiddenStart.size(), digits).find_first_not_of("0123456789abcdef") ==
             std::string_view::npos;
}

std::string someHiddenName() {
  std::random_device random;
  std::array<char, digits + 1> number;
  std::snprintf(number.data(), number.size(), "%08x%08x", random(), random());
  return std::string(hiddenStart) + number.data() + std::string(hiddenEnd);
}

HiddenFiles::HiddenFiles(const std::string& notes) {
  if (!makePrivateFolder(notes.substr(0, notes.rfind('/')))) return;
  notes_ = openFile(notes, O_RDWR | O_CREAT | O_APPEND | O_NOFOLLOW, S_IRUSR | S_IWUSR);
  std::string names;
  if (!notes_.valid() || ::flock(notes_.get(), LOCK_EX | LOCK_NB) != 0 ||
      readAll(notes_.get(), names) != 0) {
    notes_.close();
    return;
  }
  // Of folders that have gone for good the notes would grow without end.
  constexpr std::size_t mostKept = std::size_t{64} << 10U;
  std::string kept;
  for (std::size_t at = 0; at < names.size();) {
    const std::size_t end = std::min(names.find('\0', at), names.size());
    const std::string name = names.substr(at, end - at);
    if (!removeNoted(name) && kept.size() + name.size() < mostKept) kept += name + '\0';
    at = end + 1;
  }
  if (::ftruncate(notes_.get(), 0) != 0 || writeAll(notes_.get(), kept) != 0) {
    notes_.close();
    return;
  }
  kept_ = size_ = static_cast<off_t>(kept.size());
  current = this;
}

HiddenFiles::~HiddenFiles() {
  HiddenFiles* self = this;
  current.compare_exchange_strong(self, nullptr);
  if (notes_.valid() && open_ == 0) forget();
}

std::string HiddenFiles::defaultNotes() { return configFolder() + "/unfinished"; }

void HiddenFiles::begin(const std::string& native) {
  if (HiddenFiles* const files = current) files->note(native);
}

void HiddenFiles::end() {
  HiddenFiles* const files = current;
  if (files == nullptr) return;
  const std::scoped_lock lock(files->mutex_);
  constexpr off_t enough = off_t{64} << 10U;
  if (--files->open_ == 0 && files->size_ > files->kept_ + enough) files->forget();
}

// A note that cannot be written leaves a file behind at worst, and only when the run is killed.
void HiddenFiles::note(const std::string& native) {
  const std::scoped_lock lock(mutex_);
  ++open_;
  const std::string line = native + '\0';
  if (writeAll(notes_.get(), line) == 0) size_ += static_cast<off_t>(line.size());
}

void HiddenFiles::forget() {
  if (::ftruncate(notes_.get(), kept_) == 0) size_ = kept_;
}

}  // namespace skv
