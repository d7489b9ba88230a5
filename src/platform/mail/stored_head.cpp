#include "platform/mail/stored_head.h"

#include <algorithm>
#include <charconv>
#include <functional>

#include "base/text.h"

namespace skv {

namespace {

// Marks of the Mozilla programs: expunged, and deleted on the server.
constexpr unsigned mozillaExpunged = 0x0008;
constexpr unsigned mozillaServerDeleted = 0x0020'0000;
constexpr unsigned evolutionDeleted = 0x2;

// A line without its end; takes it off the front of `text`.
std::string_view takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

bool isFolded(std::string_view line) { return line.starts_with(' ') || line.starts_with('\t'); }

// The value of a header of this name, which is in small letters; `found` stays when it is another.
bool valueOf(std::string_view line, std::string_view name, std::string_view& value) {
  if (line.size() <= name.size() || lowerAscii(line.substr(0, name.size())) != name) return false;
  const std::string_view rest = line.substr(name.size());
  const std::size_t colon = rest.find_first_not_of(" \t");
  if (colon == std::string_view::npos || rest[colon] != ':') return false;
  value = rest.substr(colon + 1);
  return true;
}

unsigned hexNumber(std::string_view value) {
  const std::string digits = trim(value);
  unsigned number = 0;
  constexpr int base = 16;
  std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
  return number;
}

bool saysDeleted(std::string_view line) {
  std::string_view value;
  if (valueOf(line, "x-mozilla-status", value)) return (hexNumber(value) & mozillaExpunged) != 0;
  if (valueOf(line, "x-mozilla-status2", value))
    return (hexNumber(value) & mozillaServerDeleted) != 0;
  // "00000a1b-0012": a name and flags.
  if (valueOf(line, "x-evolution", value))
    return (hexNumber(value.substr(std::min(value.find('-'), value.size() - 1) + 1)) &
            evolutionDeleted) != 0;
  if (valueOf(line, "x-status", value) || valueOf(line, "status", value))
    return value.find('D') != std::string_view::npos;
  return false;
}

// In small letters.
std::string nameOf(std::string_view line) {
  return trim(lowerAscii(line.substr(0, std::min(line.find_first_of(":\t"), line.size()))));
}

bool isNote(std::string_view line) {
  const std::string name = nameOf(line);
  return name.starts_with("x-mozilla-") || name == "x-evolution" || name == "status" ||
         name == "x-status" || name == "x-keywords" || name == "x-uid" || name == "x-uidl";
}

bool isSenders(std::string_view line) {
  const std::string name = nameOf(line);
  return name == "subject" || name == "from" || name == "date" || name == "message-id";
}

std::uint64_t markOf(std::string_view head, bool (*counts)(std::string_view line)) {
  constexpr std::uint64_t spread = 0x9E37'79B9'7F4A'7C15;
  std::uint64_t mark = 0;
  bool taken = true;
  while (!head.empty()) {
    const std::string_view line = takeLine(head);
    if (!isFolded(line)) taken = counts(line);
    if (taken) mark = (mark ^ std::hash<std::string_view>{}(line)) * spread;
  }
  return mark;
}

}  // namespace

StoredHead readStoredHead(std::string_view mail) {
  StoredHead head;
  bool known = false, inSubject = false;
  std::string_view rest = mail.substr(0, longestHead);
  while (!rest.empty()) {
    const std::size_t begin = std::min(mail.size(), longestHead) - rest.size();
    const std::string_view line = takeLine(rest);
    if (line.empty()) {
      head.whole = true;
      head.length = begin;
      return head;
    }
    if (isFolded(line)) {
      if (inSubject) head.subject += line;
      continue;
    }
    inSubject = false;
    const char first = line.front();
    if (first != 'S' && first != 's' && first != 'X' && first != 'x') continue;
    std::string_view subject;
    if (!known && valueOf(line, "subject", subject)) {
      known = inSubject = true;
      head.subject = subject;
    } else if (saysDeleted(line)) {
      head.deleted = true;
    }
  }
  head.length = std::min(mail.size(), longestHead);
  return head;
}

std::string storedHeader(std::string_view mail, std::string_view name) {
  std::string_view rest = mail.substr(0, longestHead);
  while (!rest.empty()) {
    const std::string_view line = takeLine(rest);
    std::string_view begun;
    if (line.empty()) break;
    if (!valueOf(line, name, begun)) continue;
    std::string value(begun);
    while (isFolded(rest)) value += takeLine(rest);
    return value;
  }
  return {};
}

std::uint64_t markOfHead(std::string_view head) {
  return markOf(head, [](std::string_view line) { return !isNote(line); });
}

std::uint64_t markOfSender(std::string_view head) { return markOf(head, &isSenders); }

bool isHeaderLine(std::string_view line) {
  if (line.starts_with(">From ")) return true;
  const std::size_t colon = line.find(':');
  if (colon == 0 || colon == std::string_view::npos) return false;
  return std::ranges::all_of(trim(line.substr(0, colon)),
                             [](char c) { return c > ' ' && c < 0x7F; });
}

}  // namespace skv
