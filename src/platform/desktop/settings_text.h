// The text of a settings file:
//
//   [General]
//   HangarDir=C:\Hangar
//
// Sections and keys match without regard to case, and blanks around a section, a key or a value
// count for nothing. What would break a line is written as %XX. Comments begin with ";".
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "base/outcome.h"

namespace skv {

class SettingsText {
 public:
  SettingsText() = default;
  // Of a value that is there several times the last one holds. Fails for a text that is not empty
  // and has no setting: whatever it is, its owner had settings in that place.
  static Result<SettingsText> parse(std::string bytes);

  // Null when there is none.
  const std::string* find(std::string_view section, std::string_view key) const;
  // Changes the one line, or adds it at the end of its section; all else stays as it was, comments
  // and lines that nobody understands included.
  void set(std::string_view section, std::string_view key, std::string_view value);

  const std::string& bytes() const { return bytes_; }

 private:
  struct Value {
    std::string text;
    std::size_t at = 0, length = 0;  // in bytes_, as it is written
  };
  using Name = std::pair<std::string, std::string>;  // upper-cased section and key
  void read();
  void readLine(std::size_t at, std::string_view line, std::string& section);

  std::string bytes_;
  std::map<Name, Value> values_;
  std::map<std::string, std::size_t> sectionEnds_;  // where another line of the section belongs
};

}  // namespace skv
