#include "support/faulty_file_system.h"

#include <filesystem>
#include <fstream>
#include <utility>

#include "base/paths.h"
#include "base/text.h"

namespace skv::test {

namespace {
std::string keyOf(const std::string& operation, std::string_view path) {
  return operation + " " + upper(withoutBackslash(path));
}
}  // namespace

void FaultyFileSystem::failAt(int call, int error) { changes_ = {call, error}; }
void FaultyFileSystem::killAt(int call) { changes_ = {call, 0}; }
void FaultyFileSystem::failReadAt(int call, int error) { looks_ = {call, error}; }
void FaultyFileSystem::killReadAt(int call) { looks_ = {call, 0}; }

void FaultyFileSystem::failWhen(const std::string& operation, const std::string& path, int error) {
  rule_ = Rule{operation, upper(withoutBackslash(path)), error};
}

bool FaultyFileSystem::heal() {
  changes_ = looks_ = {};
  rule_.reset();
  return std::exchange(struck_, false);
}

int FaultyFileSystem::count(const std::string& operation, const std::string& path) const {
  const auto found = counts_.find(keyOf(operation, path));
  return found == counts_.end() ? 0 : found->second;
}

Outcome FaultyFileSystem::fault(const std::string& operation, std::string_view path,
                                bool changes) const {
  const std::scoped_lock lock(mutex_);
  ++counts_[keyOf(operation, path)];
  Counted& counted = changes ? changes_ : looks_;
  if (counted.callsLeft > 0 && --counted.callsLeft == 0) {
    struck_ = true;
    if (counted.error == 0) throw Killed();
    return Outcome::failure(counted.error, path);
  }
  if (rule_ && rule_->operation == operation &&
      (rule_->path.empty() || rule_->path == upper(withoutBackslash(path)))) {
    struck_ = true;
    return Outcome::failure(rule_->error, path);
  }
  return {};
}

std::optional<std::string> FaultyFileSystem::contentOf(std::string_view path) const {
  auto content = real_.readFile(path);
  if (!content.ok()) return std::nullopt;
  return std::move(content).value();
}

// A replaced file's successor is flushed before it takes the name.
void FaultyFileSystem::made(std::string_view path, std::optional<std::string> before) {
  const std::scoped_lock lock(mutex_);
  const bool replaces = before.has_value();
  const std::string place = real_.nativePath(path).valueOr("");
  unflushed_.try_emplace(place, Unflushed{true, std::move(before)}).first->second.content =
      !replaces;
}

void FaultyFileSystem::flushed(std::string_view path) {
  const std::scoped_lock lock(mutex_);
  unflushed_.erase(real_.nativePath(path).valueOr(""));
}

// `old` is the former place of a file, or of a folder with all that is in it. What takes another
// file's place is flushed before.
void FaultyFileSystem::moved(const std::string& old, std::string_view to, bool replaces) {
  const std::scoped_lock lock(mutex_);
  const std::string now = real_.nativePath(to).valueOr("");
  if (replaces) {
    unflushed_.erase(old);
    if (const auto replaced = unflushed_.find(now); replaced != unflushed_.end())
      replaced->second.content = false;
    return;
  }
  std::map<std::string, Unflushed> kept;
  for (auto& [place, state] : unflushed_) {
    const bool goesAlong = place == old || place.starts_with(old + "/");
    kept[goesAlong ? now + place.substr(old.size()) : place] = std::move(state);
  }
  unflushed_ = std::move(kept);
}

void FaultyFileSystem::powerCut(Lost lost) {
  heal();
  for (const auto& [place, state] : unflushed_) {
    if (!std::filesystem::exists(std::filesystem::symlink_status(place))) continue;
    if (lost == Lost::files && !state.before) {
      std::filesystem::remove(place);
    } else if (lost == Lost::files || state.content) {
      // A name and a time of last change are written together, before the content.
      const auto time = std::filesystem::last_write_time(place);
      std::ofstream(place, std::ios::binary | std::ios::trunc)
          << (lost == Lost::files ? *state.before : "");
      std::filesystem::last_write_time(place, time);
    }
  }
  unflushed_.clear();
}

Result<Attributes> FaultyFileSystem::attributes(std::string_view path) const {
  if (Outcome failure = fault("attributes", path, false); !failure.ok()) return failure;
  return real_.attributes(path);
}

Outcome FaultyFileSystem::setAttributes(std::string_view path, Attributes attributes) {
  if (Outcome failure = fault("setAttributes", path, true); !failure.ok()) return failure;
  return real_.setAttributes(path, attributes);
}

Result<std::vector<FolderEntry>> FaultyFileSystem::list(std::string_view folder,
                                                        Entries entries) const {
  if (Outcome failure = fault("list", folder, false); !failure.ok()) return failure;
  return real_.list(folder, entries);
}

bool FaultyFileSystem::isLink(std::string_view path) const {
  return !fault("isLink", path, false).ok() || real_.isLink(path);
}

std::string FaultyFileSystem::identity(std::string_view folder) const {
  return fault("identity", folder, false).ok() ? real_.identity(folder) : std::string();
}

Result<std::string> FaultyFileSystem::canonicalPath(std::string_view folder) const {
  if (Outcome failure = fault("canonicalPath", folder, false); !failure.ok()) return failure;
  return real_.canonicalPath(folder);
}

Outcome FaultyFileSystem::copyFileDurably(std::string_view from, std::string_view to) {
  if (Outcome failure = fault("copyFileDurably", from, true); !failure.ok()) return failure;
  Outcome copied = real_.copyFileDurably(from, to);
  if (copied.ok()) flushed(to);
  return copied;
}

Outcome FaultyFileSystem::flushDisk(std::string_view path) {
  if (Outcome failure = fault("flushDisk", path, true); !failure.ok()) return failure;
  Outcome result = real_.flushDisk(path);
  const std::scoped_lock lock(mutex_);
  if (result.ok()) unflushed_.clear();
  return result;
}

Outcome FaultyFileSystem::copyFile(std::string_view from, std::string_view to) {
  if (Outcome failure = fault("copyFile", from, true); !failure.ok()) return failure;
  auto before = contentOf(to);
  Outcome copied = real_.copyFile(from, to);
  if (copied.ok()) made(to, std::move(before));
  return copied;
}

void FaultyFileSystem::copyFiles(const std::vector<FileCopy>& copies,
                                 const std::function<bool(const Outcome&)>& copied) {
  if (rule_ || changes_.callsLeft > 0) {
    FileSystem::copyFiles(copies, copied);
    return;
  }
  std::vector<std::optional<std::string>> before;
  before.reserve(copies.size());
  for (const FileCopy& copy : copies) before.push_back(contentOf(copy.to));
  std::size_t told = 0;
  real_.copyFiles(copies, [&](const Outcome& outcome) {
    const std::size_t copy = told++;
    fault("copyFile", copies[copy].from, true).skipped();
    if (outcome.ok()) made(copies[copy].to, std::move(before[copy]));
    return copied(outcome);
  });
}

Outcome FaultyFileSystem::moveFile(std::string_view from, std::string_view to) {
  if (Outcome failure = fault("moveFile", from, true); !failure.ok()) return failure;
  const std::string old = real_.nativePath(from).valueOr("");
  const bool replaces = real_.attributes(to).ok();
  Outcome result = real_.moveFile(from, to);
  if (result.ok()) moved(old, to, replaces);
  return result;
}

Outcome FaultyFileSystem::rename(std::string_view from, std::string_view to) {
  if (Outcome failure = fault("rename", from, true); !failure.ok()) return failure;
  const std::string old = real_.nativePath(from).valueOr("");
  Outcome result = real_.rename(from, to);
  if (result.ok()) moved(old, to, false);
  return result;
}

Outcome FaultyFileSystem::deleteFile(std::string_view path) {
  if (Outcome failure = fault("deleteFile", path, true); !failure.ok()) return failure;
  return real_.deleteFile(path);
}

Outcome FaultyFileSystem::makeFolder(std::string_view path) {
  if (Outcome failure = fault("makeFolder", path, true); !failure.ok()) return failure;
  return real_.makeFolder(path);
}

Outcome FaultyFileSystem::removeFolder(std::string_view path) {
  if (Outcome failure = fault("removeFolder", path, true); !failure.ok()) return failure;
  return real_.removeFolder(path);
}

Result<std::uint64_t> FaultyFileSystem::fileLength(std::string_view path) const {
  if (Outcome failure = fault("fileLength", path, false); !failure.ok()) return failure;
  return real_.fileLength(path);
}

Result<FileTime> FaultyFileSystem::modified(std::string_view path) const {
  if (Outcome failure = fault("modified", path, false); !failure.ok()) return failure;
  return real_.modified(path);
}

Result<std::string> FaultyFileSystem::readFile(std::string_view path) const {
  if (Outcome failure = fault("readFile", path, false); !failure.ok()) return failure;
  return real_.readFile(path);
}

Outcome FaultyFileSystem::replaceFile(std::string_view path, std::string_view content) {
  if (Outcome failure = fault("replaceFile", path, true); !failure.ok()) return failure;
  Outcome replaced = real_.replaceFile(path, content);
  if (replaced.ok()) flushed(path);
  return replaced;
}

class FaultyFileSystem::Writer : public FileWriter {
 public:
  Writer(FaultyFileSystem& files, std::string_view path, std::unique_ptr<FileWriter> real)
      : files_(files), path_(path), real_(std::move(real)) {}
  Outcome write(std::span<const char> bytes) override {
    if (Outcome failure = files_.fault("write", path_, true); !failure.ok()) return failure;
    return real_->write(bytes);
  }
  Outcome commit(std::optional<FileTime> modified) override {
    if (Outcome failure = files_.fault("commit", path_, true); !failure.ok()) return failure;
    auto before = files_.contentOf(path_);
    Outcome committed = real_->commit(modified);
    if (committed.ok()) files_.made(path_, std::move(before));
    return committed;
  }

 private:
  FaultyFileSystem& files_;
  std::string path_;
  std::unique_ptr<FileWriter> real_;
};

Result<std::unique_ptr<FileWriter>> FaultyFileSystem::createFile(std::string_view path) {
  if (Outcome failure = fault("createFile", path, true); !failure.ok()) return failure;
  auto real = real_.createFile(path);
  if (!real.ok()) return real;
  return std::unique_ptr<FileWriter>(
      std::make_unique<Writer>(*this, path, std::move(real).value()));
}

Result<double> FaultyFileSystem::freeBytes(std::string_view path) const {
  if (Outcome failure = fault("freeBytes", path, false); !failure.ok()) return failure;
  if (freeSpace) return *freeSpace;
  return real_.freeBytes(path);
}

}  // namespace skv::test
