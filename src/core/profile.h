// Private-profile files ("INI files"): aircraft.cfg, panel.cfg, Scenery.cfg, read and written as
// the system calls of that name do.
//
//   [fltsim.0]
//   title=Boeing 737-400
//   sim=Boeing737-400
//
// Names of sections and keys match without regard to case, as far as A to Z go: beyond, the call
// tells capitals from small letters. The first of two equal ones counts. CR, LF and both together
// end lines, the blanks around names and values don't count, nor do one pair of quotes around a
// value. Keys that begin with ";" and lines without "=" are not listed.
//
// A write changes the value in its line, or adds a line at the end of its section, and leaves every
// other byte as it was. A file that a byte order mark shows to be UTF-8 or UTF-16 stays so.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/outcome.h"
#include "base/text.h"
#include "platform/file_system.h"

namespace skv {

// One profile file in memory. All text of the interface is UTF-8.
class Profile {
 public:
  // Takes the file's bytes; never fails, whatever they are.
  Profile(std::string_view bytes, const CodePage& codePage);
  ~Profile();
  Profile(Profile&&) noexcept;
  Profile& operator=(Profile&&) noexcept;

  // As ReadProfile below.
  std::string read(std::string_view section, std::string_view key) const;
  // The names of all sections in the file's order, each as often as it has a header.
  std::vector<std::string> sections() const;
  // An empty value writes the key with an empty value. A section that the file lacks is added at
  // its end. Costs no rebuilding of the file: many writes and one bytes() are linear. Line breaks
  // in `value` become blanks. False, and nothing is changed, when the line would not be read as
  // that key: it would be the header of a section ("[key=]"), or the key holds a "=".
  bool write(std::string_view section, std::string_view key, std::string_view value);
  // The whole file as it is now.
  std::string bytes() const;

 private:
  struct Content;
  std::unique_ptr<Content> content_;
};

// Reads keys of any files, each file read and parsed once in the reader's life. Make one for the
// length of an operation that does not yield; a file that changes meanwhile is not seen.
class ProfileReader {
 public:
  ProfileReader(const FileSystem& files, const CodePage& codePage);
  // As ReadProfile below.
  std::string read(const std::string& file, std::string_view section, std::string_view key);
  // Whether the file could be read: if not, every answer of it is "" without saying anything.
  const Outcome& outcome(const std::string& file) { return opened(file).read; }

 private:
  struct Opened {
    Profile profile;
    Outcome read;
  };
  Opened& opened(const std::string& file);

  const FileSystem& files_;
  const CodePage& codePage_;
  std::map<std::string, Opened, std::less<>> profiles_;
};

// One value, "" when it is absent; with an empty `key` every key name of the section, each followed
// by one NUL; with an empty `section` every section name. At most 65,535 bytes in the code page,
// cut as the system call cuts. A missing file reads as "".
std::string ReadProfile(const FileSystem& files, const CodePage& codePage, const std::string& file,
                        std::string_view section, std::string_view key);

// Replaces the file in one step. Makes it when it is missing.
Outcome WriteProfile(FileSystem& files, const CodePage& codePage, const std::string& file,
                     std::string_view section, std::string_view key, std::string_view value);

}  // namespace skv
