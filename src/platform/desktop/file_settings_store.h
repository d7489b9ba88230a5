// The settings in one text file, readable by its user alone:
//
//   [General]
//   HangarDir=C:\Hangar
//
// Sections and keys match without regard to case. What would break a line is written as %XX.
#pragma once

#include <map>
#include <string>

#include "platform/platform.h"

namespace skv {

class FileSettingsStore : public SettingsStore {
 public:
  // `file`: native path. A missing file is an empty store, and a line that is no setting is passed
  // over.
  explicit FileSettingsStore(std::string file);
  // Below the user's configuration folder.
  static std::string defaultFile();

  Outcome state() override;
  std::string read(std::string_view section, std::string_view key,
                   std::string_view fallback) const override;
  // Replaces the file in one step, with what somebody has changed in it by hand meanwhile. A file
  // that exists and cannot be read is never replaced.
  Outcome writeTogether(std::span<const StoredValue> values) override;

 private:
  struct Entry {
    std::string key, value;
  };
  struct Section {
    std::string name;
    std::map<std::string, Entry> entries;  // by upper-cased key
  };
  using Sections = std::map<std::string, Section>;  // by upper-cased name
  void readAnew();
  Result<Sections> load() const;
  static Sections parse(const std::string& bytes);
  Outcome save(const Sections& sections) const;

  const std::string file_;
  Sections sections_;
  Outcome state_;  // of the last attempt to read them
};

}  // namespace skv
