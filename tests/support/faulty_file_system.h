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
 public:
  explicit FaultyFileSystem(FileSystem& real) : real_(real) {}

  // Fails the n-th call from now that changes the disk (1 is the next).
  void failAt(int call, int error);
  // Throws Killed in place of that call.
  void killAt(int call);
  // The same for the calls that only look: attributes, list, isLink (which then answers true),
  // identity (which answers ""), canonicalPath, fileLength, modified, readFile and freeBytes. Both
  // counts may run at once.
  void failReadAt(int call, int error);
  void killReadAt(int call);
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
  // Operate, cut the power (at the end, or after killAt), then look at the drive as the next run of
  // the program finds it:
  //   files.killAt(n); try { operate(); } catch (const Killed&) {}
  //   files.powerCut(FaultyFileSystem::Lost::contents);
  // Run it with both losses. Deletions and renames are always on the disk: the worst for who
  // deletes what is not yet flushed elsewhere. What a test or an engine writes past this object is
  // never lost.
  void powerCut(Lost lost);

  // Calls of an operation on a path since the last reset.
  int count(const std::string& operation, const std::string& path) const;
  void resetCounts() { counts_.clear(); }

  std::optional<double> freeSpace;  // what freeBytes answers, when set

  Result<Attributes> attributes(std::string_view path) const override;
  Outcome setAttributes(std::string_view path, Attributes attributes) override;
  Result<std::vector<FolderEntry>> list(std::string_view folder, Entries entries) const override;
  bool isLink(std::string_view path) const override;
  std::string identity(std::string_view folder) const override;
  Result<std::string> canonicalPath(std::string_view folder) const override;
  Outcome copyFile(std::string_view from, std::string_view to) override;
  Outcome copyFileDurably(std::string_view from, std::string_view to) override;
  // By the real one's threads, unless a fault is armed.
  void copyFiles(const std::vector<FileCopy>& copies,
                 const std::function<bool(const Outcome&)>& copied) override;
  Outcome moveFile(std::string_view from, std::string_view to) override;
  Outcome rename(std::string_view from, std::string_view to) override;
  Outcome deleteFile(std::string_view path) override;
  Outcome makeFolder(std::string_view path) override;
  Outcome removeFolder(std::string_view path) override;
  Result<std::uint64_t> fileLength(std::string_view path) const override;
  Result<FileTime> modified(std::string_view path) const override;
  Result<std::string> readFile(std::string_view path) const override;
  Outcome replaceFile(std::string_view path, std::string_view content) override;
  Result<std::unique_ptr<FileWriter>> createFile(std::string_view path) override;
  Result<double> freeBytes(std::string_view path) const override;
  Outcome flushDisk(std::string_view path) override;
  std::string currentFolder() const override { return real_.currentFolder(); }
  Outcome setCurrentFolder(std::string_view path) override { return real_.setCurrentFolder(path); }
  Result<std::string> nativePath(std::string_view path) const override {
    return real_.nativePath(path);
  }
  std::string windowsPath(std::string_view native) const override {
    return real_.windowsPath(native);
  }

 private:
  class Writer;
  struct Rule {
    std::string operation, path;
    int error;
  };
  struct Counted {
    int callsLeft = 0;  // until the fault; 0 is none
    int error = 0;      // 0 kills
  };
  // A file that is not on the disk yet.
  struct Unflushed {
    bool content = false;                    // false when what replaced another was flushed
    std::optional<std::string> before = {};  // what stands there on the disk
  };
  Outcome fault(const std::string& operation, std::string_view path, bool changes) const;
  std::optional<std::string> contentOf(std::string_view path) const;
  void made(std::string_view path, std::optional<std::string> before);
  void flushed(std::string_view path);
  void moved(const std::string& old, std::string_view to, bool replaces);

  FileSystem& real_;
  mutable std::mutex mutex_;  // an archive is packed and unpacked on several threads
  std::optional<Rule> rule_;
  mutable Counted changes_, looks_;
  mutable bool struck_ = false;
  std::map<std::string, Unflushed> unflushed_;  // by place on the machine
  mutable std::map<std::string, int> counts_;
};

}  // namespace skv::test
