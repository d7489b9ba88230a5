// The settings in one text file, readable by its user alone.
#pragma once

#include <string>

#include "platform/desktop/settings_text.h"
#include "platform/platform.h"

namespace skv {

class FileSettingsStore : public SettingsStore {
 public:
  // `file`: native path. A missing or empty file is an empty store; one without any setting in it
  // counts as one that cannot be read.
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
  void readAnew();
  Result<SettingsText> load() const;
  Outcome save(const std::string& bytes) const;

  const std::string file_;
  SettingsText text_;
  Outcome state_;  // of the last attempt to read them
};

}  // namespace skv
