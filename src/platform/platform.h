// The outside world as the program asks for it: one interface for each thing, all of them together
// in Platform. main.cpp and the tests choose the implementations and own them.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "base/outcome.h"
#include "platform/file_system.h"
#include "platform/mail_engine.h"
#include "platform/pictures.h"
#include "platform/secrets.h"
#include "platform/simulator_finder.h"
#include "platform/web.h"
#include "platform/zipit.h"

namespace skv {

struct StoredValue {
  std::string_view section, key, value;
};

// Strings by section and key, for this user, kept between runs. A key never written reads as the
// default of the call.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  // Whether the store could be read, with the reason why not; after a failure each call reads it
  // anew. What could not be read is not empty, and is not written over.
  virtual Outcome state() { return {}; }
  virtual std::string read(std::string_view section, std::string_view key,
                           std::string_view fallback) const = 0;
  // Stores all of the values or, but for a failure at the very end that leaves them open, none.
  virtual Outcome writeTogether(std::span<const StoredValue> values) = 0;
  Outcome write(std::string_view section, std::string_view key, std::string_view value) {
    const StoredValue one{section, key, value};
    return writeTogether({&one, 1});
  }
};

class Clock {
 public:
  virtual ~Clock() = default;
  // Local time as a day count: days since 30 December 1899, the time of day as the fraction.
  virtual double now() const = 0;
};

// Programs of the desktop.
class Shell {
 public:
  virtual ~Shell() = default;
  // Opens a document, file or address with the desktop's program for it. Above 32 is success; other
  // results are those of the classic shell call (2 file not found, 31 no association, ...).
  virtual int open(std::string_view target) = 0;
  // Whether the desktop has a program for documents of a media type, as in "text/html".
  virtual bool hasProgramFor(std::string_view mediaType) = 0;
  // Starts the desktop's plain text editor on a file of this Windows path, without waiting. Fails
  // with fileNotFound when there is no such editor.
  virtual Outcome editText(std::string_view path) = 0;
};

// What the process was started with.
struct Environment {
  std::string programFolder;  // Windows path of the folder of the program file
  // What the variable TEMP names: a Windows path, or its very text where no drive reaches the
  // place;
  // "" when it is not set.
  std::string TEMP;
  std::string home = {};  // Windows path of the user's home, "" when no drive reaches it
  // Windows path of what an installation has apart from the program file, "" when it has not: the
  // specimen pictures, the manual. With trailing backslash.
  std::string dataFolder = {};
  // The letter of the drive that only the program has, "" when Wine has one for the whole machine.
  std::string ownDrive = {};
  // The user's private folder for what need not last: its Windows path, "" when it cannot be made
  // or no drive reaches it, and its native one.
  std::string cacheFolder = {}, nativeCacheFolder = {};
};

struct Platform {
  FileSystem& files;
  SettingsStore& settings;
  Clock& clock;
  Shell& shell;
  ZipEngine& zip;
  PictureReader& pictures;
  Clipboard& clipboard;
  Screen& screen;
  MailSystem& mail;
  Secrets& secrets;
  Web& web;
  SimulatorFinder& simulators;
  Environment environment;
};

}  // namespace skv
