// A file system that fails where a test wants it to, over a real one, and can lose its power.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace skv::test {

// Thrown in place of the call at which the program is "killed".
struct Killed {};

class FaultyFileSystem : public FileSystem {
  using Path = std::string_view;

 public:
  explicit FaultyFileSystem(FileSystem& real) : real_(real) {}

  // Fails the n-th call from now that changes the disk (1 is the next).
  void failAt(int call, int error);
  // Throws Killed in place of that call.
  void killAt(int call);
  // The same for the calls that only look: isLink then answers true, identity "". Both counts may
  // run at once.
  void failReadAt(int call, int error);
  // Fails every call of an operation ("copyFile") on a path; "" is any path. The path is the first
  // argument, compared without regard to case and to a trailing backslash. The calls of a file's
  // writer are "write" and "commit", on the path it was created with.
  void failWhen(const std::string& operation, const std::string& path, int error);
  // Ends all faults. Answers whether one of them struck.
  bool heal();

  // What is on the disk after a power cut, the disk's cache being lost. Of every file that was made
  // since by copyFile, createFile or a move of such a file, and that neither copyFileDurably,
  // replaceFile nor flushDisk (which counts for all drives) has put there:
  enum class Lost {
    contents,  // the name stands, the file is empty: a disk that writes names before contents
    files,     // the file is not there, or is the older one again that it has replaced
  };
  // Deletions and renames are always on the disk: the worst for who
  // deletes what is not yet flushed elsewhere. What a test or an engine writes past this object is
  // never lost.
  void powerCut(Lost lost);

  // Calls of an operation on a path.
  int count(const std::string& operation, const std::string& path) const;

  std::optional<double> freeSpace;  // what freeBytes answers, when set

  Result<Attributes> attributes(Path path) const override {
    return look("attributes", &FileSystem::attributes, path);
  }
  Outcome setAttributes(Path path, Attributes attributes) override {
    return change("setAttributes", &FileSystem::setAttributes, path, attributes);
  }
  Result<std::vector<FolderEntry>> list(Path folder, Entries entries) const override {
    return look("list", &FileSystem::list, folder, entries);
  }
  bool isLink(Path path) const override {
    return !fault("isLink", path, false).ok() || real_.isLink(path);
  }
  std::string identity(Path folder) const override {
    return fault("identity", folder, false).ok() ? real_.identity(folder) : std::string();
  }
  Result<std::string> canonicalPath(Path folder) const override {
    return look("canonicalPath", &FileSystem::canonicalPath, folder);
  }
  Outcome copyFile(Path from, Path to) override;
  Outcome copyFileDurably(Path from, Path to) override;
  // By the real one's threads, unless a fault is armed.
  void copyFiles(const std::vector<FileCopy>& copies,
                 const std::function<bool(const Outcome&)>& copied) override;
  Outcome moveFile(Path from, Path to) override;
  Outcome rename(Path from, Path to) override;
  Outcome deleteFile(Path path) override {
    return change("deleteFile", &FileSystem::deleteFile, path);
  }
  Outcome makeFolder(Path path) override {
    return change("makeFolder", &FileSystem::makeFolder, path);
  }
  Outcome removeFolder(Path path) override {
    return change("removeFolder", &FileSystem::removeFolder, path);
  }
  Result<std::uint64_t> fileLength(Path path) const override {
    return look("fileLength", &FileSystem::fileLength, path);
  }
  Result<FileTime> modified(Path path) const override {
    return look("modified", &FileSystem::modified, path);
  }
  Result<std::string> readFile(Path path) const override {
    return look("readFile", &FileSystem::readFile, path);
  }
  Outcome replaceFile(Path path, Path content) override;
  Outcome replaceContent(Path path, Path content) override;
  Result<std::unique_ptr<FileWriter>> createFile(Path path) override;
  Result<double> freeBytes(Path path) const override {
    if (Outcome failure = fault("freeBytes", path, false); !failure.ok()) return failure;
    return freeSpace ? *freeSpace : real_.freeBytes(path);
  }
  Outcome flushDisk(Path path) override;
  std::string currentFolder() const override { return real_.currentFolder(); }
  Outcome setCurrentFolder(Path path) override { return real_.setCurrentFolder(path); }
  Result<std::string> nativePath(Path path) const override { return real_.nativePath(path); }
  std::string windowsPath(Path native) const override { return real_.windowsPath(native); }

 private:
  class Writer;
  template <class R, class... Rest>
  R look(const char* operation, R (FileSystem::*call)(Path, Rest...) const, Path path,
         Rest... rest) const {
    if (Outcome failure = fault(operation, path, false); !failure.ok()) return failure;
    return (real_.*call)(path, rest...);
  }
  template <class... Rest>
  Outcome change(const char* operation, Outcome (FileSystem::*call)(Path, Rest...), Path path,
                 Rest... rest) {
    if (Outcome failure = fault(operation, path, true); !failure.ok()) return failure;
    return (real_.*call)(path, rest...);
  }
  struct Counted {
    int callsLeft = 0;  // until the fault; 0 is none
    int error = 0;      // 0 kills
  };
  Outcome fault(const std::string& operation, Path path, bool changes) const;
  std::optional<std::string> contentOf(Path path) const;
  void made(Path path, const std::optional<std::string>& before);
  Outcome flushed(Path path, Outcome written);
  Outcome moved(const std::string& operation, Path from, Path to,
                Outcome (FileSystem::*move)(Path, Path));

  FileSystem& real_;
  mutable std::mutex mutex_;  // an archive is packed and unpacked on several threads
  std::string failing_;       // the operation of failWhen; "" is none
  std::string failingPath_;
  int error_ = 0;
  mutable Counted changes_, looks_;
  mutable bool struck_ = false;
  // By place on the machine, with what stands there on the disk.
  std::map<std::string, std::optional<std::string>> unflushed_;
  mutable std::map<std::string, int> counts_;
};

}  // namespace skv::test
