// The ZIP control: one object works on one archive.
//
//   auto zip = engine.load(files);
//   zip->setArchivefile("C:\\Packs\\b737.zip");     // opens it, when it exists
//   zip->extractfolder = "C:\\Temp\\run\\";
//   zip->usedirectoryinfo = true;
//   zip->extractfiles(names);                        // on disk when the call returns
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/outcome.h"
#include "platform/file_system.h"

namespace skv {

struct ZipEntry {
  // The path inside the archive. Stored text is decoded (flagged UTF-8, else the system's code page
  // or 437, whichever the archive's maker used); separators stand as stored. A folder entry ends in
  // one.
  std::string Filename;
  std::uint64_t UncompressedSize = 0;  // bytes, as the archive's directory says
};

struct RenamedEntry {
  std::string from, to;  // paths below the folder of the extraction, with backslashes
};

class Zipit {
 public:
  virtual ~Zipit() = default;

  bool usedirectoryinfo = false;    // keep the folders of names when adding and extracting
  int addaction = 0;                // 1: add and replace
  int extraction = 0;               // 1: extract and replace
  bool includesystemfiles = false;  // whether files with the system attribute are added
  int compressionlevel = 6;         // 0 to 9
  bool extractswitch = false;       // set by the callers that install; no effect of its own
  std::string extractfolder;        // Windows path, with or without trailing backslash

  // Opens the archive for listing. A file that does not exist is no error: addfiles creates it. One
  // that is no readable ZIP is.
  virtual Outcome setArchivefile(std::string_view path) = 0;
  // In the order of the archive's directory. 0-based here; the program's texts count from 1.
  virtual const std::vector<ZipEntry>& entries() const = 0;

  // Stores each file, named relative to the current folder of the file system, under exactly that
  // name. Replaces the archive that was opened, and no other one that has come since; the archive
  // appears under its name only when complete.
  virtual Outcome addfiles(const std::vector<std::string>& names) = 0;
  // Writes every named entry below extractfolder, making folders as needed, with the entry's time.
  // Nothing is ever written outside extractfolder. Stops at the first entry that cannot be
  // extracted; the description names archive and entry. What was complete by then stays.
  virtual Outcome extractfiles(const std::vector<std::string>& names) = 0;
  // Success when the open archive has an entry of this name with the length and the CRC-32 of the
  // bytes that the file `path` holds now; otherwise what it lacks. Names match whichever way their
  // slashes lean.
  virtual Outcome holdsFile(std::string_view name, std::string_view path) = 0;
  // What the last extractfiles has put under another name than the stored one, as the disk cannot
  // take that: files, and folders apart from what lies in them.
  virtual const std::vector<RenamedEntry>& renamed() const = 0;

  // Events, on the calling thread, during addfiles and extractfiles. Percent: 0 to 100; extraction
  // reports 100 once at its end, whether it succeeded or not, so that nobody waits forever.
  std::function<void(int percent)> AddProgress;
  std::function<void(int percent)> ExtractProgress;
  std::function<void()> BarReset1;  // a job begins
  std::function<void()> BarReset2;  // a job is over
  // Called often during a job so that the window can live; may run any operation of the program.
  // Answers whether the job may go on: one that may not stops at the next entry, with
  // err::cancelled.
  std::function<bool()> Yield;
};

class ZipEngine {
 public:
  virtual ~ZipEngine() = default;
  virtual std::unique_ptr<Zipit> load(FileSystem& files) = 0;
};

}  // namespace skv
