#include "scenery/scenery_cfg.h"

#include <algorithm>
#include <set>
#include <utility>

#include "core/profile.h"

namespace skv {

namespace {

constexpr int mostMisses = 10;     // numbers without an area that are passed over in a row
constexpr int indexedValues = 10;  // of Flatten and of Exclude
constexpr const char* areaPrefix = "Area.";

std::string threeDigits(int number) {
  const std::string digits = std::to_string(number);
  return std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') + digits;
}

std::string sectionName(int number) { return areaPrefix + threeDigits(number); }

std::vector<std::string> valuesOf(const Profile& file, const std::string& section,
                                  const std::string& key) {
  std::vector<std::string> values{file.read(section, key)};
  for (int i = 0; i < indexedValues; ++i)
    if (auto value = file.read(section, key + "." + std::to_string(i)); !value.empty())
      values.push_back(std::move(value));
  if (values.size() == 1 && values.front().empty()) values.clear();
  return values;
}

// Areas that a file has and nobody has read: of another number, or the second of a name.
int countUnreached(const Profile& file, const std::vector<SceneryArea>& read) {
  std::set<std::string> known;
  for (const SceneryArea& area : read) known.insert(upper(sectionName(area.number)));
  const std::string prefix = upper(areaPrefix);
  int count = 0;
  for (const std::string& name : file.sections())
    if (upper(name).starts_with(prefix) && known.erase(upper(name)) == 0 &&
        !file.read(name, "Title").empty())
      ++count;
  return count;
}

bool isBlank(char c) { return static_cast<unsigned char>(c) <= ' '; }

// The system call takes blanks and one pair of quotes off a value: what has some of its own is put
// into quotes.
std::string written(const std::string& value) {
  std::string line = value;
  std::ranges::replace_if(
      line, [](char c) { return c == '\r' || c == '\n'; }, ' ');
  if (line.empty()) return line;
  const bool quoted = line.size() > 1 && line.front() == line.back() &&
                      (line.front() == '"' || line.front() == '\'');
  return quoted || isBlank(line.front()) || isBlank(line.back()) ? '"' + line + '"' : line;
}

void appendLine(std::string& text, std::string_view key, const std::string& value) {
  text.append(key).append("=").append(written(value)).append("\r\n");
}

void appendValues(std::string& text, const std::string& key,
                  const std::vector<std::string>& values) {
  for (std::size_t i = 0; i < values.size(); ++i)
    appendLine(text, i == 0 ? key : key + "." + std::to_string(i - 1), values[i]);
}

}  // namespace

SceneryCfg parseSceneryCfg(std::string_view bytes, const CodePage& codePage) {
  const Profile file(bytes, codePage);
  SceneryCfg cfg;
  cfg.Cache_Size = file.read("General", "Cache_Size");
  cfg.Clean_On_Exit = file.read("General", "Clean_On_Exit");
  int misses = 0;
  for (int number = 1; number <= SceneryCfg::lastNumber && misses <= mostMisses; ++number) {
    const std::string section = sectionName(number);
    SceneryArea area;
    area.Title = file.read(section, "Title");
    if (area.Title.empty()) {
      ++misses;
      continue;
    }
    misses = 0;
    area.number = number;
    area.Layer = file.read(section, "Layer");
    area.Local = file.read(section, "Local");
    area.Active = lowerAscii(file.read(section, "Active")) == "true";
    area.Remote = file.read(section, "Remote");
    area.Texture_ID = file.read(section, "Texture_ID");
    area.Flatten = valuesOf(file, section, "Flatten");
    area.Exclude = valuesOf(file, section, "Exclude");
    cfg.areas.push_back(std::move(area));
  }
  cfg.unreached = countUnreached(file, cfg.areas);
  return cfg;
}

std::string sceneryCfgBytes(const SceneryCfg& cfg, const CodePage& codePage) {
  std::string text = "[General]\r\n";
  appendLine(text, "Cache_Size", cfg.Cache_Size);
  appendLine(text, "Clean_On_Exit", cfg.Clean_On_Exit);
  int number = 0;
  for (const SceneryArea& area : cfg.areas) {
    ++number;
    text += "[" + sectionName(number) + "]\r\n";
    appendLine(text, "Title", area.Title);
    appendLine(text, "Layer", std::to_string(number));
    appendLine(text, "Local", area.Local);
    appendLine(text, "Active", area.Active ? "TRUE" : "FALSE");
    appendLine(text, "Remote", area.Remote);
    appendLine(text, "Texture_ID", area.Texture_ID);
    appendValues(text, "Flatten", area.Flatten);
    appendValues(text, "Exclude", area.Exclude);
  }
  return codePage.encode(text);
}

}  // namespace skv
