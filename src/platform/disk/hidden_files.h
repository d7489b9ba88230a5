// Files that are being made under hidden names, and what a run that was killed has left of them.
//
// Each name is noted in one file of the user's before it is given, so that the next start removes
// exactly those that were not finished, and looks through no folder for them:
//
//   /home/me/.wine/drive_c/FS2002/aircraft/b737/.skv-0123456789abcdef.tmp NUL ...
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "platform/disk/native_calls.h"

namespace skv {

// Whether a name is one that an unfinished file may have had when its maker was killed.
bool isHiddenName(std::string_view name);
std::string someHiddenName();

class HiddenFiles {
 public:
  // Removes what `notes`, a native path, tells of the last run, and notes from now on. Names on a
  // disk that is away stay noted. While another run has the notes nothing is removed or noted.
  explicit HiddenFiles(const std::string& notes);
  ~HiddenFiles();
  HiddenFiles(const HiddenFiles&) = delete;
  HiddenFiles& operator=(const HiddenFiles&) = delete;

  static std::string defaultNotes();

  // Around the time in which a file has the hidden name `native`; from any thread. Without an
  // object, as in tests, they do nothing.
  static void begin(const std::string& native);
  static void end();

 private:
  void note(const std::string& native);
  void forget();

  std::mutex mutex_;
  Descriptor notes_;
  int open_ = 0;               // files that have a hidden name now
  off_t kept_ = 0, size_ = 0;  // bytes of the notes: from runs before, and all
};

}  // namespace skv
