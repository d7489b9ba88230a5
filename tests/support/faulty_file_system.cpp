#include "support/faulty_file_system.h"

#include "base/paths.h"
#include "base/text.h"

namespace skv::test {

namespace {
std::string keyOf(const std::string& operation, std::string_view path) {
  return operation + " " + upper(withoutBackslash(path));
}
}  // namespace

void FaultyFileSystem::failAt(int call, int error) {
  callsLeft_ = call;
  error_ = error;
}

void FaultyFileSystem::killAt(int call) { failAt(call, 0); }

void FaultyFileSystem::failWhen(const std::string& operation, const std::string& path, int error) {
  rule_ = Rule{operation, upper(withoutBackslash(path)), error};
}

bool FaultyFileSystem::heal() {
  callsLeft_ = 0;
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
  if (changes && callsLeft_ > 0 && --callsLeft_ == 0) {
    struck_ = true;
    if (error_ == 0) throw Killed();
    return Outcome::failure(error_, path);
  }
  if (rule_ && rule_->operation == operation &&
      (rule_->path.empty() || rule_->path == upper(withoutBackslash(path)))) {
    struck_ = true;
    return Outcome::failure(rule_->error, path);
  }
  return {};
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
  return real_.copyFileDurably(from, to);
}

Outcome FaultyFileSystem::flushDisk(std::string_view path) {
  if (Outcome failure = fault("flushDisk", path, true); !failure.ok()) return failure;
  return real_.flushDisk(path);
}

Outcome FaultyFileSystem::copyFile(std::string_view from, std::string_view to) {
  if (Outcome failure = fault("copyFile", from, true); !failure.ok()) return failure;
  return real_.copyFile(from, to);
}

Outcome FaultyFileSystem::moveFile(std::string_view from, std::string_view to) {
  if (Outcome failure = fault("moveFile", from, true); !failure.ok()) return failure;
  return real_.moveFile(from, to);
}

Outcome FaultyFileSystem::rename(std::string_view from, std::string_view to) {
  if (Outcome failure = fault("rename", from, true); !failure.ok()) return failure;
  return real_.rename(from, to);
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
  return real_.replaceFile(path, content);
}

class FaultyFileSystem::Writer : public FileWriter {
 public:
  Writer(const FaultyFileSystem& files, std::string_view path, std::unique_ptr<FileWriter> real)
      : files_(files), path_(path), real_(std::move(real)) {}
  Outcome write(std::span<const char> bytes) override {
    if (Outcome failure = files_.fault("write", path_, true); !failure.ok()) return failure;
    return real_->write(bytes);
  }
  Outcome commit(std::optional<FileTime> modified) override {
    if (Outcome failure = files_.fault("commit", path_, true); !failure.ok()) return failure;
    return real_->commit(modified);
  }

 private:
  const FaultyFileSystem& files_;
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
  if (freeSpace) return *freeSpace;
  return real_.freeBytes(path);
}

}  // namespace skv::test
