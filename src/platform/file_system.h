// The disk as the simulator sees it: drives, backslashes, names without regard to case.
//
// Paths are Windows paths ("C:\FS2002\aircraft\"), with or without a trailing backslash. A path
// without a drive is relative to the current folder; one that begins with a backslash to the
// current drive. Network paths ("\\server\share\...") do not exist here. The calls may come from
// several threads.
//
// Looks. fileNotFound and pathNotFound say for certain that nothing stands there. Whatever keeps
// the disk from knowing has another number: a read error, a folder that may not be entered or, in
// the search for other letters, not be listed, too many open files, a circle of links, and a link
// (a drive is one) whose end is missing, since behind it may be a disk that is not mounted:
// deviceUnavailable. A mount point without its disk is an empty folder to everybody, and to us.
//
// Power cuts. Until flushDisk() has answered success, a file that was made or copied under a name
// of its own may be lost or empty after a power cut, even if its name is there. What replaces an
// older file (by copyFile, moveFile, commit, replaceFile or replaceContent) is on the disk before
// it takes the name: the older file or the new one is found, whole. A move or rename on one disk
// leaves the file under one of its names, and what was on the disk before stays there; a move
// between disks has its copy on the disk, with its name, before the source goes. copyFileDurably,
// replaceFile and replaceContent are on the disk when they return. All this holds for disks that
// keep the order of names, as those with a journal do.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/outcome.h"

namespace skv {

// Seconds since 1 January 1970 UTC, and the nanoseconds after it.
struct FileTime {
  std::int64_t seconds = 0;
  std::int32_t nanoseconds = 0;
  auto operator<=>(const FileTime&) const = default;  // NOLINT(modernize-use-nullptr)
};

struct Attributes {
  bool folder = false;
  bool readOnly = false;
  bool hidden = false;
  bool system = false;
  bool archive = false;
};

// What packing needs to know of a file.
struct FileState {
  Attributes attributes;
  std::uint64_t length = 0;
  FileTime modified;
};

struct FolderEntry {
  std::string name;  // as the disk spells it
  bool folder = false;
  std::uint64_t length = 0;  // bytes of a file, where the listing was asked for them
};

struct FileCopy {
  std::string from, to;
};

// A file that is to be made whole.
struct NewFile {
  std::string name;  // in its folder
  std::span<const char> content;
  std::optional<FileTime> modified;  // none means now
};

// A file that is being made. It appears under its name by commit() alone; destroyed without it, the
// writer leaves nothing behind and an older file of that name is as it was.
class FileWriter {
 public:
  virtual ~FileWriter() = default;
  virtual Outcome write(std::span<const char> bytes) = 0;
  // Replaces an older file of that name unless it is read-only. `modified`: the time to give the
  // file; none means now. Nothing may be written afterwards.
  virtual Outcome commit(std::optional<FileTime> modified) = 0;
};

class FileSystem {
 public:
  enum class Entries {
    plain,     // without what is hidden or system
    measured,  // the same with the lengths of files, which costs less than asking for each
    named,  // as plain, but hidden and system files may be among them, which costs much less: for
            // a caller that goes by names and asks attributes() of the few that it wants
    all,
  };

  virtual ~FileSystem() = default;

  // Fails with pathNotFound or fileNotFound when nothing stands there, and when the disk does not
  // tell the attributes, as list() does then.
  virtual Result<Attributes> attributes(std::string_view path) const = 0;
  // Sets read-only, hidden, system and archive as given; `folder` is ignored. Hiding by a leading
  // dot cannot be cleared. On a file that is a link, the link's target is left alone.
  virtual Outcome setAttributes(std::string_view path, Attributes attributes) = 0;

  // In NTFS's order, by upper-cased name; without "." and "..". A link to a folder is listed as a
  // folder, a link to nowhere is not listed, one of which the disk does not tell where it leads is
  // listed as a file. The whole folder or a failure, when reading ends early or when it is not
  // known whether an entry belongs into the list.
  virtual Result<std::vector<FolderEntry>> list(std::string_view folder,
                                                Entries entries = Entries::plain) const = 0;
  // Whether the path's last element is a symbolic link on disk. True as well when something stands
  // there and the disk does not tell what: whoever asks must not go through a link.
  virtual bool isLink(std::string_view path) const = 0;
  // A text that is equal for two paths exactly when they lead to the same folder on disk, through
  // whatever links; "" when there is none or the disk does not tell, which attributes() tells
  // apart. A walk uses it to keep out of circles.
  virtual std::string identity(std::string_view folder) const = 0;

  // The native path of a folder that stands, all links resolved, with a trailing slash: a folder
  // lies in another one on disk exactly when its canonical path begins with that one's.
  virtual Result<std::string> canonicalPath(std::string_view folder) const = 0;

  // Keeps the time of last change, replaces an existing file unless that is read-only, and never
  // leaves a half-written target.
  virtual Outcome copyFile(std::string_view from, std::string_view to) = 0;
  // The same for a backup: with its name it is on the disk when the call returns.
  virtual Outcome copyFileDurably(std::string_view from, std::string_view to) = 0;
  // Copies each as copyFile does, several at a time where the disk gains by it: their targets must
  // be different files. `copied` is called on the calling thread once for each, in their order, and
  // may use the file system. It answers whether to go on: if not, no further copy begins, and those
  // that have are finished and told.
  virtual void copyFiles(const std::vector<FileCopy>& copies,
                         const std::function<bool(const Outcome&)>& copied) {
    for (const FileCopy& copy : copies)
      if (!copied(copyFile(copy.from, copy.to))) return;
  }
  // The result of copyFile and then deleteFile of the source, by a rename where both lie on one
  // disk. The source goes last: a failure leaves it, and the older target or the whole new one.
  virtual Outcome moveFile(std::string_view from, std::string_view to) = 0;
  // Files and folders. Fails with fileExists when the new name stands there (in other letters too,
  // unless it is the very same file that only gets other letters).
  virtual Outcome rename(std::string_view from, std::string_view to) = 0;
  // Removes a link itself, never its target. Fails with pathFileAccess on a read-only file.
  virtual Outcome deleteFile(std::string_view path) = 0;
  // Deletes each, whatever its attributes, several at a time where the disk gains by it. `deleted`
  // is called as `copied` of copyFiles is.
  virtual void deleteFiles(const std::vector<std::string>& paths,
                           const std::function<bool(const Outcome&)>& deleted) {
    for (const std::string& path : paths) {
      setAttributes(path, {}).skipped();
      if (!deleted(deleteFile(path))) return;
    }
  }
  // One level. Fails with pathFileAccess when the folder exists, pathNotFound when its parent does
  // not.
  virtual Outcome makeFolder(std::string_view path) = 0;
  // Only an empty folder, hidden entries count. A link to a folder is removed itself.
  virtual Outcome removeFolder(std::string_view path) = 0;

  virtual Result<std::uint64_t> fileLength(std::string_view path) const = 0;
  virtual Result<FileTime> modified(std::string_view path) const = 0;
  // The two and attributes() of a file, where the disk tells them in one look.
  virtual Result<FileState> fileState(std::string_view path) const {
    const auto found = attributes(path);
    if (!found.ok()) return found.outcome();
    const auto length = fileLength(path);
    if (!length.ok()) return length.outcome();
    const auto time = modified(path);
    if (!time.ok()) return time.outcome();
    return FileState{found.value(), length.value(), time.value()};
  }

  virtual Result<std::string> readFile(std::string_view path) const = 0;
  // Replaces or makes the file whole: written beside its target, flushed to disk, renamed over it,
  // with the permissions of the file it replaces.
  virtual Outcome replaceFile(std::string_view path, std::string_view content) = 0;
  // The same, but all that the file is to its folder stays: its attributes and the times of its
  // last access, its last change and, where the disk lets one be set, its creation. One that is
  // read-only is replaced as well and stays read-only. In a link's place comes a new file.
  virtual Outcome replaceContent(std::string_view path, std::string_view content) = 0;
  // The folder must exist.
  virtual Result<std::unique_ptr<FileWriter>> createFile(std::string_view path) = 0;
  // Makes files of different names in one folder, each as createFile, write and commit do, which
  // costs less for many small ones. Ends with the first that fails: `made` counts those before it.
  virtual Outcome writeFiles(const std::string& folder, std::span<const NewFile> files,
                             std::size_t& made) {
    for (made = 0; made < files.size(); ++made) {
      auto file = createFile(folder + "\\" + files[made].name);
      if (!file.ok()) return file.outcome();
      if (Outcome written = file.value()->write(files[made].content); !written.ok()) return written;
      Outcome named = file.value()->commit(files[made].modified);
      if (!named.ok()) return named;
    }
    return {};
  }

  // Bytes that an ordinary user may still write on the disk behind `path`, a folder that stands, be
  // it a mount point or below one. A quota counts where the disk shows it in its free space.
  virtual Result<double> freeBytes(std::string_view path) const = 0;
  // Puts all that was written to the disk behind `path` on it: once at the end of a job, before a
  // list or a mark says that its files are there and before what they were copied from goes.
  // `path`: a folder that stands, the one that was filled, since a drive may span several disks.
  // Fails when something that was written before could not be put there.
  virtual Outcome flushDisk(std::string_view path) = 0;

  // Full path of an existing folder, with trailing backslash.
  virtual std::string currentFolder() const = 0;
  virtual Outcome setCurrentFolder(std::string_view path) = 0;

  // The place on disk that a path means, whether something stands there or not: for libraries and
  // programs that take a path of the machine. Fails with badFileName or pathNotFound.
  virtual Result<std::string> nativePath(std::string_view path) const = 0;
  // The Windows path of a place on disk, by the drive that reaches it with the fewest elements.
  virtual std::string windowsPath(std::string_view native) const = 0;
};

}  // namespace skv
