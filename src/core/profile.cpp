#include "core/profile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory_resource>
#include <optional>
#include <unordered_map>
#include <utility>

#include "core/profile_encoding.h"
#include "core/profile_line.h"

namespace skv {

namespace {

// The call's buffer, its closing NUL included.
constexpr std::size_t bufferSize = 65536;

constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Names match without regard to case as far as A to Z go.
struct NameHash {
  std::size_t operator()(std::string_view name) const {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : name) hash = (hash ^ static_cast<unsigned char>(lower(c))) * 0x100000001b3;
    return hash ^ hash >> 32;
  }
};
struct NamesMatch {
  bool operator()(std::string_view a, std::string_view b) const {
    return std::ranges::equal(a, b, {}, lower, lower);
  }
};
// Views of the file's own text where that is a name as it stands; a large file has many.
using Index = std::pmr::unordered_map<std::string_view, std::size_t, NameHash, NamesMatch>;

// Whether a name is the same in every encoding, and ends nowhere before its end.
bool isPlain(std::string_view name) {
  return std::ranges::all_of(
      name, [](char c) { return static_cast<signed char>(c) > 0 && c != '\r' && c != '\n'; });
}

}  // namespace

// The file as its lines, grouped by section.
struct Profile::Content {
  struct Section {
    explicit Section(std::pmr::memory_resource& memory) : keys(&memory) {}
    Section(Section&&) = default;  // a copy would be of other memory

    std::string_view name;                // as the file spells it, UTF-8
    std::vector<std::string_view> lines;  // from the header to the last line that is not blank
    std::string_view blankLines;          // what follows them
    Index keys;                           // UTF-8 name to index in `lines`
  };

  Content(std::string bytes, const CodePage& codePage);

  // Where a name that is asked for stands. What the code page lacks of the name, it never gets.
  std::optional<std::size_t> find(const Index& index, std::string_view name) const;
  // Text of the file as UTF-8, which lasts as long as this.
  std::string_view decoded(std::string_view text);
  std::optional<std::string> headerName(std::string_view line) const;
  void addParsed(std::string_view line);
  void indexLine(Section& section, std::size_t line);
  std::string keyNames(const Section& section) const;
  std::string sectionNames() const;

  std::string_view keep(std::string line) { return written.emplace_back(std::move(line)); }
  std::string_view lineEndNear(std::size_t section) const;
  void endLastLine(std::size_t section);
  std::size_t addSection(std::string_view name);
  bool change(Section& section, std::size_t line, std::string_view value);
  bool add(std::string_view section, std::string_view key, std::string_view value);

  ProfileEncoding encoding;
  const std::string file;           // the lines as read; most views are of it
  std::deque<std::string> written;  // the lines that were changed or added
  std::pmr::monotonic_buffer_resource memory;
  std::vector<Section> sections;  // the first holds what stands before any header
  Index byName{&memory};          // to the first section of a name
};

Profile::Content::Content(std::string bytes, const CodePage& codePage)
    : encoding(bytes, codePage), file(std::move(bytes)) {
  sections.emplace_back(memory);
  byName.emplace("", 0);
  for (const std::string_view line : splitLines(file)) addParsed(line);
}

std::optional<std::size_t> Profile::Content::find(const Index& index, std::string_view name) const {
  const auto found = isPlain(name)
                         ? index.find(trimBlanks(name))
                         : index.find(trimBlanks(encoding.decode(encoding.encode(oneLine(name)))));
  return found == index.end() ? std::nullopt : std::optional(found->second);
}

std::string_view Profile::Content::decoded(std::string_view text) {
  return isPlain(text) ? text : keep(encoding.decode(text));
}

// The name in a header line, which goes to the last bracket.
std::optional<std::string> Profile::Content::headerName(std::string_view line) const {
  const std::string_view text = trimBlanks(line);
  if (!text.starts_with('[')) return std::nullopt;
  // Decoded first: in some code pages a bracket is half of a character.
  std::string name = encoding.decode(text.substr(1));
  const auto end = name.rfind(']');
  if (end == std::string::npos) return std::nullopt;
  name.resize(end);
  return std::string(untilNul(trimBlanks(name)));
}

void Profile::Content::addParsed(std::string_view line) {
  if (trimBlanks(line).empty()) {
    std::string_view& blanks = sections.back().blankLines;
    blanks = blanks.empty() ? line : std::string_view(blanks.data(), blanks.size() + line.size());
    return;
  }
  if (auto name = headerName(line)) {
    Section& section = sections.emplace_back(memory);
    section.name = keep(*std::move(name));
    section.lines.push_back(line);
    byName.emplace(section.name, sections.size() - 1);
    return;
  }
  Section& section = sections.back();
  if (!section.blankLines.empty()) section.lines.push_back(std::exchange(section.blankLines, {}));
  section.lines.push_back(line);
  indexLine(section, section.lines.size() - 1);
}

void Profile::Content::indexLine(Section& section, std::size_t line) {
  section.keys.emplace(decoded(untilNul(partsOf(section.lines[line]).name)), line);
}

std::string Profile::Content::keyNames(const Section& section) const {
  std::string names;
  bool afterNameless = false;
  for (std::size_t i = 1; i < section.lines.size(); ++i) {
    if (trimBlanks(section.lines[i]).empty()) continue;
    const KeyLine parts = partsOf(section.lines[i]);
    const std::string_view name = untilNul(parts.name);
    // Of several lines without a name the call takes the first. One that a NUL begins has a name to
    // it, if an empty one.
    const bool passed = std::exchange(afterNameless, name.empty()) && parts.name.empty();
    if (passed || !parts.hasEquals || name.starts_with(';')) continue;
    names += encoding.toCodePage(name);
    names += '\0';
  }
  // A list that begins with a key without name looks empty to the call.
  if (names.starts_with('\0')) names.clear();
  return names;
}

std::string Profile::Content::sectionNames() const {
  std::string names;
  for (const Section& section : sections) {
    if (section.name.empty()) continue;
    names += encoding.toCodePage(encoding.encode(section.name));
    names += '\0';
  }
  return names;
}

// How lines end at the end of a section: as the nearest line before it does, or else after it.
std::string_view Profile::Content::lineEndNear(std::size_t section) const {
  for (std::size_t i = section + 1; i-- > 0;) {
    // Of a section's lines only the last can lack its end.
    const auto& lines = sections[i].lines;
    for (std::size_t k = lines.size(); k-- > 0;)
      if (const auto end = lineEnd(lines[k]); !end.empty()) return end;
  }
  if (section + 1 < sections.size())
    if (const auto end = lineEnd(sections[section + 1].lines.front()); !end.empty()) return end;
  return "\r\n";
}

// The file's last line may lack its end, which it needs before another can follow.
void Profile::Content::endLastLine(std::size_t section) {
  auto& lines = sections[section].lines;
  if (lines.empty() || !lineEnd(lines.back()).empty()) return;
  lines.back() = keep(std::string(lines.back()) + std::string(lineEndNear(section)));
}

// Adds a section without keys at the file's end.
std::size_t Profile::Content::addSection(std::string_view name) {
  const std::size_t added = sections.size();
  const std::string_view end = lineEndNear(added - 1);
  Section section(memory);
  section.name = keep(std::string(trimBlanks(oneLine(name))));
  section.lines.push_back(keep("[" + encoding.encode(section.name) + "]" + std::string(end)));

  std::string_view& blanks = sections.back().blankLines;
  if (const auto mark = blanks.find(endOfFileMark); mark != std::string_view::npos) {
    section.blankLines = blanks.substr(mark);
    blanks = blanks.substr(0, mark);
  }
  endLastLine(added - 1);
  if (!blanks.empty() && lineEnd(blanks).empty())
    blanks = keep(std::string(blanks) + std::string(end));

  byName.emplace(keep(encoding.decode(encoding.encode(section.name))), added);
  sections.push_back(std::move(section));
  return added;
}

// Puts `value` in the place of the one that stands there, and leaves the rest of the line.
bool Profile::Content::change(Section& section, std::size_t line, std::string_view value) {
  const std::string_view old = section.lines[line];
  const KeyLine parts = partsOf(old);
  const auto start = static_cast<std::size_t>(parts.value.data() - old.data());
  std::string changed(old.substr(0, start));
  if (!parts.hasEquals) changed += '=';
  changed += value;
  std::string_view rest = old.substr(start + parts.value.size());
  // Blanks at the value's end take the place of those in the line, which would grow otherwise.
  if (trimBlanks(value) != value)
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t\v\f"), rest.size()));
  changed += rest;
  if (headerName(changed)) return false;
  section.lines[line] = keep(std::move(changed));
  return true;
}

bool Profile::Content::add(std::string_view section, std::string_view key, std::string_view value) {
  std::string line = encoding.encode(trimBlanks(oneLine(key)));
  line += '=';
  line += value;
  if (headerName(line)) return false;
  const auto found = find(byName, section);
  const std::size_t place = found ? *found : addSection(section);
  line += lineEndNear(place);
  endLastLine(place);
  sections[place].lines.push_back(keep(std::move(line)));
  indexLine(sections[place], sections[place].lines.size() - 1);
  return true;
}

Profile::Profile(std::string_view bytes, const CodePage& codePage)
    : content_(std::make_unique<Content>(std::string(bytes), codePage)) {}
Profile::~Profile() = default;
Profile::Profile(Profile&&) noexcept = default;
Profile& Profile::operator=(Profile&&) noexcept = default;

std::string Profile::read(std::string_view section, std::string_view key) const {
  const Content& content = *content_;
  const auto answer = [&content](std::string bytes, std::size_t longest) {
    if (bytes.size() > longest) bytes.resize(longest);
    return content.encoding.codePage().decode(bytes);
  };
  // Behind a list the buffer holds one NUL more.
  if (section.empty()) return answer(content.sectionNames(), bufferSize - 2);
  const auto place = content.find(content.byName, section);
  if (!place) return {};
  const Content::Section& found = content.sections[*place];
  if (key.empty()) {
    // For a list the call takes the name with its blanks, and passes over keys before any header.
    if (*place == 0 || trimBlanks(section) != section) return {};
    return answer(content.keyNames(found), bufferSize - 2);
  }
  const auto line = content.find(found.keys, key);
  if (!line) return {};
  const std::string_view value = partsOf(found.lines[*line]).value;
  const std::string_view plain = withoutQuotes(value);
  std::string text = content.encoding.toCodePage(plain);
  // The call takes the closing quote off in its buffer, where one place too few for it costs the
  // character before.
  const bool lacksQuote = plain.size() < value.size() && text.size() == bufferSize - 1;
  return answer(std::move(text), lacksQuote ? bufferSize - 2 : bufferSize - 1);
}

std::vector<std::string> Profile::sections() const {
  std::vector<std::string> names;
  for (std::size_t i = 1; i < content_->sections.size(); ++i)
    names.emplace_back(content_->sections[i].name);
  return names;
}

bool Profile::write(std::string_view section, std::string_view key, std::string_view value) {
  if (untilNul(key).find('=') != std::string_view::npos) return false;
  Content& content = *content_;
  const std::string text = content.encoding.encode(trimLeadingBlanks(oneLine(value)));
  if (const auto place = content.find(content.byName, section)) {
    Content::Section& found = content.sections[*place];
    if (const auto line = content.find(found.keys, key)) return content.change(found, *line, text);
  }
  return content.add(section, key, text);
}

std::string Profile::bytes() const {
  std::string lines;
  for (const Content::Section& section : content_->sections) {
    for (const std::string_view line : section.lines) lines += line;
    lines += section.blankLines;
  }
  return content_->encoding.restore(std::move(lines));
}

ProfileReader::ProfileReader(const FileSystem& files, const CodePage& codePage)
    : files_(files), codePage_(codePage) {}

ProfileReader::Opened& ProfileReader::opened(const std::string& file) {
  if (const auto found = profiles_.find(file); found != profiles_.end()) return found->second;
  const auto bytes = files_.readFile(file);
  return profiles_.emplace(file, Opened{Profile(bytes.valueOr({}), codePage_), bytes.outcome()})
      .first->second;
}

std::string ProfileReader::read(const std::string& file, std::string_view section,
                                std::string_view key) {
  return opened(file).profile.read(section, key);
}

std::string ReadProfile(const FileSystem& files, const CodePage& codePage, const std::string& file,
                        std::string_view section, std::string_view key) {
  return Profile(files.readFile(file).valueOr({}), codePage).read(section, key);
}

Outcome WriteProfile(FileSystem& files, const CodePage& codePage, const std::string& file,
                     std::string_view section, std::string_view key, std::string_view value) {
  auto old = files.readFile(file);
  // Only a file that is not there may be made anew: one that cannot be read holds what would be
  // lost.
  const bool missing = old.outcome().number() == err::fileNotFound && !files.attributes(file).ok();
  if (!old.ok() && !missing) return old.outcome();
  Profile profile(old.valueOr({}), codePage);
  if (!profile.write(section, key, value))
    return Outcome::withText(err::pathFileAccess,
                             "\"" + std::string(key) + "\" cannot be a key of a profile file.");
  return files.replaceFile(file, profile.bytes());
}

}  // namespace skv
