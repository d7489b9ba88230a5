#include "core/profile.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <optional>
#include <unordered_map>
#include <utility>

#include "core/profile_encoding.h"

namespace skv {

namespace {

// The call's buffer, its closing NUL included.
constexpr std::size_t bufferSize = 65536;

// The end-of-file mark of DOS is a blank too: it stands at the end of files from old tools.
constexpr bool isBlank(char c) { return (c >= '\t' && c <= '\r') || c == '\x1a' || c == ' '; }

std::string_view trimBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

// The call's texts are closed by a NUL.
std::string_view untilNul(std::string_view text) { return text.substr(0, text.find('\0')); }

// A line and what ends it. CR ends lines only where no LF follows in the file.
std::string_view takeLine(std::string_view& rest) {
  auto end = rest.find('\n');
  if (end == std::string_view::npos) end = rest.find('\r');
  const auto line = rest.substr(0, end == std::string_view::npos ? end : end + 1);
  rest.remove_prefix(line.size());
  return line;
}

std::string_view lineEnd(std::string_view line) {
  for (const std::string_view end : {"\r\n", "\n", "\r"})
    if (line.ends_with(end)) return line.substr(line.size() - end.size());
  return {};
}

std::string_view withoutQuotes(std::string_view value) {
  if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
      value.back() == value.front())
    return value.substr(1, value.size() - 2);
  return value;
}

// Text that can stand in one line: a line break within it would begin lines of its own.
std::string oneLine(std::string_view text) {
  std::string line;
  for (const char c : untilNul(text)) {
    const bool secondOfBreak = c == '\n' && line.ends_with('\r');
    if (secondOfBreak) line.pop_back();
    line += c == '\n' ? ' ' : c;
  }
  std::replace(line.begin(), line.end(), '\r', ' ');
  return line;
}

// A line `key=value`, its parts as views of it.
struct KeyLine {
  std::string_view name;
  std::string_view value;  // empty at its place when there is none
  bool hasEquals = false;
};

KeyLine partsOf(std::string_view line) {
  const std::string_view text = trimBlanks(line);
  const auto equals = text.find('=');
  if (equals == std::string_view::npos) return {untilNul(text), text.substr(text.size()), false};
  return {untilNul(trimBlanks(text.substr(0, equals))),
          untilNul(trimBlanks(text.substr(equals + 1))), true};
}

}  // namespace

struct Profile::Content {
  struct Section {
    std::string name;                     // as the file spells it, UTF-8
    std::vector<std::string_view> lines;  // from the header to the last line that is not blank
    std::string_view blankLines;          // what follows them
    std::unordered_map<std::string, std::size_t> keys;  // upper-cased name to index in `lines`
  };

  Content(std::string bytes, const CodePage& codePage)
      : encoding(bytes, codePage), file(std::move(bytes)) {
    parse();
  }

  void parse();
  void add(std::string_view line);
  std::optional<std::string> headerName(std::string_view line) const;
  Section& openSection(std::string name);
  void index(Section& section, std::size_t line);
  // The form in which names are compared.
  std::string comparable(std::string_view name) const { return upper(trimBlanks(untilNul(name))); }
  const KeyLine line(std::string_view section, std::string_view key) const;

  std::string_view keep(std::string line) { return written.emplace_back(std::move(line)); }
  std::string_view lineEndBefore(std::size_t section) const;
  void endLastLine(std::size_t section);
  std::size_t sectionToWrite(std::string_view name);

  ProfileEncoding encoding;
  std::string file;                 // the lines as read; what follows holds views of it
  std::deque<std::string> written;  // lines that were changed or added, never moved
  std::deque<Section> sections;     // the first holds what stands before any header
  std::unordered_map<std::string, std::size_t> byName;  // upper-cased name to the first of it
};

void Profile::Content::parse() {
  openSection({});
  std::string_view rest = file;
  while (!rest.empty()) {
    std::string_view next = takeLine(rest);
    if (rest.empty()) {
      // What is added must stand before an end-of-file mark, so that mark is no part of a line.
      const auto blanks =
          next.substr(trimBlanks(next).empty() ? 0 : next.find_last_not_of(blank) + 1);
      const auto mark = blanks.find('\x1a');
      if (mark != std::string_view::npos) {
        const auto tail = blanks.substr(mark);
        next.remove_suffix(tail.size());
        if (!next.empty()) add(next);
        next = tail;
      }
    }
    add(next);
  }
}
