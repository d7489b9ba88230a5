#include "core/profile.h"

#include <cstddef>
#include <deque>
#include <optional>
#include <unordered_map>
#include <utility>

#include "core/profile_encoding.h"
#include "core/profile_line.h"

namespace skv {

namespace {

// The call's buffer, its closing NUL included.
constexpr std::size_t bufferSize = 65536;

}  // namespace

// The file as its lines, grouped by section.
struct Profile::Content {
  struct Section {
    std::string name;                     // as the file spells it, UTF-8
    std::vector<std::string_view> lines;  // from the header to the last line that is not blank
    std::string_view blankLines;          // what follows them
    std::unordered_map<std::string, std::size_t> keys;  // comparable name to index in `lines`
  };

  Content(std::string bytes, const CodePage& codePage);

  // A name that is asked for, in the form in which the index holds names: the call tells capitals
  // from small letters beyond A to Z. What the code page lacks of the name, it never gets.
  std::string comparable(std::string_view name) const;
  std::optional<std::string> headerName(std::string_view line) const;
  void addParsed(std::string_view line);
  void indexLine(Section& section, std::size_t line) const;
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
  std::vector<Section> sections;    // the first holds what stands before any header
  std::unordered_map<std::string, std::size_t> byName;  // comparable name to the first of it
};

Profile::Content::Content(std::string bytes, const CodePage& codePage)
    : encoding(bytes, codePage), file(std::move(bytes)), sections(1) {
  byName.emplace("", 0);
  for (const std::string_view line : splitLines(file)) addParsed(line);
}

std::string Profile::Content::comparable(std::string_view name) const {
  return lowerAscii(trimBlanks(encoding.decode(encoding.encode(oneLine(name)))));
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
    byName.emplace(lowerAscii(*name), sections.size());
    sections.emplace_back().name = *std::move(name);
    sections.back().lines.push_back(line);
    return;
  }
  Section& section = sections.back();
  if (!section.blankLines.empty()) section.lines.push_back(std::exchange(section.blankLines, {}));
  section.lines.push_back(line);
  indexLine(section, section.lines.size() - 1);
}

void Profile::Content::indexLine(Section& section, std::size_t line) const {
  section.keys.emplace(lowerAscii(encoding.decode(untilNul(partsOf(section.lines[line]).name))),
                       line);
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
  Section section;
  section.name = trimBlanks(oneLine(name));
  section.lines.push_back(keep("[" + encoding.encode(section.name) + "]" + std::string(end)));

  std::string_view& blanks = sections.back().blankLines;
  if (const auto mark = blanks.find(endOfFileMark); mark != std::string_view::npos) {
    section.blankLines = blanks.substr(mark);
    blanks = blanks.substr(0, mark);
  }
  endLastLine(added - 1);
  if (!blanks.empty() && lineEnd(blanks).empty())
    blanks = keep(std::string(blanks) + std::string(end));

  byName.emplace(comparable(section.name), added);
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
  changed += old.substr(start + parts.value.size());
  if (headerName(changed)) return false;
  section.lines[line] = keep(std::move(changed));
  return true;
}

bool Profile::Content::add(std::string_view section, std::string_view key, std::string_view value) {
  std::string line = encoding.encode(trimBlanks(oneLine(key)));
  line += '=';
  line += value;
  if (headerName(line)) return false;
  const auto found = byName.find(comparable(section));
  const std::size_t place = found == byName.end() ? addSection(section) : found->second;
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
  const auto place = content.byName.find(content.comparable(section));
  if (place == content.byName.end()) return {};
  const Content::Section& found = content.sections[place->second];
  if (key.empty()) {
    // For a list the call takes the name with its blanks, and passes over keys before any header.
    if (place->second == 0 || trimBlanks(section) != section) return {};
    return answer(content.keyNames(found), bufferSize - 2);
  }
  const auto line = found.keys.find(content.comparable(key));
  if (line == found.keys.end()) return {};
  const std::string_view value = partsOf(found.lines[line->second]).value;
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
    names.push_back(content_->sections[i].name);
  return names;
}

bool Profile::write(std::string_view section, std::string_view key, std::string_view value) {
  Content& content = *content_;
  const std::string text = content.encoding.encode(trimLeadingBlanks(oneLine(value)));
  if (const auto place = content.byName.find(content.comparable(section));
      place != content.byName.end()) {
    Content::Section& found = content.sections[place->second];
    if (const auto line = found.keys.find(content.comparable(key)); line != found.keys.end())
      return content.change(found, line->second, text);
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
