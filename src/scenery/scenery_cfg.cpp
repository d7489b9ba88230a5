#include "scenery/scenery_cfg.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "core/profile.h"

namespace skv {

namespace {

constexpr int mostMisses = 10;     // numbers without an area that are passed over in a row
constexpr int indexedValues = 10;  // of Flatten and of Exclude
constexpr const char* areaPrefix = "Area.";
// About as many bytes as a line takes besides its value, and an area besides its lists.
constexpr std::size_t valueLine = 16, plainLines = 256;

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

bool isTrue(const Profile& file, const std::string& section, const char* key) {
  return lowerAscii(file.read(section, key)) == "true";
}

// Calls `take` with each number that is an area, upwards, until too many in a row are none.
template <class Take>
void forEachArea(const Profile& file, Take take) {
  int misses = 0;
  for (int number = 1; number <= SceneryCfg::lastNumber && misses <= mostMisses; ++number) {
    const std::string section = sectionName(number);
    std::string title = file.read(section, "Title");
    misses = title.empty() ? misses + 1 : 0;
    if (misses == 0) take(number, section, std::move(title));
  }
}

// The number of a section's name, 0 when an area's name is written otherwise.
int numberOf(std::string_view name) {
  constexpr std::size_t digits = 3;
  const std::string_view number = name.substr(std::string_view(areaPrefix).size());
  if (number.size() != digits || number.find_first_not_of("0123456789") != std::string_view::npos)
    return 0;
  return static_cast<int>(val(number));
}

// Areas that a file has and `reached` lacks: of another number, the second of a name, or without a
// title.
std::vector<std::string> unreachedAreas(const Profile& file, std::set<int> reached) {
  const std::string prefix = lowerAscii(areaPrefix);
  // What to say of the sections of a name, in lower case; "" for empty ones. Each is looked at
  // once, however often a file has its header.
  std::map<std::string, std::string> said;
  std::vector<std::string> areas;
  for (const std::string& name : file.sections()) {
    std::string lower = lowerAscii(name);
    if (!lower.starts_with(prefix)) continue;
    const auto [words, isNew] = said.try_emplace(std::move(lower));
    if (isNew && !file.read(name, "").empty()) {
      words->second = name + " (there twice)";
      if (reached.erase(numberOf(name)) != 0) continue;
      const std::string title = file.read(name, "Title");
      areas.push_back(name);
      areas.back().append(title.empty() ? " (no title)" : ": ").append(title);
    } else if (!isNew && !words->second.empty()) {
      areas.push_back(words->second);
    }
  }
  return areas;
}

SceneryCfg outlineOf(const Profile& file) {
  std::set<int> reached;
  forEachArea(file, [&](int number, const std::string&, const std::string&) {
    reached.insert(reached.end(), number);
  });
  return {.Cache_Size = file.read("General", "Cache_Size"),
          .Clean_On_Exit = file.read("General", "Clean_On_Exit"),
          .unreached = unreachedAreas(file, std::move(reached))};
}

bool isBlank(char c) { return static_cast<unsigned char>(c) <= ' '; }

// The system call takes blanks and one pair of quotes off a value: what has some of its own is put
// into quotes.
bool needsQuotes(std::string_view value) {
  if (value.empty()) return false;
  const bool quoted = value.size() > 1 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  return quoted || isBlank(value.front()) || isBlank(value.back());
}

void appendLine(std::string& text, std::string_view key, std::string_view value) {
  const std::string_view quote = needsQuotes(value) ? "\"" : "";
  text.append(key).append("=").append(quote);
  const std::size_t start = text.size();
  text.append(value);
  for (const char lineEnd : {'\r', '\n'})
    for (std::size_t at = start; (at = text.find(lineEnd, at)) != std::string::npos;)
      text[at] = ' ';
  text.append(quote).append("\r\n");
}

void appendValues(std::string& text, const std::string& key,
                  const std::vector<std::string>& values) {
  for (std::size_t i = 0; i < values.size(); ++i)
    appendLine(text, i == 0 ? key : key + "." + std::to_string(i - 1), values[i]);
}

}  // namespace

SceneryCfg parseSceneryCfg(std::string_view bytes, const CodePage& codePage) {
  const Profile file(bytes, codePage);
  SceneryCfg cfg = outlineOf(file);
  forEachArea(file, [&](int number, const std::string& section, std::string title) {
    cfg.areas.push_back({.number = number,
                         .Title = std::move(title),
                         .Layer = file.read(section, "Layer"),
                         .Local = file.read(section, "Local"),
                         .Active = isTrue(file, section, "Active"),
                         .Required = isTrue(file, section, "Required"),
                         .Remote = file.read(section, "Remote"),
                         .Texture_ID = file.read(section, "Texture_ID"),
                         .Flatten = valuesOf(file, section, "Flatten"),
                         .Exclude = valuesOf(file, section, "Exclude")});
  });
  return cfg;
}

SceneryCfg outlineOfSceneryCfg(std::string_view bytes, const CodePage& codePage) {
  return outlineOf(Profile(bytes, codePage));
}

std::string sceneryCfgBytes(const SceneryCfg& cfg, const CodePage& codePage) {
  std::string text = "[General]\r\n";
  std::size_t values = 0;
  for (const SceneryArea& area : cfg.areas)
    for (const auto* list : {&area.Flatten, &area.Exclude})
      for (const std::string& value : *list) values += value.size() + valueLine;
  text.reserve(values + cfg.areas.size() * plainLines);
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
  return codePage.encode(std::move(text));
}

}  // namespace skv
