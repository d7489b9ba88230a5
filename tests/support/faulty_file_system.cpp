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

void FaultyFileSystem::failWhen(const std::string& operation, const std::string& path, int error) {
  failing_ = operation;
  failingPath_ = upper(withoutBackslash(path));
  error_ = error;
}

bool FaultyFileSystem::heal() {
  changes_ = looks_ = {};
  failing_.clear();
  return std::exchange(struck_, false);
}

int FaultyFileSystem::count(const std::string& operation, const std::string& path) const {
  const auto found = counts_.find(keyOf(operation, path));
  return found == counts_.end() ? 0 : found->second;
}

Outcome FaultyFileSystem::fault(const std::string& operation, Path path, bool changes) const {
  const std::scoped_lock lock(mutex_);
  ++counts_[keyOf(operation, path)];
  Counted& counted = changes ? changes_ : looks_;
  if (counted.callsLeft > 0 && --counted.callsLeft == 0) {
    struck_ = true;
    if (counted.error == 0) throw Killed();
    return Outcome::failure(counted.error, path);
  }
  if (failing_ == operation &&
      (failingPath_.empty() || failingPath_ == upper(withoutBackslash(path)))) {
    struck_ = true;
    return Outcome::failure(error_, path);
  }
  return {};
}

std::optional<std::string> FaultyFileSystem::contentOf(Path path) const {
  auto content = real_.readFile(path);
  if (!content.ok()) return std::nullopt;
  return std::move(content).value();
}

void FaultyFileSystem::made(Path path, const std::optional<std::string>& before) {
  const std::scoped_lock lock(mutex_);
  unflushed_.try_emplace(real_.nativePath(path).valueOr(""), before);
}

Outcome FaultyFileSystem::flushed(Path path, Outcome written) {
  const std::scoped_lock lock(mutex_);
  if (written.ok()) unflushed_.erase(real_.nativePath(path).valueOr(""));
  return written;
}

// A folder takes all that is in it along. What takes another file's place is flushed before.
Outcome FaultyFileSystem::moved(const std::string& operation, Path from, Path to,
                                Outcome (FileSystem::*move)(Path, Path)) {
  const std::string old = real_.nativePath(from).valueOr("");
  const bool replaces = real_.attributes(to).ok();
  Outcome result = change(operation.c_str(), move, from, to);
  if (!result.ok()) return result;
  const std::scoped_lock lock(mutex_);
  const std::string now = real_.nativePath(to).valueOr("");
  decltype(unflushed_) kept;
  for (auto& [place, before] : unflushed_) {
    const bool goesAlong = place == old || place.starts_with(old + "/");
    if (goesAlong && replaces) continue;
    kept[goesAlong ? now + place.substr(old.size()) : place] = std::move(before);
  }
  unflushed_ = std::move(kept);
  return result;
}

void FaultyFileSystem::powerCut(Lost lost) {
  heal();
  for (const auto& [place, before] : unflushed_) {
    if (!std::filesystem::exists(std::filesystem::symlink_status(place))) continue;
    if (lost == Lost::files && !before) {
      std::filesystem::remove(place);
    } else if (lost == Lost::files || !before) {
      // A name and a time of last change are written together, before the content.
      const auto time = std::filesystem::last_write_time(place);
      std::ofstream(place, std::ios::binary | std::ios::trunc) << before.value_or("");
      std::filesystem::last_write_time(place, time);
    }
  }
  unflushed_.clear();
}

Outcome FaultyFileSystem::copyFileDurably(Path from, Path to) {
  return flushed(to, change("copyFileDurably", &FileSystem::copyFileDurably, from, to));
}

// The real flush waits for the disk of the whole machine, and a test's power is never really cut.
Outcome FaultyFileSystem::flushDisk(Path path) {
  Outcome result = fault("flushDisk", path, true);
  const std::scoped_lock lock(mutex_);
  if (result.ok()) unflushed_.clear();
  return result;
}

Outcome FaultyFileSystem::copyFile(Path from, Path to) {
  auto before = contentOf(to);
  Outcome copied = change("copyFile", &FileSystem::copyFile, from, to);
  if (copied.ok()) made(to, before);
  return copied;
}

void FaultyFileSystem::copyFiles(const std::vector<FileCopy>& copies,
                                 const std::function<bool(const Outcome&)>& copied) {
  if (!failing_.empty() || changes_.callsLeft > 0) {
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
    if (outcome.ok()) made(copies[copy].to, before[copy]);
    return copied(outcome);
  });
}

Outcome FaultyFileSystem::moveFile(Path from, Path to) {
  return moved("moveFile", from, to, &FileSystem::moveFile);
}

Outcome FaultyFileSystem::rename(Path from, Path to) {
  return moved("rename", from, to, &FileSystem::rename);
}

Outcome FaultyFileSystem::replaceFile(Path path, Path content) {
  return flushed(path, change("replaceFile", &FileSystem::replaceFile, path, content));
}

Outcome FaultyFileSystem::replaceContent(Path path, Path content) {
  return flushed(path, change("replaceContent", &FileSystem::replaceContent, path, content));
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
    if (committed.ok()) files_.made(path_, before);
    return committed;
  }

 private:
  FaultyFileSystem& files_;
  std::string path_;
  std::unique_ptr<FileWriter> real_;
};

Result<std::unique_ptr<FileWriter>> FaultyFileSystem::createFile(Path path) {
  if (Outcome failure = fault("createFile", path, true); !failure.ok()) return failure;
  auto real = real_.createFile(path);
  if (!real.ok()) return real;
  return {std::make_unique<Writer>(*this, path, std::move(real).value())};
}

}  // namespace skv::test
