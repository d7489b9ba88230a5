#include "core/profile.h"

#include <optional>
#include <unordered_map>

namespace skv {

namespace {

// The buffer that a reading call of the system is given, in bytes.
constexpr std::size_t bufferSize = 65536;

// What the system passes over at either end of a name, a value or a line; the end mark of old text
// files counts as a blank.
constexpr std::string_view blanks = " \t\r\n\v\f\x1a";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view lineEnd(std::string_view line) {
  if (line.ends_with("\r\n")) return "\r\n";
  return line.ends_with('\n') ? "\n" : "";
}

std::string_view withoutQuotes(std::string_view value) {
  const bool quoted = value.size() > 1 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

// The name in a section header; none for any other line. The header ends at its last bracket.
std::optional<std::string_view> sectionName(std::string_view line) {
  const std::string_view text = trimmed(line);
  if (!text.starts_with('[')) return std::nullopt;
  const auto end = text.rfind(']');
  if (end == std::string_view::npos) return std::nullopt;
  return trimmed(text.substr(1, end - 1));
}

struct KeyLine {
  std::string_view name;
  std::optional<std::string_view> value;  // none on a line without "="
};

KeyLine parseKeyLine(std::string_view line) {
  const auto equals = line.find('=');
  if (equals == std::string_view::npos) return {trimmed(line), std::nullopt};
  return {trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1))};
}

// Names as the call lists them, cut as it cuts: two closing NULs always fit the buffer.
std::string cutList(std::string list) {
  if (list.size() + 1 > bufferSize) list.resize(bufferSize - 2);
  return list;
}

}  // namespace

struct Profile::Content {
  struct Section {
    std::string name;                // in the code page; "" before the first header
    std::vector<std::string> lines;  // as in the file, each with its line end; the header first
    std::unordered_map<std::string, std::size_t> keys;  // upper-cased name to its first line

    void index(std::size_t line, const CodePage& codePage) {
      const std::string_view key = parseKeyLine(lines[line]).name;
      if (!key.empty()) keys.try_emplace(upper(codePage.decode(key)), line);
    }
  };

  explicit Content(const CodePage& page) : codePage(page) { sections.emplace_back(); }

  void addLine(std::string line) {
    if (const auto name = sectionName(line)) {
      Section section;
      section.name = *name;
      section.lines.push_back(std::move(line));
      addSection(std::move(section));
      return;
    }
    Section& section = sections.back();
    section.lines.push_back(std::move(line));
    if (sections.size() > 1) section.index(section.lines.size() - 1, codePage);
  }

  void addSection(Section section) {
    byName.try_emplace(upper(codePage.decode(section.name)), sections.size());
    sections.push_back(std::move(section));
  }

  Section* find(std::string_view name) {
    const auto found = byName.find(upper(trimmed(name)));
    return found == byName.end() ? nullptr : &sections[found->second];
  }

  CodePage codePage;
  std::string lineEnding = "\r\n";  // the file's own, by its first line
  std::vector<Section> sections;    // the first one holds what stands before any header
  std::unordered_map<std::string, std::size_t> byName;  // upper-cased, the first of equal ones
};

Profile::Profile(std::string bytes, const CodePage& codePage)
    : content_(std::make_unique<Content>(codePage)) {
  bool first = true;
  for (std::size_t start = 0; start < bytes.size();) {
    const auto end = bytes.find('\n', start);
    const std::size_t next = end == std::string::npos ? bytes.size() : end + 1;
    std::string line = bytes.substr(start, next - start);
    if (first && !lineEnd(line).empty()) content_->lineEnding = lineEnd(line);
    first = false;
    content_->addLine(std::move(line));
    start = next;
  }
}

Profile::~Profile() = default;
Profile::Profile(Profile&&) noexcept = default;
Profile& Profile::operator=(Profile&&) noexcept = default;

std::string Profile::read(std::string_view section, std::string_view key) const {
  const CodePage& codePage = content_->codePage;
  if (section.empty()) {
    std::string names;
    for (const Content::Section& one : content_->sections)
      if (!one.name.empty()) names.append(one.name).push_back('\0');
    return codePage.decode(cutList(std::move(names)));
  }
  const Content::Section* found = content_->find(section);
  if (found == nullptr) return {};
  if (key.empty()) {
    std::string names;
    for (std::size_t line = 1; line < found->lines.size(); ++line) {
      const KeyLine parsed = parseKeyLine(found->lines[line]);
      if (parsed.value && !parsed.name.starts_with(';')) names.append(parsed.name).push_back('\0');
    }
    return codePage.decode(cutList(std::move(names)));
  }
  const auto line = found->keys.find(upper(trimmed(key)));
  if (line == found->keys.end()) return {};
  const auto value = parseKeyLine(found->lines[line->second]).value;
  if (!value) return {};
  return codePage.decode(withoutQuotes(*value).substr(0, bufferSize - 1));
}

void Profile::write(std::string_view section, std::string_view key, std::string_view value) {
  const CodePage& codePage = content_->codePage;
  const std::string& ending = content_->lineEnding;
  // A value ends where a reader would see it end.
  const std::string stored = codePage.encode(value.substr(0, value.find_first_of({"\r\n\0", 3})));
  const auto endLastLine = [&ending](Content::Section& before) {
    if (!before.lines.empty() && lineEnd(before.lines.back()).empty())
      before.lines.back() += ending;
  };

  Content::Section* found = content_->find(section);
  if (found == nullptr) {
    endLastLine(content_->sections.back());
    Content::Section added;
    added.name = codePage.encode(trimmed(section));
    added.lines.push_back("[" + added.name + "]" + ending);
    content_->addSection(std::move(added));
    found = &content_->sections.back();
  }
  const std::string name(trimmed(key));
  if (const auto known = found->keys.find(upper(name)); known != found->keys.end()) {
    std::string& line = found->lines[known->second];
    const std::string end(lineEnd(line));
    const auto equals = line.find('=');
    line = (equals == std::string::npos ? std::string(trimmed(line)) : line.substr(0, equals)) +
           "=" + stored + end;
    return;
  }
  // At the section's end, before the blank lines that part it from the next.
  std::size_t place = found->lines.size();
  while (place > 1 && trimmed(found->lines[place - 1]).empty()) --place;
  if (lineEnd(found->lines[place - 1]).empty()) found->lines[place - 1] += ending;
  found->lines.insert(found->lines.begin() + static_cast<std::ptrdiff_t>(place),
                      codePage.encode(name) + "=" + stored + std::string(ending));
  // Only blank lines have moved, and they have no name to be found by.
  found->index(place, codePage);
}

std::string Profile::bytes() const {
  std::string bytes;
  for (const Content::Section& section : content_->sections)
    for (const std::string& line : section.lines) bytes += line;
  return bytes;
}

ProfileReader::ProfileReader(const FileSystem& files, const CodePage& codePage)
    : files_(files), codePage_(codePage) {}

std::string ProfileReader::read(const std::string& file, std::string_view section,
                                std::string_view key) {
  auto known = profiles_.find(file);
  if (known == profiles_.end())
    known = profiles_.emplace(file, Profile(files_.readFile(file).valueOr(""), codePage_)).first;
  return known->second.read(section, key);
}

std::string ReadProfile(const FileSystem& files, const CodePage& codePage, const std::string& file,
                        std::string_view section, std::string_view key) {
  return ProfileReader(files, codePage).read(file, section, key);
}

Outcome WriteProfile(FileSystem& files, const CodePage& codePage, const std::string& file,
                     std::string_view section, std::string_view key, std::string_view value) {
  auto bytes = files.readFile(file);
  // Only a missing file may begin empty: one that cannot be read would be lost.
  if (!bytes.ok() && files.attributes(file).ok()) return bytes.outcome();
  Profile profile(bytes.ok() ? std::move(bytes).value() : std::string(), codePage);
  profile.write(section, key, value);
  return files.replaceFile(file, profile.bytes());
}

}  // namespace skv
